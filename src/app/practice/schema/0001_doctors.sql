-- SPDX-License-Identifier: Apache-2.0
-- Version 1 of the doctors database. Jet definitions; statements end with a semicolon at the end of a line.

CREATE TABLE medici_gruppo (
    cod_smi LONG,
    Medico TEXT(10),
    cognome TEXT(40),
    nome TEXT(40),
    idRowGuid GUID,
    stamp_1 TEXT(60),
    stamp_2 TEXT(60),
    vass_1 TEXT(60),
    vass_2 TEXT(60),
    special_1 TEXT(40),
    special_2 TEXT(40),
    special_3 TEXT(40),
    special_4 TEXT(40),
    special_5 TEXT(40),
    special_6 TEXT(40),
    special_7 TEXT(40)
);
CREATE UNIQUE INDEX cod_smi ON medici_gruppo (cod_smi) WITH PRIMARY;
