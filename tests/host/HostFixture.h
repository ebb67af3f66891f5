// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ChartFixture.h"

namespace clivara {

// A host with a small practice: two doctors, two patients.
class HostFixture : public ServicesFixture {
protected:
    HostFixture()
    {
        environment.clinical = create(
            "Orvale.sqlite",
            {"CREATE TABLE archivio (cod_paz LONG, cognome TEXT(40), nome TEXT(40), sesso TEXT(1), Data_Nasc "
             "DATETIME, "
             "indirizzo TEXT(60), citta TEXT(60), prov TEXT(2), num_tes TEXT(16), ESENZ_PAT TEXT(1), "
             "ESENZ_INV TEXT(1))",
             "CREATE UNIQUE INDEX cod_paz ON archivio (cod_paz)",
             "INSERT INTO archivio (cod_paz, cognome, nome, sesso, Data_Nasc) "
             "VALUES (1, 'Rossi', 'Ada', 'F', #06/15/1950#)",
             "INSERT INTO archivio (cod_paz, cognome, nome, sesso, Data_Nasc) "
             "VALUES (2, 'Verdi', 'Ugo', 'M', #01/02/1990#)",
             "CREATE TABLE inf_gen (cod_paz LONG, cod_fisc TEXT(16), prefisso TEXT(6), telefono TEXT(20), "
             "luogo_nas TEXT(60))",
             "CREATE UNIQUE INDEX inf_paz ON inf_gen (cod_paz)",
             "CREATE TABLE ESAME_OB (COD_PAZ LONG, TIPO_DATI TEXT(1), data_reg DATETIME, dati_paz MEMO, "
             "chiave LONG)",
             "CREATE TABLE DEFCAMPI (Tiporec TEXT(1), Formapp TEXT(3), descrizione TEXT(40), offset INTEGER, "
             "lunghezza INTEGER)",
             "CREATE TABLE riepil (cod_pre LONG, minsan LONG, tipo INTEGER, cod_paz LONG, da_pre DATETIME)",
             "CREATE TABLE riepil2 (idriepil2 LONG, cod_rie LONG, codice TEXT(20), unita TEXT(20))"});
        environment.doctors = create(
            "Medici.sqlite",
            {"CREATE TABLE medici_gruppo (cod_smi LONG, cognome TEXT(40), nome TEXT(40), idRowGuid GUID, "
             "stamp_1 TEXT(60), stamp_2 TEXT(60), vass_1 TEXT(60), vass_2 TEXT(60), special_1 TEXT(40), "
             "special_2 TEXT(40), special_3 TEXT(40), special_4 TEXT(40), special_5 TEXT(40), special_6 "
             "TEXT(40), "
             "special_7 TEXT(40))",
             "INSERT INTO medici_gruppo (cod_smi, cognome, nome, idRowGuid, stamp_1, vass_2, special_1, "
             "special_7) "
             "VALUES (101, 'D''Ambrogio', 'Emilia', '{B61C53B8-B450-4298-8B11-F25C842011B0}', 'Dott.ssa "
             "D''Ambrogio', "
             "'Tel. 1', 'Geriatria', '1')",
             "INSERT INTO medici_gruppo (cod_smi, cognome, idRowGuid, stamp_1) "
             "VALUES (102, 'Bianchi', '{6C4C00A9-60AC-45AF-B5C3-FD30774041A6}', 'Dott. Bianchi')"});
        environment.local = create("Locale.sqlite", {});
        environment.programFolder = folder.path();
        environment.dataFolder = folder.path();
        settings.write("medicoP", "101");
        settings.write("medicoT", "102");
        settings.write("CODICE PAZIENTE", "1");
    }
};

} // namespace clivara
