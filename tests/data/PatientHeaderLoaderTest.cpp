// SPDX-License-Identifier: Apache-2.0
#include "data/PatientHeaderLoader.h"

#include "DataFixture.h"
#include "support/PatientHeader.h"

namespace {

using clivara::loadPatientHeader;
using clivara::PatientHeader;

class PatientHeaderLoaderTest : public DataFixture {
protected:
    PatientHeaderLoaderTest()
    {
        clinical = create(
            "Orvale.sqlite",
            {"CREATE TABLE inf_gen (cod_paz LONG, cod_fisc TEXT(16), prefisso TEXT(6), telefono TEXT(20), "
             "luogo_nas TEXT(60))",
             "CREATE UNIQUE INDEX inf_paz ON inf_gen (cod_paz)",
             "CREATE TABLE archivio (cod_paz LONG, cognome TEXT(40), nome TEXT(40), sesso TEXT(1), Data_Nasc "
             "DATETIME, "
             "indirizzo TEXT(60), citta TEXT(60), prov TEXT(2), num_tes TEXT(16), ESENZ_PAT TEXT(1), "
             "ESENZ_INV TEXT(1))",
             "CREATE UNIQUE INDEX cod_paz ON archivio (cod_paz)",
             // a full row, a row of nulls, one without general information, general information alone
             "INSERT INTO inf_gen VALUES (1, 'ZNCNCL38L23X111S', ' 081', '5555231  ', 'Villa d''Arco')",
             "INSERT INTO archivio VALUES (1, 'D''Angiò', 'Nicolò', 'm', #12/31/1938#, 'Via Forlì 3', "
             "'  Castelfiorito di Sant''Anna in Valle sul Mare', 'NA', 'TS123', '1', '0')",
             "INSERT INTO inf_gen (cod_paz) VALUES (2)", "INSERT INTO archivio (cod_paz) VALUES (2)",
             "INSERT INTO archivio (cod_paz, cognome, nome, sesso, Data_Nasc) "
             "VALUES (3, 'Rossi', 'Ada', 'F', #01/01/2026#)",
             "INSERT INTO inf_gen (cod_paz, telefono) VALUES (4, '333 1234567890123456')"});
    }

    void load(const QVariant &patient)
    {
        settings.write("CODICE PAZIENTE", patient);
        loadPatientHeader(header, settings, *clinical, clock);
    }

    std::shared_ptr<dao::Database> clinical;
    PatientHeader header;
};

TEST_F(PatientHeaderLoaderTest, FillsEveryValueToItsWidth)
{
    load(1);
    EXPECT_TRUE(header.identified);
    EXPECT_EQ(header.identity.surname, "D'Angiò");
    EXPECT_EQ(header.identity.sex, "M");
    EXPECT_EQ(header.identity.fiscalCode, "ZNCNCL38L23X111S");
    EXPECT_EQ(header.patientCode, 1);
    EXPECT_EQ(header.fiscalCode, "ZNCNCL38L23X111S");
    EXPECT_EQ(header.telephone, "081 5555231       ");
    EXPECT_EQ(header.birthplace, "Villa d'Arco                  ");
    EXPECT_EQ(header.surname, "D'Angiò");
    EXPECT_EQ(header.name, "Nicolò");
    EXPECT_EQ(header.birthDate, "31/12/1938");
    EXPECT_EQ(header.birthDay, QDate(1938, 12, 31));
    EXPECT_EQ(header.age, "88 ") << "by the calendar years, on 21 November";
    EXPECT_EQ(header.address, "Via Forlì 3                        ");
    EXPECT_EQ(header.city, "Castelfiorito di Sant'Anna in ");
    EXPECT_EQ(header.province, "NA");
    EXPECT_EQ(header.sex, "M");
    EXPECT_EQ(header.healthCard, "TS123           ");
    EXPECT_EQ(header.exemptionPathology, "1");
    EXPECT_EQ(header.exemptionInvalidity, "0");
}

TEST_F(PatientHeaderLoaderTest, WithoutAPatientKeepsThePreviousValues)
{
    load(1);
    load(-1);
    EXPECT_EQ(header.patientCode, -1);
    EXPECT_EQ(header.surname, "D'Angiò");
    EXPECT_EQ(header.birthDate, "31/12/1938");
    EXPECT_FALSE(header.identified) << "they are not those of a current patient";
    load("1");
    EXPECT_TRUE(header.identified);
}

TEST_F(PatientHeaderLoaderTest, WhatIsNoCodeIsNobodyAndNotThePatientBefore)
{
    clinical->Execute("INSERT INTO archivio (cod_paz, cognome) VALUES (0, 'Zero')");
    clinical->Execute("INSERT INTO archivio (cod_paz, cognome) VALUES (-7, 'Meno sette')");
    for (const char *code :
         {"", " ", "abc", "1x", "1.0", "1,0", "1e0", "&H1", "99999999999", "4294967297", "-1"}) {
        load(1);
        load(code);
        EXPECT_EQ(header.patientCode, -1) << code;
        EXPECT_FALSE(header.identified) << code;
        EXPECT_EQ(header.identity.surname, "") << code;
    }
    for (const char *code : {"0", "-7", "77777"}) {
        load(1);
        load(code);
        EXPECT_EQ(header.patientCode, QString(code).toInt());
        EXPECT_FALSE(header.identified) << code << " has a row or not, but is nobody's code";
    }
    load(" 1 ");
    EXPECT_TRUE(header.identified);
}

TEST_F(PatientHeaderLoaderTest, NullsLeaveTheirValuesButTheBirthDayIsNeverAnothers)
{
    load(1);
    load(2);
    EXPECT_EQ(header.patientCode, 2);
    EXPECT_EQ(header.fiscalCode, "ZNCNCL38L23X111S");
    EXPECT_EQ(header.telephone, "081 5555231       ");
    EXPECT_EQ(header.birthDate, "31/12/1938");
    EXPECT_EQ(header.sex, "M");
    EXPECT_FALSE(header.birthDay.isValid());
    EXPECT_EQ(header.identity.surname + header.identity.sex + header.identity.fiscalCode, "");
}

TEST_F(PatientHeaderLoaderTest, WithoutGeneralInformationItsValuesAreBlank)
{
    load(1);
    load(3);
    EXPECT_EQ(header.fiscalCode, QString(16, ' '));
    EXPECT_EQ(header.telephone, QString(18, ' '));
    EXPECT_EQ(header.birthplace, QString(30, ' '));
    EXPECT_EQ(header.surname, "Rossi");
    EXPECT_EQ(header.age, "0  ");
    EXPECT_EQ(header.city, "Castelfiorito di Sant'Anna in ") << "null in the row";
}

TEST_F(PatientHeaderLoaderTest, APatientWithoutARowIsNotIdentified)
{
    load(1);
    load(4);
    EXPECT_EQ(header.telephone, "333 12345678901234") << "a number without prefix, cut at the width";
    EXPECT_EQ(header.surname, "D'Angiò");
    EXPECT_FALSE(header.identified);
    EXPECT_FALSE(header.birthDay.isValid());
}

TEST_F(PatientHeaderLoaderTest, AnErrorEndsItWhereItHappens)
{
    load(1);
    clinical->Execute("DROP TABLE inf_gen");
    load(3);
    EXPECT_EQ(header.patientCode, 3);
    EXPECT_EQ(header.surname, "D'Angiò") << "the first table failed";
    EXPECT_FALSE(header.identified);

    clinical->Execute("CREATE TABLE inf_gen (cod_paz LONG)");
    clinical->Execute("CREATE INDEX inf_paz ON inf_gen (cod_paz)");
    clinical->Execute("DROP TABLE archivio");
    clinical->Execute(
        "CREATE TABLE archivio (cod_paz LONG, cognome TEXT(40), nome TEXT(40), Data_Nasc DATETIME)");
    clinical->Execute("CREATE INDEX cod_paz ON archivio (cod_paz)");
    clinical->Execute("INSERT INTO archivio VALUES (3, 'Verdi', 'Ugo', #05/06/1950#)");
    load(3);
    EXPECT_EQ(header.surname, "Verdi");
    EXPECT_EQ(header.birthDate, "06/05/1950");
    EXPECT_EQ(header.address, "Via Forlì 3                        ") << "its field is missing";
    EXPECT_FALSE(header.identified);
}

} // namespace
