// SPDX-License-Identifier: Apache-2.0
#include "chart/SharedWrites.h"

#include "ChartFixture.h"
#include "chart/RecordSaving.h"

namespace clivara {
namespace {

class SharedWritesTest : public ChartFixture {
protected:
    SharedWritesTest()
    {
        environment.clinical =
            create("Orvale.sqlite",
                   {"CREATE TABLE VISITE (chiave LONG NOT NULL, nota TEXT(10))",
                    "CREATE UNIQUE INDEX chiave ON VISITE (chiave)", "CREATE TABLE archivio (cod_paz LONG)",
                    "INSERT INTO archivio VALUES (17)", "INSERT INTO VISITE VALUES (1, 'prima')"});
    }

    WriteResult add(const QVariant &key, const QString &note)
    {
        const auto row = database().OpenRecordset("VISITE");
        state.operations.addNew(*row);
        row->Fields("chiave").setValue(key);
        row->Fields("nota").setValue(note);
        state.operations.update(*row);
        return WriteResult::Done;
    }
    // Another workstation saves, without waiting.
    void saveElsewhere(int key)
    {
        dao::DBEngine other;
        other.OpenDatabase(path("Orvale.sqlite"))
            ->Execute(QStringLiteral("INSERT INTO VISITE VALUES (%1, 'altrove')").arg(key));
    }
};

// All others wait as long as the transaction lasts, and what is wrong with the save does not get better.
TEST_F(SharedWritesTest, APermanentErrorEndsTheSaveAtOnceAndIsTold)
{
    const struct {
        QVariant key;
        QString note;
        const char *reason, *advice;
    } cases[] = {
        {1, "x", "esiste già una registrazione", "correggerlo"},
        {2, "undici caratteri", "più lungo", "correggerlo"},
        {{}, "x", "manca un dato", "correggerlo"},
        {3000000000.0, "x", "un valore non è", "correggerlo"},
    };
    int key = 100;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.reason);
        const WriteResult result = writeTogether(state, "VISITE", [&] { return add(c.key, c.note); });
        EXPECT_EQ(result, WriteResult::Failed);
        EXPECT_TRUE(pauses.taken.isEmpty());
        saveElsewhere(++key);
        prompts.queue();
        warnNotSaved(state, result.error);
        EXPECT_TRUE(prompts.last().contains(c.reason)) << qPrintable(prompts.last());
        EXPECT_TRUE(prompts.last().contains(c.advice)) << qPrintable(prompts.last());
        EXPECT_FALSE(prompts.last().contains("occupato")) << qPrintable(prompts.last());
    }
    EXPECT_EQ(writeTogether(state, "VISITE", [&] { return add(2, "dopo"); }), WriteResult::Done);
}

TEST_F(SharedWritesTest, WhatAnotherWorkstationIsDoingIsWaitedForOutsideTheTransaction)
{
    for (const dao::ErrorNumber theirs : {dao::Locked, dao::RecordChanged, dao::RecordDeleted}) {
        pauses.taken.clear();
        execute("DELETE * FROM VISITE");
        int attempts = 0;
        pauses.actAt = 1;
        pauses.during = [&] { saveElsewhere(7); };
        EXPECT_EQ(writeTogether(state, "VISITE",
                                [&] {
                                    const WriteResult result = add(++attempts, "qui");
                                    if (attempts < 3)
                                        throw dao::Error(theirs, "occupato");
                                    return result;
                                }),
                  WriteResult::Done);
        EXPECT_EQ(pauses.taken.size(), 2);
        EXPECT_EQ(clinical("SELECT chiave FROM VISITE ORDER BY chiave"), (QStringList{"3", "7"}))
            << "nothing stays of the attempts before";
    }
    pauses.taken.clear();
    pauses.actAt = 0;
    const WriteResult result =
        writeTogether(state, "VISITE", []() -> WriteResult { throw dao::Error(dao::Locked, "occupato"); });
    EXPECT_EQ(result, WriteResult::Failed);
    EXPECT_EQ(result.error, dao::Locked);
    EXPECT_EQ(pauses.taken.size(), 19) << "as often as anything is tried";
}

TEST_F(SharedWritesTest, APatientWhoWasRemovedMeanwhileGetsNoRows)
{
    execute("DELETE * FROM archivio");
    const WriteResult result = writeTogether(state, "VISITE", [&] { return add(2, "x"); });
    EXPECT_EQ(result, WriteResult::Failed);
    EXPECT_EQ(clinical("SELECT chiave FROM VISITE"), QStringList{"1"});
    EXPECT_TRUE(pauses.taken.isEmpty());
    prompts.queue();
    warnNotSaved(state, result.error);
    EXPECT_TRUE(prompts.last().contains("il paziente non è più in archivio")) << qPrintable(prompts.last());
    execute("INSERT INTO archivio VALUES (17)");
    EXPECT_EQ(writeTogether(state, "VISITE", [&] { return add(2, "x"); }), WriteResult::Done);
    state.header.identified = false; // the registry could not be read when the section was opened
    EXPECT_EQ(writeTogether(state, "VISITE", [&] { return add(3, "x"); }), WriteResult::Done);
}

// A record that stopped being possible between the look at it and the transaction.
TEST_F(SharedWritesTest, ARefusalIsToldAtTheFirstAttempt)
{
    struct Record final : WrittenRecord {
        bool mayWrite() override
        {
            if (isTaken)
                prompts.warn("Esiste già.");
            return !isTaken;
        }
        WriteResult write() override
        {
            isTaken = true;
            return WriteResult::Refused;
        }
        RecordConflict conflict() const override { return {}; }
        void keepMine() override { }

        explicit Record(Prompts &toldBy)
            : prompts(toldBy)
        {
        }
        Prompts &prompts;
        bool isTaken = false;
    } record(prompts);
    prompts.queue();
    EXPECT_EQ(saveRecord(state, "Prova", record), WriteResult::Refused);
    EXPECT_TRUE(prompts.last().contains("Esiste già.")) << qPrintable(prompts.last());
}

// The check of the form and that of the write disagree.
TEST_F(SharedWritesTest, ARefusalThatTheFormDoesNotSeeEnds)
{
    struct Record final : WrittenRecord {
        bool mayWrite() override { return true; }
        WriteResult write() override { return ++attempts < 50 ? WriteResult::Refused : WriteResult::Done; }
        RecordConflict conflict() const override { return {}; }
        void keepMine() override { }

        int attempts = 0;
    } record;
    prompts.queue();
    EXPECT_EQ(saveRecord(state, "Prova", record), WriteResult::Refused);
    EXPECT_TRUE(prompts.last().contains("Salvataggio non riuscito")) << qPrintable(prompts.last());
}

} // namespace
} // namespace clivara
