-- SPDX-License-Identifier: Apache-2.0
-- Version 1 of the events database. Jet definitions; statements end with a semicolon at the end of a line.

CREATE TABLE Eventi (
    idEvento COUNTER,
    MedicoR TEXT(10),
    Medico TEXT(10),
    metodo TEXT(40),
    codPaz LONG,
    [Data] DATETIME,
    chiave TEXT(40),
    chiave1 TEXT(40),
    chiave2 TEXT(40),
    Eseguita YESNO
);
CREATE UNIQUE INDEX idEvento ON Eventi (idEvento) WITH PRIMARY;
