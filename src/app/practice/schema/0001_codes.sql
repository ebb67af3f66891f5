-- SPDX-License-Identifier: Apache-2.0
-- Version 1 of the codes database. Jet definitions; statements end with a semicolon at the end of a line.

CREATE TABLE TIPOVISITA (
    IdTipo SHORT,
    descr_tipo TEXT(60),
    CodiceReg TEXT(10),
    codice TEXT(10)
);
CREATE UNIQUE INDEX IdTipo ON TIPOVISITA (IdTipo) WITH PRIMARY;

CREATE TABLE SINTOMI (
    codice TEXT(10),
    descrizione TEXT(80)
);
CREATE UNIQUE INDEX codice ON SINTOMI (codice) WITH PRIMARY;

CREATE TABLE icd9 (
    cod TEXT(10),
    des TEXT(120)
);
CREATE UNIQUE INDEX cod ON icd9 (cod) WITH PRIMARY;

CREATE TABLE malattie (
    codice TEXT(10),
    descrizione TEXT(120)
);
CREATE UNIQUE INDEX codice ON malattie (codice) WITH PRIMARY;

CREATE TABLE reparth (
    codice TEXT(10),
    Tipo TEXT(60)
);
CREATE UNIQUE INDEX codice ON reparth (codice) WITH PRIMARY;

CREATE TABLE CODICE (
    cod_citta TEXT(6),
    citta TEXT(60),
    prov TEXT(2),
    cap TEXT(5)
);
CREATE UNIQUE INDEX cod_citta ON CODICE (cod_citta) WITH PRIMARY;

CREATE TABLE NOMENCLATORE (
    codice TEXT(12),
    descrizione TEXT(120)
);
CREATE UNIQUE INDEX codice ON NOMENCLATORE (codice) WITH PRIMARY;
