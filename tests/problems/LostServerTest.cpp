// SPDX-License-Identifier: Apache-2.0
#include "problems/Probl1.h"
#include "problems/Visita2.h"

#include "DialogFixture.h"

#include <QProcess>
#include <QSqlError>

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

} // namespace
} // namespace clivara
