-- SPDX-License-Identifier: Apache-2.0
-- Version 1 of the third database. Jet definitions; statements end with a semicolon at the end of a line.

CREATE TABLE TESTI (
    idTesto COUNTER,
    titolo TEXT(60),
    testo MEMO
);
CREATE UNIQUE INDEX idTesto ON TESTI (idTesto) WITH PRIMARY;
