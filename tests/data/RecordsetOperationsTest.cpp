// SPDX-License-Identifier: Apache-2.0
#include "data/RecordsetOperations.h"

#include "CountedPauses.h"
#include "DataFixture.h"
#include "LockHolder.h"

namespace {

using clivara::RecordsetOperations;

class RecordsetOperationsTest : public DataFixture {
protected:
    RecordsetOperationsTest()
    {
        database = create("Orvale.sqlite", {"CREATE TABLE VISITE (chiave LONG NOT NULL, nota TEXT(40))",
                                            "CREATE UNIQUE INDEX chiave ON VISITE (chiave)",
                                            "INSERT INTO VISITE VALUES (1, 'prima')"});
    }

    int rows(const QString &condition) const
    {
        const auto found = database->OpenRecordset("select * from VISITE where " + condition);
        int count = 0;
        for (; !found->Eof(); found->MoveNext())
            ++count;
        return count;
    }

    static QStringList failure(const QString &routine, int attempt, const dao::Error &error,
                               const QString &source)
    {
        return {QStringLiteral("%1 - iErr=%2 - Error %3 - ").arg(routine).arg(attempt).arg(error.number())
                    + error.text(),
                routine + " - " + source};
    }

    template <typename Operation>
    static dao::Error errorOf(Operation operation)
    {
        try {
            operation();
        } catch (const dao::Error &error) {
            return error;
        }
        ADD_FAILURE() << "no error";
        return {0, {}};
    }

    std::shared_ptr<dao::Database> database;
    CountedPauses pauses;
    RecordsetOperations operations{log, pauses};
};

TEST_F(RecordsetOperationsTest, SucceedAtOnceWithTwoLinesEach)
{
    const auto visits = database->OpenRecordset("VISITE");
    EXPECT_EQ(operations.Recordset_AddNew(*visits), 0);
    visits->Fields("chiave").setValue(2);
    EXPECT_EQ(operations.Recordset_Update(*visits), 0);
    visits->MoveFirst();
    EXPECT_EQ(operations.Recordset_Edit(*visits), 0);
    visits->Fields("nota").setValue("cambiata");
    operations.update(*visits); // the same, for code that needs the error

    EXPECT_EQ(logged(),
              (QStringList{"Recordset_AddNew - begin", "Recordset_AddNew - 0", "Recordset_Update - begin",
                           "Recordset_Update - 0", "Recordset_Edit - begin", "Recordset_Edit - 0",
                           "Recordset_Update - begin", "Recordset_Update - 0"}));
    EXPECT_TRUE(pauses.taken.isEmpty());
    EXPECT_EQ(rows("nota='cambiata'"), 1);
    EXPECT_EQ(rows("chiave=2"), 1);
}

TEST_F(RecordsetOperationsTest, ALockThatAnotherProcessReleasesIsWaitedFor)
{
    const QString source = "select * from VISITE where chiave=1";
    const auto visits = database->OpenRecordset(source);
    visits->Edit();
    visits->Fields("nota").setValue("dopo il blocco");
    LockHolder other(path("Orvale.sqlite"));
    const dao::Error locked = errorOf([&] { visits->Update(); });
    EXPECT_EQ(locked.number(), dao::Locked);

    pauses.actAt = 2;
    pauses.during = [&] { other.release(); };
    operations.Recordset_Update(*visits);

    QStringList expected{"Recordset_Update - begin"};
    for (int attempt = 1; attempt <= 2; ++attempt)
        expected << failure("Recordset_Update", attempt, locked, source) << "Recordset_Update - TryAgain";
    expected << "Recordset_Update - 0";
    EXPECT_EQ(logged(), expected);
    EXPECT_EQ(pauses.taken, (QList{750, 750}));
    EXPECT_EQ(rows("nota='dopo il blocco'"), 1);
}

TEST_F(RecordsetOperationsTest, ALockThatStaysFailsAfterTwentyAttempts)
{
    const auto visits = database->OpenRecordset("VISITE");
    visits->AddNew();
    visits->Fields("chiave").setValue(2);
    {
        const LockHolder other(path("Orvale.sqlite"));
        EXPECT_EQ(operations.Recordset_Update(*visits), -1);
    }
    const QStringList lines = logged();
    EXPECT_EQ(lines.filter("Recordset_Update - iErr=").size(), 20);
    EXPECT_EQ(lines.filter("iErr=20 - Error 3260 - ").size(), 1) << qPrintable(lines.join('\n'));
    EXPECT_EQ(lines.count("Recordset_Update - TryAgain"), 19);
    EXPECT_EQ(lines.last(), "Recordset_Update - Failed");
    EXPECT_EQ(pauses.taken.size(), 19);

    EXPECT_EQ(visits->editMode(), dao::EditMode::Add) << "the buffer is still there";
    operations.Recordset_Update(*visits); // once the lock is gone
    EXPECT_EQ(rows("chiave=2"), 1);
}

TEST_F(RecordsetOperationsTest, APermanentErrorIsRetriedTheSameWay)
{
    const auto visits = database->OpenRecordset("VISITE");
    visits->AddNew();
    visits->Fields("nota").setValue("senza chiave");
    const dao::Error required = errorOf([&] { visits->Update(); });
    EXPECT_EQ(required.number(), dao::FieldRequired);
    pauses.draws = {0, 0.5, 0.001, 0.003, 0.9999999};
    EXPECT_EQ(errorOf([&] { operations.update(*visits); }).number(), dao::FieldRequired);

    QStringList expected{"Recordset_Update - begin"};
    for (int attempt = 1; attempt <= 20; ++attempt) {
        expected << failure("Recordset_Update", attempt, required, "VISITE");
        expected << (attempt < 20 ? "Recordset_Update - TryAgain" : "Recordset_Update - Failed");
    }
    EXPECT_EQ(logged(), expected);
    // 500.5 goes to the even 500, 501.5 to 502; never above 1000.
    EXPECT_EQ(pauses.taken.mid(0, 5), (QList{500, 750, 500, 502, 1000}));
    EXPECT_EQ(pauses.taken.size(), 19);
    EXPECT_EQ(rows("nota='senza chiave'"), 0);
}

TEST_F(RecordsetOperationsTest, EditAndAddNewFailWithTheirOwnTexts)
{
    const auto visits = database->OpenRecordset("VISITE");
    visits->MoveFirst();
    database->Execute("delete * from VISITE");
    const dao::Error deleted = errorOf([&] { visits->Edit(); });
    EXPECT_EQ(errorOf([&] { operations.edit(*visits); }).text(), deleted.text());
    const auto snapshot = database->OpenRecordset("VISITE", dao::RecordsetType::Snapshot);
    const dao::Error readOnly = errorOf([&] { snapshot->AddNew(); });
    EXPECT_EQ(errorOf([&] { operations.addNew(*snapshot); }).text(), readOnly.text());

    const QStringList lines = logged();
    ASSERT_EQ(lines.size(), 2 * (1 + 20 * 3));
    EXPECT_EQ(lines.mid(0, 4), QStringList{"Recordset_Edit - begin"}
                                   + failure("Recordset_Edit", 1, deleted, "VISITE")
                                   + QStringList{"Recordset_Edit - TryAgain"});
    EXPECT_EQ(lines.mid(119, 3),
              failure("Recordset_AddNew", 20, readOnly, "VISITE") + QStringList{"Recordset_AddNew - Failed"});
}

TEST_F(RecordsetOperationsTest, ATransactionIsBegunWhenTheOtherProcessIsDone)
{
    std::optional<dao::Transaction> transaction;
    {
        clivara::Attempts first;
        LockHolder other(path("Orvale.sqlite"));
        EXPECT_EQ(errorOf([&] {
                      operations.Workspace_BeginTrans(engine.DefaultWorkspace(), transaction, first);
                  }).number(),
                  dao::Locked);
        EXPECT_FALSE(transaction);
        EXPECT_EQ(pauses.taken.size(), 19);
        EXPECT_EQ(logged().filter("Workspace_BeginTrans - iErr=").size(), 20);
        EXPECT_EQ(logged().last(), "Workspace_BeginTrans - Failed");

        clivara::Attempts second;
        pauses.actAt = 21;
        pauses.during = [&] { other.release(); };
        operations.Workspace_BeginTrans(engine.DefaultWorkspace(), transaction, second);
    }
    EXPECT_EQ(logged().last(), "Workspace_BeginTrans - 0");
    ASSERT_TRUE(transaction);
    database->Execute("INSERT INTO VISITE VALUES (2, 'annullata')");
    transaction.reset();
    EXPECT_EQ(rows("chiave=2"), 0) << "what is not committed is undone";
}

// All other workstations wait for the end of a transaction, and nothing that stands in its way goes away
// before.
TEST_F(RecordsetOperationsTest, InsideATransactionThereIsOneAttempt)
{
    const auto visits = database->OpenRecordset("VISITE");
    dao::Transaction transaction(engine.DefaultWorkspace());
    visits->AddNew();
    visits->Fields("chiave").setValue(1);
    EXPECT_EQ(errorOf([&] { operations.update(*visits); }).number(), dao::DuplicateKey);
    const auto snapshot = database->OpenRecordset("VISITE", dao::RecordsetType::Snapshot);
    EXPECT_EQ(operations.Recordset_AddNew(*snapshot), -1);
    EXPECT_EQ(operations.Recordset_Edit(*snapshot), -1);
    EXPECT_TRUE(pauses.taken.isEmpty());
    EXPECT_EQ(logged().filter("iErr=1 ").size(), 3);
    EXPECT_EQ(logged().filter(" - Failed").size(), 3);
    EXPECT_TRUE(logged().filter("TryAgain").isEmpty());
}

TEST_F(RecordsetOperationsTest, AFileThatWasTakenAwayIsNotWaitedFor)
{
    if (!testengine::server().isEmpty())
        GTEST_SKIP() << "of files";
    const auto visits = database->OpenRecordset("VISITE");
    visits->AddNew();
    visits->Fields("chiave").setValue(2);
    ASSERT_TRUE(QFile::rename(path("Orvale.sqlite"), path("altrove.sqlite")));
    EXPECT_EQ(errorOf([&] { operations.update(*visits); }).number(), dao::DatabaseMoved);
    EXPECT_TRUE(pauses.taken.isEmpty());
}

TEST_F(RecordsetOperationsTest, AWholeIsTriedAgainForAnotherWorkstationOnly)
{
    clivara::Attempts attempts;
    for (const dao::ErrorNumber permanent :
         {dao::DuplicateKey, dao::FieldRequired, dao::FieldTooSmall, dao::DiskFull, dao::TransactionLost,
          dao::CommitInDoubt, dao::DatabaseMoved})
        EXPECT_FALSE(operations.waitToTryAgain("VISITE", permanent, attempts)) << permanent;
    EXPECT_TRUE(pauses.taken.isEmpty());
    EXPECT_TRUE(operations.waitToTryAgain("VISITE", dao::RecordChanged, attempts));
    EXPECT_TRUE(operations.waitToTryAgain("VISITE", dao::RecordDeleted, attempts));
    int more = 0;
    while (operations.waitToTryAgain("VISITE", dao::Locked, attempts))
        ++more;
    EXPECT_EQ(more, 17) << "twenty attempts in all";
    EXPECT_EQ(pauses.taken.size(), 19);
    EXPECT_EQ(logged().count("VISITE - TryAgain"), 19);
}

} // namespace
