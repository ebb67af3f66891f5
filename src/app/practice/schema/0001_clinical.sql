-- SPDX-License-Identifier: Apache-2.0
-- Version 1 of the clinical database. Jet definitions; statements end with a semicolon at the end of a line.

CREATE TABLE archivio (
    cod_paz LONG,
    cognome TEXT(40),
    nome TEXT(40),
    sesso TEXT(1),
    Data_Nasc DATETIME,
    indirizzo TEXT(60),
    citta TEXT(60),
    prov TEXT(2),
    cap TEXT(5),
    num_tes TEXT(16),
    ESENZ_PAT TEXT(1),
    ESENZ_INV TEXT(1),
    idRowGuid GUID,
    sPatientRecordUid TEXT(50),
    sOwnerUid TEXT(50)
);
CREATE UNIQUE INDEX cod_paz ON archivio (cod_paz) WITH PRIMARY;
CREATE INDEX cognome ON archivio (cognome, nome);

CREATE TABLE inf_gen (
    cod_paz LONG,
    cod_fisc TEXT(16),
    prefisso TEXT(6),
    telefono TEXT(20),
    luogo_nas TEXT(60),
    Allergie MEMO
);
CREATE UNIQUE INDEX inf_paz ON inf_gen (cod_paz) WITH PRIMARY;

CREATE TABLE ESAME_OB (
    cod_paz LONG,
    tipo_dati TEXT(1),
    chiave TEXT(10),
    data_reg DATETIME,
    dati_paz MEMO
);
CREATE INDEX cod_tipo ON ESAME_OB (cod_paz, tipo_dati, chiave);

CREATE TABLE esa_ob (
    cod_paz LONG,
    data_ob DATETIME,
    presmax SHORT,
    presmin SHORT
);
CREATE INDEX paz_data ON esa_ob (cod_paz, data_ob);

CREATE TABLE riepil (
    cod_pre LONG,
    cod_paz LONG,
    tipo SHORT,
    minsan TEXT(12),
    da_pre DATETIME,
    num_conf SHORT,
    cod_dia TEXT(10)
);
CREATE UNIQUE INDEX cod_pre ON riepil (cod_pre) WITH PRIMARY;
CREATE INDEX paz_tipo_data ON riepil (cod_paz, tipo, da_pre);
CREATE INDEX minsan ON riepil (minsan);

CREATE TABLE riepil2 (
    idriepil2 LONG,
    cod_rie TEXT(12),
    codice TEXT(12),
    esame TEXT(60),
    unita TEXT(30),
    risposta MEMO,
    risposta_e MEMO,
    unita_Mis TEXT(20),
    data_eff DATETIME,
    numter TEXT(10)
);
CREATE UNIQUE INDEX idriepil2 ON riepil2 (idriepil2) WITH PRIMARY;
CREATE INDEX cod_rie ON riepil2 (cod_rie, codice);

CREATE TABLE SPEFAR (
    CODSPE TEXT(12),
    SPECIALITA TEXT(80),
    atc TEXT(10),
    codsan TEXT(12)
);
CREATE UNIQUE INDEX codspe ON SPEFAR (CODSPE) WITH PRIMARY;
CREATE INDEX atc ON SPEFAR (atc);

CREATE TABLE ESAMI (
    tipo_esa SHORT,
    descr_esa TEXT(60)
);
CREATE UNIQUE INDEX tipo_esa ON ESAMI (tipo_esa) WITH PRIMARY;

CREATE TABLE SUGGERIT (
    COD_PRE LONG,
    OSPEDAL YESNO
);
CREATE UNIQUE INDEX cod_pre ON SUGGERIT (COD_PRE) WITH PRIMARY;

CREATE TABLE PROBLEMS (
    idProblems COUNTER,
    cod_paz LONG,
    DataApertura DATETIME,
    DataInizio DATETIME,
    DataChiusura DATETIME,
    CodICDSospetto TEXT(10),
    CodICDFinale TEXT(10),
    descr_mal TEXT(255),
    stato_probl SHORT,
    anamnesi MEMO,
    esameob MEMO,
    conclusioni MEMO,
    pianificazione MEMO,
    idRowGuid GUID,
    sRecordUid TEXT(50),
    sOwnerUid TEXT(50),
    dCreationDate DATETIME,
    sCodSezCli TEXT(10),
    sPatientUid TEXT(50),
    sPatientRecordOwnerUid TEXT(50),
    dLastModifiedDate DATETIME,
    sAuthorUid TEXT(50)
);
CREATE UNIQUE INDEX idProblems ON PROBLEMS (idProblems) WITH PRIMARY;
CREATE INDEX paz_data ON PROBLEMS (cod_paz, DataInizio);
CREATE INDEX sRecordUid ON PROBLEMS (sRecordUid);

CREATE TABLE VISITAPROBL (
    IdVisitaProbl LONG,
    cod_paz LONG,
    id_Probl LONG,
    DataReg DATETIME,
    validita DATETIME,
    idtipo SHORT,
    SINTOMO TEXT(10),
    anamnesi MEMO,
    esameob MEMO,
    conclusioni MEMO,
    pianificazione MEMO,
    txtNote MEMO,
    idRowGuid GUID,
    sRecordUid TEXT(50),
    sOwnerUid TEXT(50),
    dCreationDate DATETIME,
    sCodSezCli TEXT(10),
    sPatientUid TEXT(50),
    sPatientRecordOwnerUid TEXT(50),
    dLastModifiedDate DATETIME,
    sAuthorUid TEXT(50)
);
CREATE UNIQUE INDEX IdVisitaProbl ON VISITAPROBL (IdVisitaProbl) WITH PRIMARY;
CREATE INDEX paz_data ON VISITAPROBL (cod_paz, DataReg);
CREATE INDEX id_Probl ON VISITAPROBL (id_Probl);
CREATE INDEX sRecordUid ON VISITAPROBL (sRecordUid);

CREATE TABLE Rischio_Cardio (
    cod_paz LONG,
    Data_Val DATETIME,
    eta SHORT,
    pct_rischio DOUBLE,
    pressione SHORT,
    colesterolo SHORT,
    hdl SHORT,
    fumatore YESNO,
    diabetico YESNO,
    ipertens YESNO
);
CREATE UNIQUE INDEX paz_data ON Rischio_Cardio (cod_paz, Data_Val) WITH PRIMARY;

CREATE TABLE Carta_Rischio (
    sessoM YESNO,
    eta_min SHORT,
    eta_max SHORT,
    diabete YESNO,
    fumatore YESNO,
    pressione_min SHORT,
    pressione_max SHORT,
    colesterolo_min SHORT,
    colesterolo_max SHORT,
    Livello SHORT
);

CREATE TABLE SindrMetabolica (
    cod_paz LONG,
    Data_Val DATETIME,
    valutazione SHORT,
    circAdd DOUBLE,
    pressSist DOUBLE,
    pressDiast DOUBLE,
    glicemia DOUBLE,
    trigliceridi DOUBLE
);
CREATE UNIQUE INDEX paz_data ON SindrMetabolica (cod_paz, Data_Val) WITH PRIMARY;

CREATE TABLE TabParamSM (
    codRegione SHORT,
    data_reg DATETIME,
    circAdd_d DOUBLE,
    circAdd_u DOUBLE,
    trigliceridi DOUBLE,
    hdl_d DOUBLE,
    hdl_u DOUBLE,
    glicemia DOUBLE,
    pa_sist DOUBLE,
    pa_diast DOUBLE
);
CREATE UNIQUE INDEX reg_data ON TabParamSM (codRegione, data_reg) WITH PRIMARY;

CREATE TABLE DEFCAMPI (
    Tiporec TEXT(1),
    Formapp TEXT(10),
    descrizione TEXT(30),
    [offset] SHORT,
    lunghezza SHORT
);
CREATE UNIQUE INDEX campo ON DEFCAMPI (Tiporec, Formapp, descrizione) WITH PRIMARY;

CREATE TABLE ALLERGIE (
    Tipo TEXT(20),
    codice TEXT(5),
    descr TEXT(40)
);
CREATE UNIQUE INDEX tipo_codice ON ALLERGIE (Tipo, codice) WITH PRIMARY;

CREATE TABLE cronpat (
    cod_paz LONG,
    cod_pat SHORT
);
CREATE INDEX cod_paz ON cronpat (cod_paz);

CREATE TABLE pat_rem2 (
    cod_paz LONG,
    num_rem SHORT,
    progre TEXT(10)
);
CREATE INDEX cod_paz ON pat_rem2 (cod_paz);

CREATE TABLE patopers (
    cod_paz LONG,
    cod_mal TEXT(10)
);
CREATE INDEX cod_paz ON patopers (cod_paz);

CREATE TABLE ricoveri2 (
    idRicovero COUNTER,
    cod_paz LONG,
    data_accesso DATETIME,
    data_fineric DATETIME,
    sede TEXT(80),
    reparto TEXT(60),
    idRowGuid GUID,
    sRecordUid TEXT(50),
    sOwnerUid TEXT(50),
    dCreationDate DATETIME,
    sCodSezCli TEXT(10),
    sPatientUid TEXT(50),
    sPatientRecordOwnerUid TEXT(50),
    dLastModifiedDate DATETIME,
    sAuthorUid TEXT(50)
);
CREATE UNIQUE INDEX idRicovero ON ricoveri2 (idRicovero) WITH PRIMARY;
CREATE INDEX paz_data ON ricoveri2 (cod_paz, data_accesso);
CREATE INDEX sRecordUid ON ricoveri2 (sRecordUid);

CREATE TABLE sedericov (
    idSede COUNTER,
    denominazione TEXT(80)
);
CREATE UNIQUE INDEX idSede ON sedericov (idSede) WITH PRIMARY;
CREATE INDEX denominazione ON sedericov (denominazione);

CREATE TABLE AIR15_7 (
    idScheda LONG,
    cod_paz LONG,
    idTipo SHORT,
    DataReg DATETIME,
    SEQDATI MEMO
);
CREATE UNIQUE INDEX tipo_scheda ON AIR15_7 (idTipo, idScheda) WITH PRIMARY;
CREATE INDEX cod_paz ON AIR15_7 (cod_paz);

CREATE TABLE Modifiche (
    idModifica COUNTER,
    Tipo SHORT,
    data_mod DATETIME,
    cod_paz LONG,
    codice1 TEXT(15),
    codice2 TEXT(15),
    cancellazione YESNO
);
CREATE UNIQUE INDEX idModifica ON Modifiche (idModifica) WITH PRIMARY;
CREATE INDEX paz_tipo ON Modifiche (cod_paz, Tipo, data_mod);

CREATE TABLE DELETIONS (
    idDeletion COUNTER,
    sRecordUid TEXT(50),
    sTableCode TEXT(10),
    idRowGuid GUID,
    sOwnerUid TEXT(50),
    dCreationDate DATETIME,
    dLastModifiedDate DATETIME,
    sAuthorUid TEXT(50)
);
CREATE UNIQUE INDEX idDeletion ON DELETIONS (idDeletion) WITH PRIMARY;
CREATE INDEX sRecordUid ON DELETIONS (sRecordUid);

-- What the host program knows of the practice: schema_version, created, region.
CREATE TABLE orvale_properties (
    [name] TEXT(40),
    [value] TEXT(255)
);
CREATE UNIQUE INDEX property ON orvale_properties ([name]) WITH PRIMARY;
