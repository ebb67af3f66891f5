// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "DialogFixture.h"
#include "dao/native/Connection.h"
#include "problems/Visita2.h"

#include <QProcess>

namespace clivara {

// The server goes away while a dialog is open, and comes back. Only where there is a server.
class LostServerFixture : public DialogFixture {
protected:
    void SetUp() override
    {
        if (!testengine::isServer())
            GTEST_SKIP() << "needs a server";
    }
    // In the dialog of a new visit in which something was written.
    void inVisit(const std::function<void()> &act)
    {
        visit.take(asked);
        open(visit, [&] {
            type("Text1_0", "scritto");
            act();
        });
    }
    static void server(const char *command)
    {
        QProcess control;
        control.start(qEnvironmentVariable("CLIVARA_TEST_SERVER_CONTROL"), {command});
        EXPECT_TRUE(control.waitForFinished(30000) && control.exitCode() == 0) << command;
    }
    // On the server itself, as its administrator.
    void native(const QString &sql)
    {
        const auto other = otherWorkstation();
        other->nativeConnection().execute(
            QString(sql).replace("SCHEMA", u'"' + other->nativeSchema() + u'"'));
    }
    // Cuts the connection that does something to the table.
    void cutConnectionOf(const char *event, const char *table, const char *deferred = "")
    {
        native("CREATE FUNCTION SCHEMA.cut() RETURNS trigger LANGUAGE plpgsql AS "
               "$$ BEGIN PERFORM pg_terminate_backend(pg_backend_pid()); RETURN NEW; END $$");
        native(QStringLiteral("CREATE %1 ON SCHEMA.%2 %3 FOR EACH ROW EXECUTE FUNCTION SCHEMA.cut()")
                   .arg(event, table, deferred));
    }
    void repair() { native("DROP FUNCTION SCHEMA.cut() CASCADE"); }

    Visita2 visit{state};
    VisitCall asked; // a new one
    inline static const std::string unreachable =
        "Attenzione!|Salvataggio non riuscito: il server dell'archivio non è raggiungibile.\n"
        "Niente è stato salvato. Quanto scritto resta nella finestra: riprovare tra poco.|warning";
};

} // namespace clivara
