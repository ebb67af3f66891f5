// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalculatorFixture.h"
#include "chart/SharedWrites.h"
#include "evaluations/CardiovascularRecords.h"
#include "evaluations/MetabolicRecords.h"

namespace clivara {
namespace {

class EvaluationRecordsTest : public CalculatorFixture {
protected:
    // "value|date" of a proposal, empty when there is none.
    static std::string shown(const Finding &finding)
    {
        const auto &proposal = finding.proposal;
        return proposal ? (proposal->text + u'|' + proposal->date.toString(Qt::ISODate)).toStdString()
                        : std::string();
    }
    std::string systolic() { return shown(readRecentSystolic(database(), 17, limit)); }
    std::string cholesterol()
    {
        return shown(readRecentResult(database(), 17, "90.14.3", limit, totalCholesterolRangeMgDl));
    }
    std::string waist() { return shown(readRecentWaist(database(), 17, clock.today())); }
    std::string glucose()
    {
        return shown(readRecentMetabolicResult(database(), 17, "90.27.1", clock.today()));
    }

    const QDate limit = riskProposalLimit(QDate(2026, 11, 21)); // 21/08/2026
    const QDateTime day = jet::dateTime(2026, 11, 21);
};

TEST_F(EvaluationRecordsTest, SystolicPressureOfThreeMonths)
{
    addPressure("#08/20/2026#", "150", "90");
    EXPECT_EQ(systolic(), "");
    addPressure("#08/21/2026#", "140", "90");
    EXPECT_EQ(systolic(), "140|2026-08-21");
    addPressure("#11/01/2026#", "90", "Null");
    EXPECT_EQ(systolic(), "90|2026-11-01");
    // What the equation does not take is passed over.
    for (const char *pressure : {"89", "201", "Null"})
        addPressure("#11/02/2026#", pressure, "80");
    EXPECT_EQ(systolic(), "90|2026-11-01");
    const auto skipped = [this] {
        const auto &seen = readRecentSystolic(database(), 17, limit).skipped;
        return seen ? (seen->stored + u'|' + seen->date.toString(Qt::ISODate)).toStdString() : std::string();
    };
    EXPECT_NE(skipped(), "") << "but noted";
    addPressure("#11/03/2026#", "201", "80");
    addPressure("#11/04/2026#", "0", "0");
    EXPECT_EQ(skipped(), "201|2026-11-03") << "0 stands for no measurement";
    addPressure("#11/03/2026#", "150", "80");
    EXPECT_EQ(systolic() + skipped(), "150|2026-11-03") << "of the same hour";
    addPressure("#11/03/2026#", "201", "80");
    EXPECT_EQ(systolic() + skipped(), "150|2026-11-03") << "in whichever order they are read";
    addPressure("#11/03/2026 10:00#", "80", "40");
    EXPECT_EQ(systolic() + ' ' + skipped(), "150|2026-11-03 80|2026-11-03");
    execute("DELETE * FROM esa_ob WHERE presmax >= 90 AND presmax <= 200");
    EXPECT_EQ(systolic() + skipped(), "80|2026-11-03") << "and nothing to propose";
}

TEST_F(EvaluationRecordsTest, CholesterolOfThreeMonthsInItsRange)
{
    addResult("90.14.3", "#08/20/2026#", "'200'");
    EXPECT_EQ(cholesterol(), "");
    addResult("90.14.3", "#08/21/2026#", "'212.6 mg/dl'");
    EXPECT_EQ(cholesterol(), "213|2026-08-21");
    for (const char *value : {"'129.4'", "'320.6'", "''", "Null", "'<130'", "'-200'"})
        addResult("90.14.3", "#11/01/2026#", value);
    EXPECT_EQ(cholesterol(), "213|2026-08-21");
    addResult("90.14.3", "Null", "'250'");
    addResult("90.14.1", "#11/02/2026#", "'250'");
    EXPECT_EQ(cholesterol(), "213|2026-08-21");
    addResult("90.14.3", "#11/02/2026#", "'320.5'"); // rounds to the even 320
    EXPECT_EQ(cholesterol(), "320|2026-11-02");
    addResult("90.14.3", "#11/02/2026#", "'129.5'"); // of the same day the later key
    EXPECT_EQ(cholesterol(), "130|2026-11-02");
    const auto skipped = [this] {
        return readRecentResult(database(), 17, "90.14.3", limit, totalCholesterolRangeMgDl).skipped;
    };
    EXPECT_FALSE(skipped()) << "older than what is proposed";
    addResult("90.14.3", "#11/03/2026#", "'340'");
    addResult("90.14.3", "#11/04/2026#", "'  '");
    EXPECT_EQ(skipped()->stored, "340");
    EXPECT_EQ(skipped()->date, QDate(2026, 11, 3));
}

TEST_F(EvaluationRecordsTest, DiabetesIsLookedForInThreePlaces)
{
    EXPECT_FALSE(readDiabetes(database(), 17).present);
    for (const char *other :
         {"cronpat VALUES (17, 31)", "cronpat VALUES (18, 32)", "pat_rem2 VALUES (17, 1, '250.00')",
          "pat_rem2 VALUES (17, 2, '2500')", "patopers VALUES (17, '25.0')", "patopers VALUES (18, '64801')"})
        execute(QStringLiteral("INSERT INTO ") + other);
    EXPECT_FALSE(readDiabetes(database(), 17).present);
    const std::pair<const char *, const char *> places[]{
        {"patopers VALUES (17, '64801')", "dalle diagnosi del paziente, senza data"},
        {"patopers VALUES (17, '250.02')", "dalle diagnosi del paziente, senza data"},
        {"pat_rem2 VALUES (17, 2, '250.01')", "dall'anamnesi remota, senza data"},
        {"cronpat VALUES (17, 167)", "dalle patologie croniche, senza data"},
        {"cronpat VALUES (17, 32)", "dalle patologie croniche, senza data"},
    };
    for (const auto &[row, source] : places) {
        execute(QStringLiteral("INSERT INTO ") + row);
        const Condition found = readDiabetes(database(), 17);
        EXPECT_TRUE(found.present) << row;
        EXPECT_EQ(found.source.toStdString(), source) << row;
    }
}

TEST_F(EvaluationRecordsTest, SmokersByTheQuestionnaireHoweverOld)
{
    addExamination("H", "#01/01/2026#", lifestyle("01"));
    addExamination("H", "#01/01/2026#", "Null");
    addExamination("H", "#01/01/2026#", "'0303'");
    addExamination("A", "#01/01/2026#", lifestyle("03"));
    EXPECT_FALSE(readSmoking(database(), 17).present);
    addExamination("H", "Null", lifestyle(" 3"));
    EXPECT_EQ(readSmoking(database(), 17).source.toStdString(), "dal questionario, senza data");
    addExamination("H", "#02/03/1999#", lifestyle("03"));
    addExamination("H", "#02/03/1998#", lifestyle("03"));
    EXPECT_EQ(readSmoking(database(), 17).source.toStdString(), "questionario del 03/02/1999");
    EXPECT_TRUE(readSmoking(database(), 17).present);
}

TEST_F(EvaluationRecordsTest, WaistOfTheNewestExamination)
{
    addExamination("A", daysAgo(366), "'170 70.0 99.0  '");
    EXPECT_EQ(waist(), "");
    addExamination("A", daysAgo(365), "'170 70.0 98.5  '");
    EXPECT_EQ(waist(), "98.5|2025-11-21");
    addExamination("A", "Null", "'170 70.0 77.0'");
    EXPECT_EQ(waist(), "98.5|2025-11-21");
    // The newest one ends the search even when it holds no waist.
    addExamination("A", daysAgo(1), "'170 70.0     '");
    EXPECT_EQ(waist(), "");
    addExamination("A", daysAgo(0), "Null");
    EXPECT_EQ(waist(), "");
    addExamination("A", daysAgo(0), "'170 70.0101.0'");
    EXPECT_EQ(waist(), "101|2026-11-21");
    for (const char *unmeasured : {"'170 70.000000'", "'170 70.00.0  '"}) {
        addExamination("A", daysAgo(0), unmeasured);
        EXPECT_EQ(waist(), "") << unmeasured;
    }
    addExamination("A", daysAgo(0), "'170 70.0abc  '");
    EXPECT_EQ(waist(), "0|2026-11-21") << "read, and remarked on";
    execute("DELETE * FROM DEFCAMPI");
    EXPECT_EQ(waist(), "");
}

TEST_F(EvaluationRecordsTest, TheNewestRecentResultEndsTheSearch)
{
    addResult("90.27.1", daysAgo(366), "'120'");
    EXPECT_EQ(glucose(), "");
    addResult("90.27.1", daysAgo(365), "'118,5'");
    EXPECT_EQ(glucose(), "118|2025-11-21");
    addResult("90.27.1", daysAgo(2), "'  '");
    EXPECT_EQ(glucose(), "") << "blank, and yet the newest";
    addResult("90.27.1", daysAgo(1), "'99'");
    EXPECT_EQ(glucose(), "99|2026-11-20");
}

TEST_F(EvaluationRecordsTest, BothPressuresOfTheNewestMeasurement)
{
    addPressure(daysAgo(366), "150", "95");
    EXPECT_EQ(shown(readRecentPressures(database(), 17, clock.today()).systolic), "");
    addPressure(daysAgo(365), "140", "90");
    addPressure(daysAgo(3), "Null", "70");
    const PressureProposals pressures = readRecentPressures(database(), 17, clock.today());
    EXPECT_EQ(shown(pressures.systolic), "");
    EXPECT_EQ(shown(pressures.diastolic), "70|2026-11-18");
}

TEST_F(EvaluationRecordsTest, TheNewestThresholdsOfTheRegion)
{
    execute("INSERT INTO TabParamSM VALUES (3, #01/01/2005#, 88, 102, 150, 50, 40, 110, 130, 85)");
    execute("INSERT INTO TabParamSM VALUES (3, #04/01/2010#, 80, 94, 149, 51, Null, 100, 131, 86)");
    execute("INSERT INTO TabParamSM VALUES (16, #01/01/2020#, 1, 1, 1, 1, 1, 1, 1, 1)");
    const auto thresholds = readMetabolicThresholds(database(), "03");
    ASSERT_TRUE(thresholds);
    EXPECT_EQ(thresholds->since, QDate(2010, 4, 1));
    EXPECT_EQ(thresholds->waistWomenCm, 80);
    EXPECT_EQ(thresholds->waistMenCm, 94);
    EXPECT_EQ(thresholds->triglyceridesMgDl, 149);
    EXPECT_EQ(thresholds->hdlWomenMgDl, 51);
    EXPECT_FALSE(thresholds->hdlMenMgDl);
    EXPECT_EQ(thresholds->glucoseMgDl, 100);
    EXPECT_EQ(thresholds->systolicMmHg, 131);
    EXPECT_EQ(thresholds->diastolicMmHg, 86);
    for (const char *region : {"", "04", "x"})
        EXPECT_FALSE(readMetabolicThresholds(database(), region)) << region;
}

TEST_F(EvaluationRecordsTest, TheBandOfTheChart)
{
    execute("INSERT INTO Carta_Rischio VALUES (true, 60, 69, false, true, 130, 149, 174, 212, 4)");
    execute("INSERT INTO Carta_Rischio VALUES (false, 60, 69, false, true, 130, 149, 174, 212, Null)");
    const auto band = [this](Sex sex, int age, bool diabetic, bool smoker, int pressure, int cholesterol) {
        return readChartBand(database(), sex, age, diabetic, smoker, pressure, cholesterol).value_or(-1);
    };
    EXPECT_EQ(band(Sex::Male, 60, false, true, 130, 174), 4);
    EXPECT_EQ(band(Sex::Male, 69, false, true, 149, 212), 4);
    EXPECT_EQ(band(Sex::Male, 59, false, true, 130, 174), -1);
    EXPECT_EQ(band(Sex::Male, 70, false, true, 130, 174), -1);
    EXPECT_EQ(band(Sex::Male, 60, true, true, 130, 174), -1);
    EXPECT_EQ(band(Sex::Male, 60, false, false, 130, 174), -1);
    EXPECT_EQ(band(Sex::Male, 60, false, true, 129, 174), -1);
    EXPECT_EQ(band(Sex::Male, 60, false, true, 150, 174), -1);
    EXPECT_EQ(band(Sex::Male, 60, false, true, 130, 173), -1);
    EXPECT_EQ(band(Sex::Male, 60, false, true, 130, 213), -1);
    EXPECT_EQ(band(Sex::Female, 60, false, true, 130, 174), 0);
    EXPECT_EQ(band(Sex::Unknown, 60, false, true, 130, 174), 0) << "whoever is not a man";
}

TEST_F(EvaluationRecordsTest, SavesRefusesAndReplaces)
{
    execute("INSERT INTO Rischio_Cardio (cod_paz, Data_Val, eta) VALUES (18, #11/21/2026#, 50)");
    CardiovascularEvaluation evaluation;
    evaluation.ageYears = 60;
    evaluation.risk = 0.125;
    evaluation.systolicMmHg = 140;
    evaluation.totalCholesterolMgDl = 220;
    evaluation.hdlMgDl = 50;
    evaluation.diabetic = true;
    const auto all = QStringLiteral("SELECT * FROM Rischio_Cardio WHERE cod_paz = 17");
    EvaluationVersions versions;
    EXPECT_EQ(saveCardiovascular(state, day, evaluation, true, versions), WriteResult::Done);
    EXPECT_EQ(clinical(all), QStringList{"17|2026-11-21 00:00:00|60|0.125|140|220|50|false|true|false"});
    evaluation.ageYears.reset();
    evaluation.smoker = true;
    EXPECT_EQ(saveCardiovascular(state, day, evaluation, true, versions), WriteResult::Refused);
    EXPECT_EQ(saveCardiovascular(state, day, evaluation, false, versions), WriteResult::Changed)
        << "what was never read";
    EXPECT_EQ(clinical(all), QStringList{"17|2026-11-21 00:00:00|60|0.125|140|220|50|false|true|false"});
    versions.read = readEvaluations(database(), storedCardiovascular(), 17).value(day);
    EXPECT_EQ(versions.read, versions.stored);
    EXPECT_EQ(saveCardiovascular(state, day, evaluation, false, versions), WriteResult::Done);
    EXPECT_EQ(clinical(all), QStringList{"17|2026-11-21 00:00:00|Null|0.125|140|220|50|true|true|false"});

    EvaluationValues seen = versions.read;
    EXPECT_EQ(deleteEvaluation(state, storedCardiovascular(), day, seen), WriteResult::Changed);
    EXPECT_EQ(deleteEvaluation(state, storedCardiovascular(), day, seen), WriteResult::Done) << "seen now";
    EXPECT_EQ(deleteEvaluation(state, storedCardiovascular(), day, seen), WriteResult::Vanished);
    EXPECT_EQ(saveCardiovascular(state, day, evaluation, false, versions), WriteResult::Vanished);
    EXPECT_EQ(clinical("SELECT cod_paz FROM Rischio_Cardio"), QStringList{"18"});
}

TEST_F(EvaluationRecordsTest, WhatIsStoredIsJournalledAndNothingElse)
{
    const auto journal = [this] {
        return clinical(
            "SELECT Tipo, data_mod, cod_paz, codice1, codice2, cancellazione FROM Modifiche ORDER BY "
            "idModifica");
    };
    const QDateTime earlier = jet::dateTime(2026, 2, 1, 10, 30);
    CardiovascularEvaluation risk;
    MetabolicEvaluation metabolic;
    EvaluationVersions none;
    EXPECT_EQ(saveCardiovascular(state, earlier, risk, true, none), WriteResult::Done);
    QStringList wanted{"101|2026-11-21 00:00:00|17|01/02/2026|Null|false"};
    EXPECT_EQ(journal(), wanted) << "the day of the change, and the evaluation's own";
    risk.smoker = true;
    EXPECT_EQ(saveCardiovascular(state, earlier, risk, true, none), WriteResult::Refused);
    EXPECT_EQ(saveCardiovascular(state, earlier, risk, false, none), WriteResult::Changed);
    EvaluationValues unseen;
    EXPECT_EQ(deleteEvaluation(state, storedCardiovascular(), earlier, unseen), WriteResult::Changed);
    EXPECT_EQ(deleteEvaluation(state, storedMetabolic(), day, unseen), WriteResult::Vanished);
    EXPECT_EQ(journal(), wanted);

    EXPECT_EQ(saveMetabolic(state, day, metabolic, true, none), WriteResult::Done);
    metabolic.verdict = 1;
    none.read = readEvaluations(database(), storedMetabolic(), 17).value(day);
    EXPECT_EQ(saveMetabolic(state, day, metabolic, true, none), WriteResult::Done);
    EvaluationValues seen = readEvaluations(database(), storedMetabolic(), 17).value(day);
    EXPECT_EQ(deleteEvaluation(state, storedMetabolic(), day, seen), WriteResult::Done);
    EXPECT_EQ(deleteEvaluation(state, storedCardiovascular(), earlier, unseen), WriteResult::Done);
    wanted += {"102|2026-11-21 00:00:00|17|21/11/2026|Null|false",
               "102|2026-11-21 00:00:00|17|21/11/2026|Null|true",
               "101|2026-11-21 00:00:00|17|01/02/2026|Null|true"};
    EXPECT_EQ(journal(), wanted) << "two changes of a day are one row, a deletion is another";

    // A change that cannot be stored is none.
    execute("DROP TABLE SindrMetabolica");
    EXPECT_EQ(saveMetabolic(state, day, metabolic, true, none), WriteResult::Failed);
    EXPECT_EQ(journal(), wanted);
}

TEST_F(EvaluationRecordsTest, RowsOfOtherProgramsMayHaveATimeAndNulls)
{
    execute("INSERT INTO Rischio_Cardio (cod_paz, Data_Val) VALUES (17, #05/02/2026 10:30:05#)");
    execute("INSERT INTO SindrMetabolica (cod_paz, Data_Val) VALUES (17, #05/02/2026 10:30:05#)");
    const auto history = readCardiovascularHistory(database(), 17);
    ASSERT_EQ(history.size(), 1);
    EXPECT_EQ(history[0].date.toStdString(), "02/05/2026");
    EXPECT_EQ(history[0].value.toStdString(), "");
    EXPECT_FALSE(history[0].number);
    const auto risk =
        readEvaluation<CardiovascularEvaluation>(database(), storedCardiovascular(), 17, history[0].when);
    ASSERT_TRUE(risk);
    EXPECT_FALSE(risk->risk || risk->systolicMmHg || risk->ageYears || risk->smoker);

    const auto verdicts = readMetabolicHistory(database(), 17);
    ASSERT_EQ(verdicts.size(), 1);
    EXPECT_EQ(verdicts[0].value.toStdString(), "NO");
    const auto metabolic =
        readEvaluation<MetabolicEvaluation>(database(), storedMetabolic(), 17, verdicts[0].when);
    ASSERT_TRUE(metabolic);
    EXPECT_EQ(metabolic->verdict, 0);
    EXPECT_FALSE(metabolic->waistCm);

    EXPECT_FALSE(readEvaluation<CardiovascularEvaluation>(database(), storedCardiovascular(), 17,
                                                          jet::dateTime(2026, 5, 2)));
    EvaluationValues seen = readEvaluations(database(), storedMetabolic(), 17).value(verdicts[0].when);
    EXPECT_EQ(deleteEvaluation(state, storedMetabolic(), verdicts[0].when, seen), WriteResult::Done);
    EXPECT_TRUE(readMetabolicHistory(database(), 17).isEmpty());
}

} // namespace
} // namespace clivara
