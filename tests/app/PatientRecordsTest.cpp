// SPDX-License-Identifier: Apache-2.0
#include "app/patients/PatientRecords.h"
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
    EXPECT_EQ(patient.allergies, clivara::judgedAllergies({}, false, true, "Penicillina"));
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

TEST_F(PatientRecordsTest, AllergiesThatCannotBeReadAreNoneToNobody)
{
    const PatientRecords records(m_practice->environment());
    EXPECT_EQ(records.registry(12)->allergies.state, clivara::AllergyState::NotRecorded);
    clinical("INSERT INTO ALLERGIE VALUES ('ALIMENTI', '2', 'Latte di vacca')");
    clinical("INSERT INTO ESAME_OB (cod_paz, tipo_dati, chiave, dati_paz) VALUES (12, 'X', '', '"
             + QStringLiteral("99").repeated(25) + "01" + QStringLiteral("99").repeated(89) + "')");
    EXPECT_EQ(records.registry(12)->allergies.allergens, QStringList{"Latte di vacca"});
    clinical("DROP TABLE ESAME_OB");
    const auto patient = records.registry(12);
    ASSERT_TRUE(patient);
    EXPECT_EQ(patient->surname, "Fornò");
    EXPECT_EQ(patient->allergies.state, clivara::AllergyState::Unread);
}

TEST_F(PatientRecordsTest, ListsEveryProblemThatIsNotClosed)
{
    codes("INSERT INTO icd9 (cod, des) VALUES ('250.00', 'Diabete mellito')");
    struct Stored {
        const char *start, *code, *description, *state;
    };
    for (const Stored &each :
         {Stored{"#1/1/2020#", "''", "'Aperto'", "1"}, Stored{"#1/1/2001#", "'250.00'", "''", "3"},
          Stored{"Null", "''", "'Cronico senza data'", "3"}, Stored{"#1/1/2021#", "'X99'", "Null", "Null"},
          Stored{"#1/1/2022#", "''", "'Non specificato'", "0"},
          Stored{"#1/1/2023#", "''", "'Di un altro programma'", "9"},
          Stored{"#1/1/2024#", "''", "'Chiuso'", "2"}})
        clinical(QStringLiteral(
                     "INSERT INTO PROBLEMS (cod_paz, DataInizio, CodICDSospetto, descr_mal, stato_probl) "
                     "VALUES (12, %1, %2, %3, %4)")
                     .arg(each.start, each.code, each.description, each.state));
    QStringList shown;
    for (const orvale::ProblemLine &line : PatientRecords(m_practice->environment()).openProblems(12))
        shown << QStringLiteral("%1 %2").arg(line.description).arg(line.state);
    EXPECT_EQ(shown, (QStringList{"Diabete mellito 3", "Cronico senza data 3", "Di un altro programma 9",
                                  "Non specificato 0", "X99 0", "Aperto 1"}));
}

TEST_F(PatientRecordsTest, AResultIsMarkedByTheWordsOfItsOwnRow)
{
    using orvale::RangeMark;
    struct Case {
        const char *report, *verdict;
        RangeMark mark;
    };
    const Case cases[] = {
        {"", "", RangeMark::None},
        {"nei limiti", "NORMALE", RangeMark::None},
        {"", "Nella norma", RangeMark::None},
        {"", "Negativo", RangeMark::None},
        {"", "Non patologico", RangeMark::None},
        {"da ricontrollare perché borderline", "Da ripetere fra 6 mesi", RangeMark::None},
        {"inferiore a 3", "", RangeMark::None},
        {"inferiore al limite di rilevabilità", "", RangeMark::None},
        {"", "Al di sotto del limite di quantificazione del metodo", RangeMark::None},
        {"*", "", RangeMark::Beyond},
        {"", "PATOLOGICO", RangeMark::Beyond},
        {"", "Alterato: vedi referto", RangeMark::Beyond},
        {"valore superiore all'intervallo di riferimento", "", RangeMark::Above},
        {"valore superiore all'intervallo di riferimento", "PATOLOGICO", RangeMark::Above},
        {"*", "Inferiore alla norma", RangeMark::Below},
    };
    for (const Case &each : cases)
        EXPECT_EQ(orvale::rangeMark(each.report, each.verdict), each.mark) << each.report << each.verdict;
    for (const char *value : {"7", " 7.25", "0,8", "<0.01", "> 300"})
        EXPECT_TRUE(orvale::isMeasured(value)) << value;
    for (const char *value : {"", "emolizzato", "inferiore a 3", "50 mg/dl", "1:40", "+++"})
        EXPECT_FALSE(orvale::isMeasured(value)) << value;

    clinical("UPDATE riepil2 SET risposta_e = 'PATOLOGICO', risposta = '*' WHERE idriepil2 = 1");
    clinical("UPDATE riepil2 SET unita = 'emolizzato' WHERE idriepil2 = 5");
    const auto lines = PatientRecords(m_practice->environment()).lastLaboratory(11);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].mark, RangeMark::Beyond);
    EXPECT_EQ(lines[0].markedBy, "«PATOLOGICO», «*»");
    EXPECT_EQ(lines[0].unit, "mg/dl");
    EXPECT_EQ(lines[1].value, "emolizzato");
    EXPECT_EQ(lines[1].unit, "") << "no unit after a text";
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
