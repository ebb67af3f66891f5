// SPDX-License-Identifier: Apache-2.0
#include "PracticeFixture.h"
#include "ProgramRun.h"
#include "app/commands/TerminalProgress.h"
#include "app/import/PracticeCopy.h"
#include "app/practice/DamageWatch.h"
#include "app/practice/PracticeBuild.h"
#include "app/practice/PracticeCheck.h"
#include "app/practice/PracticeProbe.h"
#include "app/practice/PracticeReader.h"
#include "dao/sqlite/DatabaseFile.h"
#include "support/ui/FileChoice.h"

#include <QEventLoop>
#include <QSet>
#include <QTimer>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using orvale::Practice;

// A practice of files that is open here while other programs come and go.
class SharedFilesTest : public PracticeFixture {
protected:
    void SetUp() override { Practice::create(path("p")); }

    static QString insertion(int number)
    {
        return QStringLiteral("INSERT INTO Modifiche (Tipo, cod_paz) VALUES (99, %1)").arg(number);
    }
    void saveElsewhere(int number) const
    {
        const Outcome other = orvaleRun({"play", "--practice", path("p"), "-"},
                                        "exec clinical " + insertion(number).toUtf8() + '\n');
        EXPECT_EQ(other.output, "{\"affected\":1}\n") << qPrintable(other.error);
    }
    QSet<int> saved() const
    {
        const auto practice = Practice::open(path("p"));
        QSet<int> numbers;
        for (const auto rows = practice->environment().clinical->OpenRecordset(
                 "SELECT cod_paz FROM Modifiche WHERE Tipo = 99");
             !rows->Eof(); rows->MoveNext())
            numbers.insert(int(rows->Fields(0).number()));
        return numbers;
    }
};

// Whatever this program does beside, it keeps its locks: the next one that closes the practice must not take
// itself for the last and delete the log that this one goes on writing to.
TEST_F(SharedFilesTest, WhatIsSavedStaysThoughOthersComeAndGo)
{
    const struct {
        const char *name;
        std::function<void()> act;
    } cases[] = {
        {"nothing", [] {}},
        {"reading all pages", [&] { EXPECT_EQ(Practice::damagedFile(path("p")), QString()); }},
        {"looking at the headers", [&] { orvale::probePractice(path("p"), orvale::Schema::current()); }},
        {"opening it once more", [&] { Practice::open(path("p")); }},
        {"checking it", [&] { orvale::checkPractice(*Practice::open(path("p"))); }},
        {"reading it as it stands", [&] { orvale::PracticeReader(path("p"), path("p")); }},
        {"making another one in its folder", [&] { Practice::create(path("p/q")); }},
        {"wanting to replace it",
         [&] {
             EXPECT_NE(refusal([&] {
                           orvale::PracticeBuild(path("p"), orvale::PracticeBuild::Existing::Replaced);
                       }).find("è aperto"),
                       std::string::npos);
         }},
        {"another process that ends",
         [] {
             const pid_t child = ::fork();
             if (child == 0)
                 ::_exit(0);
             ::waitpid(child, nullptr, 0);
         }},
        {"choosing a file in its folder",
         [&] {
             QTimer::singleShot(300, qApp, [] {
                 if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
                     dialog->reject();
             });
             clivara::chooseFileToSave(nullptr, "Salva", path("p/scheda.pdf"), "PDF (*.pdf);;Tutti (*)");
         }},
    };
    int number = 0;
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        QDir(path("p")).removeRecursively();
        Practice::create(path("p"));
        const int first = ++number, theirs = ++number, second = ++number, third = ++number;
        {
            const auto practice = Practice::open(path("p"));
            dao::Database &clinical = *practice->environment().clinical;
            clinical.Execute(insertion(first));
            c.act();
            saveElsewhere(theirs);
            clinical.Execute(insertion(second));
            EXPECT_TRUE(QFile::exists(path("p/Orvale.sqlite-wal")));
            saveElsewhere(third);
        }
        EXPECT_EQ(saved(), (QSet{first, theirs, second, third}));
    }
}

// Nothing is acknowledged that nobody could read afterwards.
TEST_F(SharedFilesTest, NothingIsSavedIntoFilesThatWereTakenAway)
{
    namespace fs = std::filesystem;
    const fs::path clinical = path("p/Orvale.sqlite").toStdString();
    const fs::path log = clinical.string() + "-wal", index = clinical.string() + "-shm",
                   away = path("altrove").toStdString();
    const struct {
        const char *name;
        std::function<void()> act;
    } cases[] = {
        {"the log deleted", [&] { fs::remove(log); }},
        {"the log's index deleted", [&] { fs::remove(index); }},
        {"the log made anew",
         [&] {
             fs::copy(log, away);
             fs::rename(away, log);
         }},
        {"the file moved", [&] { fs::rename(clinical, away); }},
        {"the file replaced",
         [&] {
             fs::copy(clinical, away);
             fs::rename(away, clinical);
         }},
        {"the folder moved", [&] { fs::rename(clinical.parent_path(), away); }},
        {"the folder deleted", [&] { fs::remove_all(clinical.parent_path()); }},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        fs::remove_all(away);
        QDir(path("p")).removeRecursively();
        Practice::create(path("p"));
        const auto practice = Practice::open(path("p"));
        dao::Workspace &workspace = practice->engine().DefaultWorkspace();
        const auto numberOf = [](const std::function<void()> &save) {
            try {
                save();
            } catch (const dao::Error &error) {
                return error.number();
            }
            return 0;
        };
        practice->environment().clinical->Execute(insertion(1));
        dao::Transaction begun(workspace);
        practice->environment().clinical->Execute(insertion(2));
        c.act();
        EXPECT_EQ(numberOf([&] { begun.commit(); }), dao::DatabaseMoved);
        EXPECT_EQ(numberOf([&] { practice->environment().clinical->Execute(insertion(3)); }),
                  dao::DatabaseMoved);
        EXPECT_EQ(numberOf([&] { dao::Transaction{workspace}; }), dao::DatabaseMoved);
        EXPECT_EQ(numberOf([&] { practice->environment().events->Execute("DELETE * FROM Eventi"); }),
                  dao::DatabaseMoved)
            << "a practice is whole or not there";
    }
}

// What a backup that links files instead of copying them leaves behind: each name has a log of its own.
TEST_F(SharedFilesTest, AFileWithTwoNamesIsOpenUnderOneOnly)
{
    namespace fs = std::filesystem;
    fs::create_directory(path("q").toStdString());
    for (const auto &file : fs::directory_iterator(path("p").toStdString()))
        fs::create_hard_link(file.path(), path("q/").toStdString() + file.path().filename().string());
    {
        const auto practice = Practice::open(path("p"));
        practice->environment().clinical->Execute(insertion(1));
        const Outcome other = orvaleRun({"play", "--practice", path("q"), "-"},
                                        "exec clinical " + insertion(2).toUtf8() + '\n');
        EXPECT_NE(other.status, 0);
        EXPECT_TRUE(other.error.contains("secondo nome")) << qPrintable(other.error);
        EXPECT_EQ(other.error.count('\n'), 1) << "one line";
        practice->environment().clinical->Execute(insertion(3));
    }
    saveElsewhere(4);
    EXPECT_EQ(saved(), (QSet<int>{1, 3, 4}));
}

TEST_F(SharedFilesTest, TheFirstBytesOfAFileAreAskedOfSqlite)
{
    EXPECT_EQ(dao::firstBytes(path("p/Orvale.sqlite"), 16), QByteArray("SQLite format 3\0", 16));
    writeFile("breve", "abc");
    EXPECT_EQ(dao::firstBytes(path("breve"), 16), "abc");
    writeFile("vuoto", "");
    EXPECT_EQ(dao::firstBytes(path("vuoto"), 16), "");
    EXPECT_THROW(dao::firstBytes(path("manca"), 16), dao::Error);
}

} // namespace
