// SPDX-License-Identifier: Apache-2.0
#include "app/PatientRecords.h"
#include "SmallPractice.h"

using orvale::PatientRecords;

class PatientRecordsTest : public SmallPractice { };

TEST_F(PatientRecordsTest, ReadsThePatientAtAGlance)
{
    const auto summary = PatientRecords(m_practice->environment()).summary(11);
    ASSERT_TRUE(summary);
    const orvale::PatientRegistry &patient = summary->registry;
    EXPECT_EQ(patient.surname, "D'Ambrogio");
    EXPECT_EQ(patient.sex, "F");
    EXPECT_EQ(patient.birthDate, QDate(1956, 3, 12));
    EXPECT_EQ(patient.telephone, "081 5550101");
    EXPECT_EQ(patient.allergies, "Penicillina");
    EXPECT_EQ(patient.exemptionPathology, "S");
    EXPECT_EQ(patient.exemptionInvalidity, QString());

    ASSERT_EQ(summary->problems.size(), 1); // the closed one is no problem now
    EXPECT_EQ(summary->problems.first().description, "Ipertensione");

    ASSERT_EQ(summary->visits.size(), 2);
    EXPECT_EQ(summary->visits[0].date, QDate(2026, 11, 20));
    EXPECT_EQ(summary->visits[0].type, "Visita ambulatoriale");
    EXPECT_EQ(summary->visits[0].text, "Buon compenso");
    EXPECT_EQ(summary->visits[1].text, "anamnesi"); // no conclusions: the next text

    ASSERT_EQ(summary->laboratory.size(), 2);
    const orvale::LaboratoryLine &cholesterol = summary->laboratory[0];
    EXPECT_EQ(cholesterol.value, "204");
    EXPECT_EQ(cholesterol.unit, "mg/dl");
    EXPECT_EQ(cholesterol.date, QDate(2026, 9, 3));
    EXPECT_EQ(cholesterol.previousValue, "221");
    EXPECT_EQ(cholesterol.previousDate, QDate(2026, 3, 1));
    EXPECT_EQ(summary->laboratory[1].value, "51"); // a blank result is none
    EXPECT_EQ(summary->laboratory[1].previousValue, QString());

    EXPECT_EQ(summary->pressure.systolic, 140);
    EXPECT_EQ(summary->pressure.date, QDate(2026, 10, 1));
}

TEST_F(PatientRecordsTest, ReadsPatientsOfWhomLittleIsKnown)
{
    const PatientRecords records(m_practice->environment());
    EXPECT_FALSE(records.summary(99));
    EXPECT_FALSE(records.entry(99));
    const auto summary = records.summary(20); // no row of general information, no birth date
    ASSERT_TRUE(summary);
    EXPECT_EQ(summary->registry.surname, "Zanchetta");
    EXPECT_FALSE(summary->registry.birthDate.isValid());
    EXPECT_EQ(summary->registry.telephone, QString());
    EXPECT_TRUE(summary->visits.isEmpty());
    EXPECT_EQ(summary->pressure.systolic, 0);
}

TEST_F(PatientRecordsTest, ReadsTheListInPieces)
{
    const PatientRecords records(m_practice->environment());
    const auto first = records.entriesAfter(-1, 2);
    ASSERT_EQ(first.size(), 2U);
    EXPECT_EQ(first[0].code, 11);
    EXPECT_EQ(first[0].fiscalCode, "DMBMNG56C52F839X");
    EXPECT_EQ(first[1].code, 12);
    const auto rest = records.entriesAfter(12, 2);
    ASSERT_EQ(rest.size(), 1U);
    EXPECT_EQ(rest[0].code, 20);
}

TEST_F(PatientRecordsTest, PicksThePatientWithMostToShow)
{
    const PatientRecords records(m_practice->environment());
    clinical("INSERT INTO PROBLEMS (cod_paz, stato_probl) VALUES (12, 1)");
    clinical("INSERT INTO PROBLEMS (cod_paz, stato_probl) VALUES (12, 1)");
    EXPECT_EQ(records.instructivePatient(QDate(2025, 11, 21)), 11); // an exam counts more than problems
    EXPECT_EQ(records.instructivePatient(QDate(2026, 11, 1)), 12); // all exams are older
    clinical("DELETE * FROM archivio WHERE cod_paz = 12");
    EXPECT_EQ(records.instructivePatient(QDate(2026, 11, 1)), 11); // rows outlived their patient
    clinical("DELETE * FROM PROBLEMS");
    EXPECT_EQ(records.instructivePatient(QDate(2026, 11, 1)), 11); // nothing to tell them apart: the first
    clinical("DELETE * FROM archivio");
    EXPECT_EQ(records.instructivePatient(QDate(2026, 11, 1)), -1);
}
