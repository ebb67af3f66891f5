// SPDX-License-Identifier: Apache-2.0
#include "PracticeFixture.h"

#include "dao/sqlite/SqliteHandle.h"
#include "dao/sqlite/SqliteStatement.h"

#include <sqlite3.h>
#include <unistd.h>

namespace {

using orvale::Practice;

class PracticeTest : public PracticeFixture {
protected:
    void SetUp() override { Practice::create(path("p")); }
};

TEST_F(PracticeTest, CreatesSixFilesAndNothingBeside)
{
    QStringList names = QDir(path("p")).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    EXPECT_EQ(names, (QStringList{"Eventi.sqlite", "Locale.sqlite", "Medici.sqlite", "Orvale.sqlite",
                                  "Tabelle.sqlite", "Terzo.sqlite"}));
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{"p"});
}

TEST_F(PracticeTest, KeepsPropertiesAndFindsTheFirstDoctor)
{
    {
        const auto practice = Practice::open(path("p"));
        EXPECT_EQ(practice->firstDoctor(), QString());
        EXPECT_EQ(practice->property("nome dell'archivio"), QString());
        practice->setProperty("nome dell'archivio", "Sant'Anna");
        practice->setProperty("region", "16");
        practice->setProperty("region", "03");
        practice->environment().doctors->Execute("INSERT INTO medici_gruppo (cod_smi) VALUES (205)");
        practice->environment().doctors->Execute("INSERT INTO medici_gruppo (cod_smi) VALUES (98)");
    }
    const auto practice = Practice::open(path("p"));
    EXPECT_EQ(practice->property("nome dell'archivio"), "Sant'Anna");
    EXPECT_EQ(practice->firstDoctor(), "98");
    EXPECT_EQ(practice->property("region"), "03");
    EXPECT_EQ(practice->environment().dataFolder, path("p"));
}

// Each way of spoiling a practice, and a word of the line that tells it. Opening must leave every byte as it
// was.
TEST_F(PracticeTest, RefusesToOpenAndChangesNothing)
{
    const QString clinical = "p/Orvale.sqlite";
    const QByteArray whole = readFile(clinical);
    ASSERT_GT(whole.size(), 20 * 4096);
    const auto foreign = [&](const QString &name) { // another program's file
        QFile::remove(path(name));
        const dao::SqliteHandle other(path(name), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        dao::SqliteStatement(other.get(), "CREATE TABLE notes (a, b)").run();
    };
    const struct {
        const char *name;
        std::function<void()> spoil;
        const char *reason;
    } cases[] = {
        {"no folder", [&] { QDir().rename(path("p"), path("q")); }, "non esiste"},
        {"a file for the folder",
         [&] {
             QDir(path("p")).removeRecursively();
             writeFile("p", "x");
         },
         "non è una cartella"},
        {"an empty folder",
         [&] {
             QDir(path("p")).removeRecursively();
             QDir().mkdir(path("p"));
         },
         "manca il file Orvale.sqlite"},
        {"one file missing", [&] { QFile::remove(path("p/Eventi.sqlite")); }, "manca il file Eventi.sqlite"},
        {"an empty file", [&] { writeFile(clinical, ""); }, "non è un archivio"},
        {"a text file", [&] { writeFile(clinical, QByteArray(9000, 'x')); }, "non è un archivio"},
        {"only the magic text", [&] { writeFile(clinical, whole.left(60)); }, "danneggiato"},
        {"cut between pages", [&] { writeFile(clinical, whole.left(10 * 4096)); }, "danneggiato"},
        {"cut within a page", [&] { writeFile(clinical, whole.left(10 * 4096 + 77)); }, "danneggiato"},
        {"a damaged catalog",
         [&] { writeFile(clinical, whole.left(100) + QByteArray(3000, '\xa5') + whole.mid(3100)); },
         "danneggiato"},
        {"damaged pages",
         [&] {
             writeFile(clinical, whole.left(10 * 4096) + QByteArray(8 * 4096, '\xa5') + whole.mid(18 * 4096));
         },
         "danneggiato"},
        {"a foreign clinical file", [&] { foreign(clinical); }, "non è un archivio"},
        {"a foreign events file", [&] { foreign("p/Eventi.sqlite"); }, "non è un archivio"},
        {"files mixed up",
         [&] {
             QFile::remove(path(clinical));
             QFile::copy(path("p/Medici.sqlite"), path(clinical));
         },
         "non è un archivio"},
        {"a newer version", [&] { Practice::open(path("p"))->setProperty("schema_version", "7"); },
         "versione più nuova (7)"},
        {"no version", [&] { Practice::open(path("p"))->setProperty("schema_version", QString()); },
         "non è un archivio"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        QDir(path("q")).removeRecursively();
        QFile::remove(path("p"));
        QDir(path("p")).removeRecursively();
        Practice::create(path("p"));
        c.spoil();
        const auto before = filesBelow(m_folder.path());
        const std::string text = refusal([&] { Practice::open(path("p")); });
        EXPECT_NE(text.find(c.reason), std::string::npos) << text;
        EXPECT_EQ(text.find('\n'), std::string::npos) << text;
        EXPECT_EQ(filesBelow(m_folder.path()), before);
    }
}

TEST_F(PracticeTest, RefusesWithoutPermissionToWrite)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind root";
    QFile file(path("p/Orvale.sqlite"));
    file.setPermissions(QFileDevice::ReadOwner);
    EXPECT_NE(refusal([&] { Practice::open(path("p")); }).find("permesso di scrittura sul file"),
              std::string::npos);
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    QFile folder(path("p"));
    folder.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    EXPECT_NE(refusal([&] { Practice::open(path("p")); }).find("permesso di scrittura nella cartella"),
              std::string::npos);
    EXPECT_NE(refusal([&] { Practice::create(path("p/inner")); }).find("permesso"), std::string::npos);
    folder.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

TEST_F(PracticeTest, RefusesAddressesItCannotOpen)
{
    for (const char *address : {"", "  ", "postgresql://host/practice"}) {
        EXPECT_NE(refusal([&] { Practice::open(address); }), "") << address;
        EXPECT_NE(refusal([&] { Practice::create(address); }), "") << address;
    }
}

TEST_F(PracticeTest, CreatesOnlyWhereNothingIsLost)
{
    EXPECT_TRUE(QDir().mkdir(path("empty")));
    EXPECT_EQ(refusal([&] { Practice::create(path("empty")); }), "");
    EXPECT_EQ(refusal([&] { Practice::create(path("a/new/place/")); }), "");
    writeFile("file", "x");
    const auto before = filesBelow(m_folder.path());
    EXPECT_NE(refusal([&] { Practice::create(path("p")); }).find("non è vuota"), std::string::npos);
    EXPECT_NE(refusal([&] { Practice::create(path("file")); }).find("non è una cartella"), std::string::npos);
    EXPECT_NE(refusal([&] { Practice::create(path("file/p")); }), "");
    EXPECT_EQ(filesBelow(m_folder.path()), before);
}

TEST_F(PracticeTest, LeavesNothingOfAPracticeThatCouldNotBeFilled)
{
    const auto before = filesBelow(m_folder.path());
    EXPECT_NE(refusal([&] {
                  Practice::build(path("half"), [](Practice &practice) {
                      practice.environment().clinical->Execute("DELETE * FROM no_such_table");
                  });
              }),
              "");
    EXPECT_THROW(Practice::build(path("half"), [](Practice &) { throw std::runtime_error("stopped"); }),
                 std::runtime_error);
    EXPECT_EQ(filesBelow(m_folder.path()), before);
}

} // namespace
