// SPDX-License-Identifier: Apache-2.0
#include "data/Connection.h"

#include "DataFixture.h"
#include "LockHolder.h"
#include "dao/native/Connection.h"
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

// Practices of files in folders of their own, each with one visit that tells whose it is.
class LinkedFoldersTest : public DataFixture {
protected:
    void SetUp() override
    {
        if (!testengine::server().isEmpty())
            GTEST_SKIP() << "of files";
    }

    // The folder of a new practice whose local database is linked by `connect` as it would be stored; "" by
    // none.
    QString make(const QString &name, const QString &connect = {})
    {
        const QString in = folder.filePath(name);
        QDir().mkpath(in);
        dao::DBEngine own;
        const auto clinical = own.DefaultWorkspace().CreateDatabase(in + "/Orvale.sqlite");
        clinical->Execute("CREATE TABLE VISITAPROBL (testo TEXT(250))");
        clinical->Execute(QStringLiteral("INSERT INTO VISITAPROBL VALUES ('%1')").arg(name));
        const auto local = own.DefaultWorkspace().CreateDatabase(in + "/Locale.sqlite");
        if (!connect.isEmpty()) {
            dao::Connection &links = local->nativeConnection();
            const QString table = local->nativeSchema() + ".engine_links";
            links.execute("CREATE TABLE " + table
                          + " (position INTEGER PRIMARY KEY, name TEXT NOT NULL, connect TEXT NOT "
                            "NULL, source TEXT NOT NULL)");
            links.execute("INSERT INTO " + table
                              + " (name, connect, source) VALUES ('VISITAPROBL', ?, 'VISITAPROBL')",
                          {connect});
        }
        return in;
    }

    static HostEnvironment opened(dao::DBEngine &own, const QString &clinical, const QString &local)
    {
        HostEnvironment environment;
        environment.clinical = own.OpenDatabase(clinical + "/Orvale.sqlite");
        environment.local = own.OpenDatabase(local + "/Locale.sqlite");
        return environment;
    }

    static QString shownVisit(const HostEnvironment &environment)
    {
        QStringList list{"D", "VISITAPROBL"};
        AttachTables(environment, list);
        try {
            return environment.local->OpenRecordset("select * from VISITAPROBL")->Fields(0).text();
        } catch (const dao::Error &error) {
            return "errore";
        }
    }
};

TEST_F(LinkedFoldersTest, ShowThePracticesOwnRowsWhateverAnEarlierVersionStored)
{
    const QString original = make("originale");
    const QString mirrored = "specchio" + original; // below its whole path, as backups keep it
    const struct {
        const char *name;
        QString practice, connect;
    } cases[] = {
        {"copied", "copia", ";DATABASE=" + original + "/Orvale.sqlite"},
        {"restored from a mirror", "restauro", ";DATABASE=" + folder.filePath(mirrored) + "/Orvale.sqlite"},
        {"mirrored", mirrored, ";DATABASE=" + original + "/Orvale.sqlite"},
        {"relative", "relativo", ";DATABASE=Orvale.sqlite"},
        {"a semicolon in its name", "con;punto", ";DATABASE=" + original + "/Orvale.sqlite"},
        {"another case of the key", "minuscolo", ";database=" + original + "/Orvale.sqlite"},
    };
    make(mirrored + "/altro"); // so that the mirror's folder is there
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const QString practice = make(c.practice, c.connect);
        dao::DBEngine own;
        const HostEnvironment environment = opened(own, practice, practice);
        const LockHolder other(practice + "/Locale.sqlite"); // whose first opening meets a lock
        EXPECT_EQ(shownVisit(environment), c.practice);
    }
}

TEST_F(LinkedFoldersTest, ALinkIsStoredRelativeToItsDatabase)
{
    const QString practice = make("archivio");
    {
        dao::DBEngine own;
        const HostEnvironment environment = opened(own, practice, practice);
        EXPECT_EQ(shownVisit(environment), "archivio");
        EXPECT_EQ(environment.local->TableDefs()["VISITAPROBL"].Connect(),
                  ";DATABASE=" + practice + "/Orvale.sqlite");
        const auto stored = environment.local->nativeConnection().select(
            QStringLiteral("SELECT connect FROM %1.engine_links").arg(environment.local->nativeSchema()));
        ASSERT_TRUE(stored->next());
        EXPECT_EQ(stored->value(0), ";DATABASE=Orvale.sqlite");
    }
    const QString moved = folder.filePath("spostato");
    QDir().rename(practice, moved);
    QDir().rename(make("altro"), practice); // another practice is where it was
    dao::DBEngine own;
    const HostEnvironment environment = opened(own, moved, moved);
    EXPECT_EQ(environment.local->TableDefs()["VISITAPROBL"].Connect(),
              ";DATABASE=" + moved + "/Orvale.sqlite");
    EXPECT_EQ(environment.local->OpenRecordset("select * from VISITAPROBL")->Fields(0).text(), "archivio");
    EXPECT_EQ(shownVisit(environment), "archivio");
}

TEST_F(LinkedFoldersTest, APathThatContainsThePracticesIsAnotherPractice)
{
    const QString original = make("originale");
    const QString mirrored = make("specchio" + original);
    const QString local = make("postazione", ";DATABASE=" + mirrored + "/Orvale.sqlite");
    QFile::remove(local + "/Orvale.sqlite");
    dao::DBEngine own;
    EXPECT_EQ(shownVisit(opened(own, original, local)), "originale");
}

// A host may keep its local database in a folder of its own.
TEST_F(LinkedFoldersTest, WhatCannotBeLinkedAnewShowsNoOtherPractice)
{
    const QString first = make("primo"), second = make("secondo");
    const QString local = make("postazione", ";DATABASE=" + first + "/Orvale.sqlite");
    QFile::remove(local + "/Orvale.sqlite");
    dao::DBEngine own;
    const HostEnvironment environment = opened(own, second, local);
    EXPECT_EQ(environment.local->OpenRecordset("select * from VISITAPROBL")->Fields(0).text(), "primo");
    {
        const LockHolder other(local + "/Locale.sqlite");
        EXPECT_EQ(shownVisit(environment), "errore");
    }
    {
        dao::DBEngine another; // links it before this one does
        EXPECT_EQ(shownVisit(opened(another, second, local)), "secondo");
        environment.local->TableDefs().Refresh();
    }
    EXPECT_EQ(shownVisit(environment), "secondo") << "linked as soon as that is possible";
    QStringList missing{"D", "MANCANTE", "VISITAPROBL"};
    AttachTables(opened(own, first, local), missing);
    EXPECT_EQ(shownVisit(environment), "secondo");
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
