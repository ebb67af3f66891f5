// SPDX-License-Identifier: Apache-2.0
#include "problems/Probl1.h"
#include "problems/Problemi.h"
#include "problems/Visita2.h"

#include "DialogFixture.h"

#include <QProcess>
#include <QSqlError>
#include <QThread>

namespace clivara {
namespace {

// The server goes away while a dialog is open, and comes back. Only where there is a server.
class LostServerTest : public DialogFixture {
protected:
    void SetUp() override
    {
        if (!testengine::isServer())
            GTEST_SKIP() << "needs a server";
    }
    static void server(const char *command)
    {
        QProcess control;
        control.start(qEnvironmentVariable("CLIVARA_TEST_SERVER_CONTROL"), {QString::fromLatin1(command)});
        EXPECT_TRUE(control.waitForFinished(30000) && control.exitCode() == 0) << command;
    }
    // On the server itself, as its administrator.
    void native(const QString &sql)
    {
        const auto other = otherWorkstation();
        QSqlQuery query(other->nativeConnection());
        EXPECT_TRUE(query.exec(QString(sql).replace("SCHEMA", u'"' + other->nativeSchema() + u'"')))
            << query.lastError().text().toStdString();
    }
    // Cuts the connection that does something to the table.
    void cutConnectionOf(const char *event, const char *table, const char *deferred = "")
    {
        native(QStringLiteral("CREATE FUNCTION SCHEMA.cut() RETURNS trigger LANGUAGE plpgsql AS "
                              "$$ BEGIN PERFORM pg_terminate_backend(pg_backend_pid()); RETURN NEW; END $$"));
        native(QStringLiteral("CREATE %1 ON SCHEMA.%2 %3 FOR EACH ROW EXECUTE FUNCTION SCHEMA.cut()")
                   .arg(QLatin1String(event), QLatin1String(table), QLatin1String(deferred)));
    }
    void repair() { native(QStringLiteral("DROP FUNCTION SCHEMA.cut() CASCADE")); }

    inline static const std::string unreachable =
        "Attenzione!|Salvataggio non riuscito: il server dell'archivio non è raggiungibile.\n"
        "Niente è stato salvato. Quanto scritto resta nella finestra: riprovare tra poco.|warning";
};

TEST_F(LostServerTest, TheDialogSaysSoAndSavesWhenTheServerIsBack)
{
    Visita2 form(state);
    state.visitMode = "10";
    open(form, [&] {
        type("Text1_0", "scritto");
        server("kill");
        EXPECT_EQ(boxOf(save), unreachable);
        EXPECT_EQ(boxOf(save), unreachable) << "as often as it is tried";
        server("start");
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(value("Text1_0"), "scritto");
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(clinical("SELECT cod_paz, anamnesi FROM VISITAPROBL"), QStringList("17|scritto"));
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
    state.problemSelector = addProblem("", "Tosse");
    Probl1 form(state);
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
    state.problemSelector = noProblem;
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
        for (const QString &sql :
             {QStringLiteral("ALTER SYSTEM SET synchronous_standby_names = ") + QLatin1String(name),
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
                 + QLatin1String(command)});
    }
};

TEST_F(UnconfirmedTest, ASaveThatTheServerDidNotConfirmIsFoundToBeThere)
{
    Visita2 form(state);
    state.visitMode = "10";
    QProcess killer;
    open(form, [&] {
        type("Text1_0", "scritto");
        onceCommitted(killer,
                      "psql -d orvale -Atc \"select pg_terminate_backend(pid) from pg_stat_activity where "
                      "wait_event = 'SyncRep'\"");
        click(save);
        EXPECT_FALSE(form.isVisible()) << "nothing to tell: it is saved";
    });
    EXPECT_TRUE(killer.waitForFinished());
    EXPECT_EQ(clinical("SELECT anamnesi FROM VISITAPROBL"), QStringList("scritto"));
    EXPECT_EQ(state.visitId, 1);
}

} // namespace
} // namespace clivara
