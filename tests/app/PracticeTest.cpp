// SPDX-License-Identifier: Apache-2.0
#include "PracticeFixture.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <unistd.h>

namespace {

using orvale::Practice;

class PracticeTest : public PracticeFixture {
protected:
    void SetUp() override { Practice::create(path(QStringLiteral("p"))); }
};

TEST_F(PracticeTest, CreatesSixFilesAndNothingBeside)
{
    QStringList names =
        QDir(path(QStringLiteral("p"))).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    EXPECT_EQ(names, (QStringList{QStringLiteral("Eventi.sqlite"), QStringLiteral("Locale.sqlite"),
                                  QStringLiteral("Medici.sqlite"), QStringLiteral("Orvale.sqlite"),
                                  QStringLiteral("Tabelle.sqlite"), QStringLiteral("Terzo.sqlite")}));
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("p")});
}

TEST_F(PracticeTest, KeepsPropertiesAndFindsTheFirstDoctor)
{
    {
        const auto practice = Practice::open(path(QStringLiteral("p")));
        EXPECT_EQ(practice->firstDoctor().code, QString());
        EXPECT_EQ(practice->property(QStringLiteral("nome dell'archivio")), QString());
        practice->setProperty(QStringLiteral("nome dell'archivio"), QStringLiteral("Sant'Anna"));
        practice->setProperty(QStringLiteral("region"), QStringLiteral("16"));
        practice->setProperty(QStringLiteral("region"), QStringLiteral("03"));
        practice->environment().doctors->Execute(
            QStringLiteral("INSERT INTO medici_gruppo (cod_smi) VALUES (205)"));
        practice->environment().doctors->Execute(
            QStringLiteral("INSERT INTO medici_gruppo (cod_smi) VALUES (98)"));
    }
    const auto practice = Practice::open(path(QStringLiteral("p")));
    EXPECT_EQ(practice->property(QStringLiteral("nome dell'archivio")), QStringLiteral("Sant'Anna"));
    EXPECT_EQ(practice->firstDoctor().code, QStringLiteral("98"));
    EXPECT_EQ(practice->firstDoctor().region, QStringLiteral("03"));
    EXPECT_EQ(practice->environment().dataFolder, path(QStringLiteral("p")));
}

// Each way of spoiling a practice, and a word of the line that tells it. Opening must leave every byte as it
// was.
TEST_F(PracticeTest, RefusesToOpenAndChangesNothing)
{
    const QString clinical = QStringLiteral("p/Orvale.sqlite");
    const QByteArray whole = readFile(clinical);
    ASSERT_GT(whole.size(), 20 * 4096);
    const auto foreign = [&](const QString &name) { // another program's file
        {
            QSqlDatabase other =
                QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
            QFile::remove(path(name));
            other.setDatabaseName(path(name));
            ASSERT_TRUE(other.open());
            QSqlQuery(other).exec(QStringLiteral("CREATE TABLE notes (a, b)"));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("other"));
    };
    const struct {
        const char *name;
        std::function<void()> spoil;
        const char *reason;
    } cases[] = {
        {"no folder", [&] { QDir().rename(path(QStringLiteral("p")), path(QStringLiteral("q"))); },
         "non esiste"},
        {"a file for the folder",
         [&] {
             QDir(path(QStringLiteral("p"))).removeRecursively();
             writeFile(QStringLiteral("p"), "x");
         },
         "non è una cartella"},
        {"an empty folder",
         [&] {
             QDir(path(QStringLiteral("p"))).removeRecursively();
             QDir().mkdir(path(QStringLiteral("p")));
         },
         "manca il file Orvale.sqlite"},
        {"one file missing", [&] { QFile::remove(path(QStringLiteral("p/Eventi.sqlite"))); },
         "manca il file Eventi.sqlite"},
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
        {"a foreign events file", [&] { foreign(QStringLiteral("p/Eventi.sqlite")); }, "non è un archivio"},
        {"files mixed up",
         [&] {
             QFile::remove(path(clinical));
             QFile::copy(path(QStringLiteral("p/Medici.sqlite")), path(clinical));
         },
         "non è un archivio"},
        {"a newer version",
         [&] {
             Practice::open(path(QStringLiteral("p")))
                 ->setProperty(QStringLiteral("schema_version"), QStringLiteral("7"));
         },
         "versione più nuova (7)"},
        {"no version",
         [&] {
             Practice::open(path(QStringLiteral("p")))
                 ->setProperty(QStringLiteral("schema_version"), QString());
         },
         "non è un archivio"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        QDir(path(QStringLiteral("q"))).removeRecursively();
        QFile::remove(path(QStringLiteral("p")));
        QDir(path(QStringLiteral("p"))).removeRecursively();
        Practice::create(path(QStringLiteral("p")));
        c.spoil();
        const auto before = filesBelow(m_folder.path());
        const std::string text = refusal([&] { Practice::open(path(QStringLiteral("p"))); });
        EXPECT_NE(text.find(c.reason), std::string::npos) << text;
        EXPECT_EQ(text.find('\n'), std::string::npos) << text;
        EXPECT_EQ(filesBelow(m_folder.path()), before);
    }
}

TEST_F(PracticeTest, RefusesWithoutPermissionToWrite)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind root";
    QFile file(path(QStringLiteral("p/Orvale.sqlite")));
    file.setPermissions(QFileDevice::ReadOwner);
    EXPECT_NE(
        refusal([&] { Practice::open(path(QStringLiteral("p"))); }).find("permesso di scrittura sul file"),
        std::string::npos);
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    QFile folder(path(QStringLiteral("p")));
    folder.setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    EXPECT_NE(refusal([&] {
                  Practice::open(path(QStringLiteral("p")));
              }).find("permesso di scrittura nella cartella"),
              std::string::npos);
    EXPECT_NE(refusal([&] { Practice::create(path(QStringLiteral("p/inner"))); }).find("permesso"),
              std::string::npos);
    folder.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

TEST_F(PracticeTest, RefusesAddressesItCannotOpen)
{
    for (const char *address : {"", "  ", "postgresql://host/practice"}) {
        EXPECT_NE(refusal([&] { Practice::open(QString::fromLatin1(address)); }), "") << address;
        EXPECT_NE(refusal([&] { Practice::create(QString::fromLatin1(address)); }), "") << address;
    }
}

TEST_F(PracticeTest, CreatesOnlyWhereNothingIsLost)
{
    EXPECT_TRUE(QDir().mkdir(path(QStringLiteral("empty"))));
    EXPECT_EQ(refusal([&] { Practice::create(path(QStringLiteral("empty"))); }), "");
    EXPECT_EQ(refusal([&] { Practice::create(path(QStringLiteral("a/new/place/"))); }), "");
    writeFile(QStringLiteral("file"), "x");
    const auto before = filesBelow(m_folder.path());
    EXPECT_NE(refusal([&] { Practice::create(path(QStringLiteral("p"))); }).find("non è vuota"),
              std::string::npos);
    EXPECT_NE(refusal([&] { Practice::create(path(QStringLiteral("file"))); }).find("non è una cartella"),
              std::string::npos);
    EXPECT_NE(refusal([&] { Practice::create(path(QStringLiteral("file/p"))); }), "");
    EXPECT_EQ(filesBelow(m_folder.path()), before);
}

TEST_F(PracticeTest, LeavesNothingOfAPracticeThatCouldNotBeFilled)
{
    const auto before = filesBelow(m_folder.path());
    EXPECT_NE(refusal([&] {
                  Practice::build(path(QStringLiteral("half")), [](Practice &practice) {
                      practice.environment().clinical->Execute(QStringLiteral("DELETE * FROM no_such_table"));
                  });
              }),
              "");
    EXPECT_THROW(Practice::build(path(QStringLiteral("half")),
                                 [](Practice &) { throw std::runtime_error("stopped"); }),
                 std::runtime_error);
    EXPECT_EQ(filesBelow(m_folder.path()), before);
}

} // namespace
