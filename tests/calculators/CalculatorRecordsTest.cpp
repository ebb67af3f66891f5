// SPDX-License-Identifier: Apache-2.0
#include "inputs/CalculatorRecords.h"
#include "calculators/CalculatorFixture.h"

namespace clivara {
namespace {

class CalculatorRecordsTest : public CalculatorFixture {
protected:
    std::string weight()
    {
        const auto proposal = readWeight(database(), 17).proposal;
        return proposal ? proposal->text.toStdString() : "-";
    }
    std::string creatinine()
    {
        const auto proposal = readNewestResult(database(), 17, "90.16.4", clock.today()).proposal;
        return proposal ? proposal->text.toStdString() : "-";
    }
};

TEST_F(CalculatorRecordsTest, ReadsThePatient)
{
    const auto patient = readCalculatorPatient(database(), 17);
    ASSERT_TRUE(patient);
    EXPECT_EQ(patient->sex, "M");
    EXPECT_EQ(patient->birth, QDate(1966, 3, 12));
    EXPECT_FALSE(readCalculatorPatient(database(), 18));
    EXPECT_FALSE(readCalculatorPatient(database(), -1));

    execute("UPDATE archivio SET sesso = ' ', Data_Nasc = Null");
    const auto blank = readCalculatorPatient(database(), 17);
    EXPECT_TRUE(blank && blank->sex.isEmpty() && blank->birth.isNull());
}

TEST_F(CalculatorRecordsTest, CutsTheWeightOfTheNewestExamination)
{
    EXPECT_EQ(weight(), "-");
    addExamination("A", "#01/10/2020#", "'170 61.5  note'", "20200110");
    EXPECT_EQ(weight(), " 61.5") << "as it stands, blanks included";
    addExamination("A", "#01/10/2021#", "'170'", "20210110");
    EXPECT_EQ(weight(), "") << "the text ends before the field";
    addExamination("A", "#02/10/2021#", "'l''altez'", "20210210");
    EXPECT_EQ(weight(), "ltez");
    addExamination("A", "#05/01/2022#", "'170071.0'", "1");
    addExamination("A", "#05/01/2022#", "'170072.0'", "2");
    EXPECT_EQ(weight(), "072.0") << "of the same day the higher key";
    EXPECT_EQ(readWeight(database(), 17).proposal->date, QDate(2022, 5, 1));
    addExamination("A", "#06/01/2022#", "Null", "3");
    EXPECT_EQ(weight(), "-") << "the newest has no text";
    execute("DELETE FROM ESAME_OB WHERE dati_paz Is Null");

    execute("UPDATE DEFCAMPI SET [offset] = 1, lunghezza = 3 WHERE Formapp = 'EOG'");
    EXPECT_EQ(weight(), "170");
    for (const char *const impossible : {"[offset] = 0", "[offset] = 1, lunghezza = -1", "[offset] = Null"}) {
        execute(QStringLiteral("UPDATE DEFCAMPI SET ") + impossible + " WHERE Formapp = 'EOG'");
        EXPECT_EQ(weight(), "-") << impossible;
    }
    execute("DELETE FROM DEFCAMPI WHERE Formapp = 'EOG'");
    EXPECT_EQ(weight(), "-");
}

TEST_F(CalculatorRecordsTest, TakesTheNewestResultOfThePastYear)
{
    EXPECT_EQ(creatinine(), "-");
    addResult("90.16.4", daysAgo(366), "'0.7'");
    addResult("90.16.4", "Null", "'0.6'");
    EXPECT_EQ(creatinine(), "-");
    addResult("90.16.4", daysAgo(365), "'0.80'");
    EXPECT_EQ(creatinine(), "0.8");
    addResult("90.16.04", daysAgo(1), "'9.1'"); // another code
    addResult("90.16.4", daysAgo(1), "'9.2'", 2); // no laboratory result
    addResult("90.16.4", daysAgo(1), "'9.3'", 1, 18); // another patient
    addResult("90.16.4", daysAgo(2), "'   '");
    addResult("90.16.4", daysAgo(2), "Null");
    EXPECT_EQ(creatinine(), "0.8") << "what is blank is passed over";
    addResult("90.16.4", daysAgo(3), "'  1.10 '");
    EXPECT_EQ(creatinine(), "1.1");
    addResult("90.16.4", daysAgo(3), "'1.20'");
    addToLast("90.16.4", "'1.30'");
    EXPECT_EQ(creatinine(), "1.3") << "of the same day the higher keys";

    const auto proposal = readNewestResult(database(), 17, "90.16.4", clock.today()).proposal;
    EXPECT_EQ(proposal->date, clock.today().addDays(-3));
    EXPECT_EQ(proposal->stored, "1.30");

    const std::pair<const char *, const char *> texts[] = {
        {"'1,10'", "1"},
        {"'<0.5'", "0"},
        {"'.9 mg'", "0.9"},
        {"'vedi l''allegato'", "0"},
    };
    for (const auto &[stored, number] : texts) {
        addResult("90.16.4", daysAgo(0), stored);
        EXPECT_EQ(creatinine(), number) << stored;
    }
}

TEST_F(CalculatorRecordsTest, NotesTheExamUnderAnotherSpellingOfItsCode)
{
    const auto found = [this](const char *code) {
        const Finding finding = readNewestResult(database(), 17, code, clock.today());
        const auto &other = finding.otherCode;
        return (finding.proposal ? finding.proposal->text : QString("-")).toStdString() + '|'
               + (other ? other->code + ' ' + other->stored + ' ' + other->date.toString(Qt::ISODate)
                        : QString())
                     .toStdString();
    };
    addResult("90.16.4", daysAgo(366), "'0.7'");
    EXPECT_EQ(found("90.16.04"), "-|") << "too old";
    addResult("90.16.4", daysAgo(365), "'0.8'");
    EXPECT_EQ(found("90.16.04"), "-|90.16.4 0.8 2025-11-21");
    addResult("90.16.04", daysAgo(100), "'1.0'");
    EXPECT_EQ(found("90.16.04"), "1|") << "older than what is proposed";
    addResult("90.16.4", daysAgo(100), "'1.1'");
    EXPECT_EQ(found("90.16.04"), "1|") << "of the same day";
    addResult("90.16.4", daysAgo(50), "'1.2'");
    addResult("90.16.4", daysAgo(40), "'non eseguito'");
    addResult("90.16.4", daysAgo(30), "Null");
    addResult("90.16.4", daysAgo(20), "'9'", 2); // no laboratory result
    addResult("90.16.4", daysAgo(20), "'9'", 1, 18); // another patient
    EXPECT_EQ(found("90.16.04"), "1|90.16.4 1.2 2026-10-02");
    EXPECT_EQ(found("90.16.4"), "0|") << "the form of the other spelling has all it needs";
}

TEST_F(CalculatorRecordsTest, NotesUnitAndDayOfTheExam)
{
    addResult("90.16.4", daysAgo(3), "'97'");
    setOfLast("unita_Mis = ' µmol/l ', data_eff = #02/03/2019#");
    const auto proposal = readNewestResult(database(), 17, "90.16.4", clock.today()).proposal;
    EXPECT_EQ(proposal->unit, "µmol/l");
    EXPECT_EQ(proposal->performed, QDate(2019, 2, 3));
}

TEST_F(CalculatorRecordsTest, PassesErrorsOn)
{
    execute("DROP TABLE riepil2");
    execute("DROP TABLE DEFCAMPI");
    addExamination("A", "#01/10/2020#", "'170061.5'", "1");
    EXPECT_THROW(creatinine(), dao::Error);
    EXPECT_THROW(weight(), dao::Error);
}

} // namespace
} // namespace clivara
