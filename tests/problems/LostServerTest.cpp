// SPDX-License-Identifier: Apache-2.0
#include "problems/Probl1.h"
#include "problems/Problemi.h"

#include "LostServerFixture.h"

#include <QThread>

namespace clivara {
namespace {

using LostServerTest = LostServerFixture;

TEST_F(LostServerTest, TheDialogSaysSoAndSavesWhenTheServerIsBack)
{
    inVisit([&] {
        server("kill");
        EXPECT_EQ(boxOf(save), unreachable);
        EXPECT_EQ(boxOf(save), unreachable) << "as often as it is tried";
        server("start");
        EXPECT_TRUE(visit.isVisible());
        EXPECT_EQ(value("Text1_0"), "scritto");
        click(save);
        EXPECT_FALSE(visit.isVisible());
    });
    EXPECT_EQ(clinical("SELECT cod_paz, anamnesi FROM VISITAPROBL"), QStringList("17|scritto"));
}

// Nobody was at the workstation meanwhile.
TEST_F(LostServerTest, AServerThatIsBackIsNotMissed)
{
    inVisit([&] {
        server("kill");
        server("start");
        click(save);
        EXPECT_FALSE(visit.isVisible());
    });
    EXPECT_TRUE(prompts.boxes.isEmpty());
    EXPECT_TRUE(pauses.taken.isEmpty());
    EXPECT_EQ(clinical("SELECT anamnesi FROM VISITAPROBL"), QStringList("scritto"));
}

TEST_F(LostServerTest, AServerThatGoesAwayWhileOthersWriteIsWhatIsTold)
{
    const auto other = otherWorkstation();
    inVisit([&] {
        otherWorkspace().BeginTrans();
        pauses.actAt = 2;
        pauses.during = [&] { server("kill"); };
        EXPECT_EQ(boxOf(save), unreachable)
            << "not that another workstation is in the way, as it was at first";
        server("start");
        EXPECT_THROW(otherWorkspace().Rollback(), dao::Error);
        click(save);
    });
    EXPECT_EQ(clinical("SELECT anamnesi FROM VISITAPROBL"), QStringList("scritto"));
}

// The owner of a row is looked up with little regard for errors.
TEST_F(LostServerTest, ALossThatNobodyMindedIsToldAllTheSame)
{
    const WriteResult result = writeTogether(state, "PROBLEMS", [&]() -> WriteResult {
        const auto row = environment.clinical->OpenRecordset("PROBLEMS");
        state.operations.addNew(*row);
        server("kill");
        EXPECT_THROW(clinical("SELECT * FROM archivio"), dao::Error);
        state.operations.update(*row);
        return WriteResult::Done;
    });
    EXPECT_EQ(result, WriteResult::Failed);
    server("start");
    EXPECT_TRUE(pauses.taken.isEmpty()) << "nothing to wait for";
    prompts.queue();
    warnNotSaved(state, result.error);
    EXPECT_EQ(prompts.last().toStdString(), unreachable);
}

TEST_F(LostServerTest, AListThatCannotBeReadSaysSoOnce)
{
    addVisit(QString::number(addProblem("", "Tosse", QDate(2026, 1, 1))), "#01/05/2026#");
    addProblem("", "Febbre", QDate(2026, 2, 1));
    Problemi form(state);
    open(form, [&] {
        server("kill");
        prompts.queue();
        clickRow("ReportControl1_0", "2");
        settle();
        EXPECT_EQ(prompts.last().section('\n', 0, 0),
                  "Attenzione!|Il server dell'archivio non è raggiungibile.");
        clickRow("ReportControl1_0", "1");
        clickRow("ReportControl1_0", "2");
        server("start");
        clickRow("ReportControl1_0", "1");
        clickRow("ReportControl1_0", "2");
        settle();
        EXPECT_EQ(rows("ReportControl1_1").size(), 1) << "read again when the server is back";
    });
}

TEST_F(LostServerTest, AnEditThatWasCutIsNotHalfThere)
{
    ProblemCall call;
    call.problem = addProblem("", "Tosse");
    Probl1 form(state);
    form.take(call);
    open(form, [&] {
        type("Text1_0", "scritto");
        cutConnectionOf("TRIGGER cut BEFORE UPDATE", "\"PROBLEMS\"");
        EXPECT_EQ(boxOf(save), unreachable) << "in the middle of the transaction";
        EXPECT_LE(pauses.taken.size(), 19);
        EXPECT_EQ(clinical("SELECT anamnesi FROM PROBLEMS"), QStringList("Null"));
        repair();
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(clinical("SELECT anamnesi FROM PROBLEMS"), QStringList("scritto"));
}

// Cut at the commit, which is then nothing of.
TEST_F(LostServerTest, ACommitThatWasCutIsWrittenAgain)
{
    Probl1 form(state);
    ProblemCall call;
    form.take(call);
    open(form, [&] {
        type("txtDescr", "Tosse");
        cutConnectionOf("CONSTRAINT TRIGGER cut AFTER INSERT", "\"PROBLEMS\"",
                        "DEFERRABLE INITIALLY DEFERRED");
        EXPECT_EQ(boxOf(save), unreachable);
        repair();
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(clinical("SELECT descr_mal FROM PROBLEMS"), QStringList("Tosse"));
}

// The server has committed, and goes away before it can say so: it waits for a second server that there is none of.
class UnconfirmedTest : public LostServerTest {
protected:
    void SetUp() override
    {
        LostServerTest::SetUp();
        if (testengine::isServer())
            setStandby("'nobody'");
    }
    void TearDown() override
    {
        if (testengine::isServer())
            setStandby("''");
    }
    // The test's own connections may be lost.
    static void setStandby(const char *name)
    {
        for (const QString &sql : {QStringLiteral("ALTER SYSTEM SET synchronous_standby_names = ") + name,
                                   QStringLiteral("SELECT pg_reload_conf()")})
            EXPECT_EQ(QProcess::execute("psql", {"-q", "-o", "/dev/null", "-d", "orvale", "-c", sql}), 0);
        QThread::msleep(200); // the server's processes read it when they come to it
    }
    // Runs a command in another process as soon as somebody waits in a commit.
    static void onceCommitted(QProcess &process, const char *command)
    {
        process.start(
            "bash",
            {"-c",
             QStringLiteral("until [ \"$(psql -d orvale -Atc \"select count(*) from pg_stat_activity where "
                            "wait_event = 'SyncRep'\")\" != 0 ]; do sleep 0.05; done; ")
                 + command});
    }
};

TEST_F(UnconfirmedTest, ASaveThatTheServerDidNotConfirmIsFoundToBeThere)
{
    QProcess killer;
    inVisit([&] {
        onceCommitted(killer,
                      "psql -d orvale -Atc \"select pg_terminate_backend(pid) from pg_stat_activity where "
                      "wait_event = 'SyncRep'\"");
        click(save);
        EXPECT_FALSE(visit.isVisible()) << "nothing to tell: it is saved";
    });
    EXPECT_TRUE(killer.waitForFinished());
    EXPECT_EQ(clinical("SELECT anamnesi FROM VISITAPROBL"), QStringList("scritto"));
    EXPECT_EQ(asked.saved, 1);
}

} // namespace
} // namespace clivara
