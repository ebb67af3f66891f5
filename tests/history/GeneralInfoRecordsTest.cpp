// SPDX-License-Identifier: Apache-2.0
#include "history/GeneralInfoRecords.h"
#include "GeneralInfoFixture.h"
#include "chart/SharedWrites.h"

namespace clivara {

namespace {

class GeneralInfoRecords : public GeneralInfoFixture {
protected:
    WriteResult write(const std::function<void()> &rows)
    {
        return writeTogether(state, "test", [&]() -> WriteResult {
            rows();
            return WriteResult::Done;
        });
    }
    WriteResult writeAllergies(const QString &code)
    {
        return write([&] { writeCode(state, QuestionnaireKind::Allergies, code); });
    }
    WriteResult writeText(const QString &text)
    {
        return write([&] { EXPECT_TRUE(writeFreeText(state, text)); });
    }
    StoredCode allergies() { return readCode(database(), 17, QuestionnaireKind::Allergies); }
    QStringList rows()
    {
        return clinical("SELECT cod_paz, tipo_dati, chiave, data_reg, dati_paz FROM ESAME_OB");
    }
};

TEST_F(GeneralInfoRecords, ReadsAPatientsOwnRowOfTheKind)
{
    EXPECT_FALSE(allergies().exists);
    execute("INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (18, 'X', 'of another')");
    execute("INSERT INTO ESAME_OB (cod_paz, tipo_dati, dati_paz) VALUES (17, 'M', 'of another kind')");
    EXPECT_FALSE(allergies().exists);
    store("X", "Null", "Null");
    EXPECT_TRUE(allergies().exists);
    EXPECT_FALSE(allergies().code.has_value());
    execute("UPDATE ESAME_OB SET dati_paz = '' WHERE cod_paz = 17 AND tipo_dati = 'X'");
    EXPECT_EQ(allergies().code, QString(""));
}

TEST_F(GeneralInfoRecords, ANewRowIsFoundByItsEmptyKey)
{
    EXPECT_EQ(writeAllergies("0199"), WriteResult::Done);
    EXPECT_EQ(rows(), QStringList{"17|X||Null|0199"});
    const auto table = environment.clinical->OpenRecordset("ESAME_OB", dao::RecordsetType::Table);
    table->setIndex("cod_tipo");
    table->Seek("=", 17, "X", "");
    EXPECT_FALSE(table->NoMatch());
}

TEST_F(GeneralInfoRecords, TheRowThatIsReadIsTheRowThatIsWritten)
{
    // Other programs leave the key Null; a second row would hide what was saved.
    store("X", "old", "Null");
    EXPECT_EQ(writeAllergies("new"), WriteResult::Done);
    EXPECT_EQ(rows(), QStringList{"17|X|Null|Null|new"});
    // Where there are several, the one with the empty key.
    store("X", "second", "''");
    EXPECT_EQ(allergies().code, QString("second"));
    EXPECT_EQ(writeAllergies("third"), WriteResult::Done);
    EXPECT_EQ(rows(), (QStringList{"17|X|Null|Null|new", "17|X||Null|third"}));
}

TEST_F(GeneralInfoRecords, TwoSavesOfADayAreOneChange)
{
    EXPECT_EQ(writeAllergies("1"), WriteResult::Done);
    EXPECT_EQ(writeAllergies("2"), WriteResult::Done);
    EXPECT_EQ(journal(), QStringList{"4|2026-11-21 00:00:00|17|X|Null|false"});
    EXPECT_EQ(writeText("a"), WriteResult::Done);
    EXPECT_EQ(journal(), (QStringList{"4|2026-11-21 00:00:00|17|X|Null|false",
                                      "3|2026-11-21 00:00:00|17|Null|Null|false"}));
}

TEST_F(GeneralInfoRecords, InfectionsCarryTheTimeOfTheSave)
{
    EXPECT_EQ(write([&] { writeCode(state, QuestionnaireKind::Infections, "99", clock.local()); }),
              WriteResult::Done);
    EXPECT_EQ(rows(), QStringList{"17|M||2026-11-21 10:00:00|99"});
    EXPECT_EQ(journal(), QStringList{"4|2026-11-21 00:00:00|17|M|Null|false"});
}

TEST_F(GeneralInfoRecords, FreeText)
{
    EXPECT_EQ(readFreeText(database(), 17), QString("Nichel"));
    const QString awkward = QString::fromUtf8("Sant'Anna: \"è\" 100% [*]\r\n'; DROP TABLE x -- €");
    EXPECT_EQ(writeText(awkward), WriteResult::Done);
    EXPECT_EQ(readFreeText(database(), 17), awkward);
    execute("UPDATE inf_gen SET Allergie = Null");
    EXPECT_EQ(readFreeText(database(), 17), QString());

    state.header.patientCode = 18;
    EXPECT_FALSE(readFreeText(database(), 18).has_value());
    EXPECT_FALSE(writeFreeText(state, "a"));
    EXPECT_EQ(clinical("SELECT cod_paz FROM inf_gen"), QStringList{"17"});
}

TEST_F(GeneralInfoRecords, AFailedWriteLeavesNothingButALineInTheLog)
{
    const RefusedRows refused(database(), "ESAME_OB");
    EXPECT_EQ(writeAllergies("1"), WriteResult::Failed);
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_TRUE(journal().isEmpty());
    EXPECT_TRUE(logged().contains("Recordset_Update - Failed"));
}

} // namespace

} // namespace clivara
