// SPDX-License-Identifier: Apache-2.0
#include "data/Connection.h"

#include "DataFixture.h"
#include "support/Seams.h"

#include <stdexcept>

namespace {

using namespace clivara;

class ConnectionTest : public DataFixture {
protected:
    ConnectionTest()
    {
        environment.clinical =
            create("Orvale.sqlite",
                   {"CREATE TABLE VISITAPROBL (chiave LONG, testo TEXT(40))",
                    "INSERT INTO VISITAPROBL VALUES (1, 'clinico')", "CREATE TABLE PROBLEMS (chiave LONG)"});
        environment.codes = create(
            "Tabelle.sqlite", {"CREATE TABLE CODICE (codice TEXT(6))", "INSERT INTO CODICE VALUES ('A001')"});
        environment.third = create("Terzo.sqlite", {"CREATE TABLE TESTI (testo TEXT(20))"});
        environment.local = create("Locale.sqlite", {"CREATE TABLE APPOGGIO (testo TEXT(20))"});
        environment.programFolder = path("programma");
        environment.dataFolder = folder.path();
    }

    // What the entries are after linking.
    QStringList attach(QStringList list)
    {
        AttachTables(environment, list);
        return list;
    }

    QString connectOf(const QString &table) const { return environment.local->TableDefs()[table].Connect(); }
    QString firstText(const QString &sql) const
    {
        return environment.local->OpenRecordset(sql)->Fields(0).text();
    }

    HostEnvironment environment;
};

TEST_F(ConnectionTest, LinksTablesByTheLetterOfTheirDatabase)
{
    EXPECT_EQ(attach({"D", "VISITAPROBL", "", "PROBLEMS"}),
              (QStringList{"D", "VISITAPROBL", "", "PROBLEMS"}));
    attach({"S", "codice"});
    attach({"T", "TESTI"});
    EXPECT_EQ(connectOf("visitaprobl"), ";DATABASE=" + path("Orvale.sqlite"));
    EXPECT_EQ(connectOf("CODICE"), ";DATABASE=" + path("Tabelle.sqlite"));
    EXPECT_EQ(connectOf("TESTI"), ";DATABASE=" + path("Terzo.sqlite"));
    EXPECT_EQ(connectOf("APPOGGIO"), "") << "the local database's own table";
    EXPECT_EQ(firstText("select v.testo from VISITAPROBL as v, codice as c where c.codice='a001'"),
              "clinico");
}

TEST_F(ConnectionTest, ARightLinkIsLeftAloneAndItsEntryEmptied)
{
    attach({"D", "VISITAPROBL"});
    EXPECT_EQ(attach({"D", "visitaprobl", "PROBLEMS", "VISITAPROBL"}),
              (QStringList{"D", "", "PROBLEMS", "VISITAPROBL"}))
        << "in any case of letters; of equal entries the first";
    EXPECT_TRUE(tableExists(*environment.local, "problems"));
    EXPECT_EQ(firstText("select testo from VISITAPROBL"), "clinico");
}

TEST_F(ConnectionTest, ALinkToAnotherFileIsRewritten)
{
    attach({"D", "VISITAPROBL"});
    environment.clinical =
        create("Spostato.sqlite", {"CREATE TABLE VISITAPROBL (chiave LONG, testo TEXT(40))",
                                   "INSERT INTO VISITAPROBL VALUES (1, 'spostato')"});
    EXPECT_EQ(attach({"D", "VisitaProbl"}), (QStringList{"D", "VisitaProbl"}));
    EXPECT_EQ(connectOf("VISITAPROBL"), ";DATABASE=" + path("Spostato.sqlite"));
    EXPECT_EQ(firstText("select testo from VISITAPROBL"), "spostato");
}

TEST_F(ConnectionTest, ErrorsEndTheLinkingSilently)
{
    EXPECT_EQ(attach({"D", "PROBLEMS", "MANCANTE", "VISITAPROBL"}).size(), 4);
    EXPECT_TRUE(tableExists(*environment.local, "PROBLEMS")) << "linked before the error";
    EXPECT_FALSE(tableExists(*environment.local, "VISITAPROBL")) << "after it nothing is";

    attach({"X", "VISITAPROBL"});
    EXPECT_FALSE(tableExists(*environment.local, "VISITAPROBL"));
    EXPECT_EQ(attach({"X", "PROBLEMS"}), (QStringList{"X", ""})) << "no source path is part of every link";
    EXPECT_EQ(attach({}), QStringList());
    EXPECT_EQ(attach({"D"}), QStringList{"D"});

    environment.third.reset();
    attach({"T", "TESTI"});
    EXPECT_FALSE(tableExists(*environment.local, "TESTI"));
    environment.local.reset();
    EXPECT_EQ(attach({"D", "VISITAPROBL"}), (QStringList{"D", "VISITAPROBL"}));
}

TEST_F(ConnectionTest, OpensTheWorkAndUsersDatabasesInTheirFolders)
{
    // They are files also where the practice is on a server.
    dao::DBEngine files;
    settings.write("ORVALE_WORK", folder.filePath("lavoro"));
    ASSERT_TRUE(QDir(folder.path()).mkdir("lavoro"));
    EXPECT_THROW(openWorkDatabase(files, environment, settings), dao::Error);
    EXPECT_THROW(openUsersDatabase(files, environment), dao::Error);
    EXPECT_TRUE(QDir(folder.filePath("lavoro")).isEmpty()) << "a missing database is not created";

    for (const auto &[file, table] :
         {std::pair("lavoro/ORV_WORK.sqlite", "APPOGGIO"), {"Utenti.sqlite", "UTENTI"}})
        files.DefaultWorkspace()
            .CreateDatabase(folder.filePath(file))
            ->Execute(QStringLiteral("CREATE TABLE %1 (a LONG)").arg(table));
    EXPECT_TRUE(tableExists(*openWorkDatabase(files, environment, settings), "appoggio"));
    EXPECT_TRUE(tableExists(*openUsersDatabase(files, environment), "utenti"));
    environment.clinical.reset();
    EXPECT_THROW(openUsersDatabase(files, environment), dao::Error);
}

TEST_F(ConnectionTest, PreparesTheEngineWithTheAccountOfTheMiddleware)
{
    struct Account : Middleware {
        QString account(const QString &selector) override
        {
            asked.append(selector);
            if (fails)
                throw std::runtime_error("no account");
            return selector == "U" ? "medico" : "segreta";
        }
        QStringList asked;
        bool fails = false;
    } middleware;
    dao::DBEngine prepared;
    prepareEngine(prepared, environment, middleware);
    EXPECT_EQ(prepared.SystemDB(), path("programma/KORAL.MDW"));
    EXPECT_EQ(prepared.DefaultUser(), "medico");
    EXPECT_EQ(middleware.asked, (QStringList{"U", "P"}));

    middleware.fails = true;
    prepareEngine(prepared, environment, middleware); // raises nothing
    EXPECT_EQ(prepared.DefaultUser(), "medico");
}

} // namespace
