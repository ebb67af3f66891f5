// SPDX-License-Identifier: Apache-2.0
#include "ImportFixture.h"
#include "app/practice/PracticeBuild.h"

#include <QFileInfo>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using jetfile::JetType;
using orvale::Practice;
using orvale::PracticeBuild;

class ImportPlacing : public ImportFixture {
protected:
    void addExam(const QString &text)
    {
        file()
            .table("ESAMI", {{"tipo_esa", JetType::Integer}, {"descr_esa", JetType::Text, 60}})
            .addRow({1, text});
    }
    // A practice in the target's place that is not the imported one.
    void createOld() const { Practice::create(target())->setProperty("old", "yes"); }
    bool isOld() const { return Practice::open(target())->property("old") == "yes"; }
    orvale::ImportOptions replacing() const
    {
        auto result = options();
        result.replace = true;
        return result;
    }
};

TEST_F(ImportPlacing, RefusesWithOneLineAndLeavesTheTargetAlone)
{
    saveFiles();
    writeFile("file", "x");
    QDir(m_folder.path()).mkdir("empty");
    QDir(m_folder.path()).mkdir("full");
    writeFile("full/diario.txt", "x");
    QDir(m_folder.path()).mkdir("foreign");
    writeFile("foreign/orvale.MDB", "no Jet file at all");
    QDir(m_folder.path()).mkdir("twice");
    for (const char *name : {"twice/Orvale.mdb", "twice/ORVALE.MDB"})
        writeFile(name, "");
    QDir(m_folder.path()).mkdir("truncated");
    QFile whole(QDir(source()).filePath("Orvale.mdb"));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    writeFile("truncated/Orvale.mdb", whole.read(5000));
    createOld();
    const auto at = [&](const char *name) { return path(name); };
    const struct {
        QString source, target;
        bool replace;
        const char *text;
    } cases[] = {
        {at("none"), at("new"), false, "non esiste"},
        {at("file"), at("new"), false, "non è una cartella"},
        {at("empty"), at("new"), false, "manca il file Orvale.mdb"},
        {at("foreign"), at("new"), false, "orvale.MDB"},
        {at("truncated"), at("new"), false, "Orvale.mdb"},
        {at("twice"), at("new"), false, "più file di nome Orvale.mdb"},
        {source(), at("full"), false, "non è vuota"},
        {source(), at("full"), true, "non è un archivio di Orvale"},
        {source(), at("file"), true, "non è una cartella"},
        {source(), at("file/new"), false, "non si può creare"},
        {source(), target(), false, "non è vuota"},
        {source(), source(), false, "da importare"},
        {source(), source(), true, "da importare"},
        {source(), m_folder.path(), true, "da importare"},
        {source(), QString(), false, "Indicare la cartella"},
    };
    const auto before = filesBelow(m_folder.path());
    for (const auto &c : cases) {
        SCOPED_TRACE(c.source.toStdString() + " -> " + c.target.toStdString());
        const std::string text = refusal([&] {
            orvale::importPractice({c.source, c.target, {}, c.replace});
        });
        EXPECT_NE(text.find(c.text), std::string::npos) << text;
        EXPECT_EQ(text.find('\n'), std::string::npos) << text;
        EXPECT_EQ(filesBelow(m_folder.path()), before);
    }
    auto wrongRegion = options();
    wrongRegion.region = "3";
    EXPECT_NE(refusal([&] { orvale::importPractice(wrongRegion); }).find("due cifre"), std::string::npos);
}

TEST_F(ImportPlacing, NamesTheFilesThatAreNotThere)
{
    addExam("uno");
    file("EVENTI.MDB").table("Eventi", {{"idEvento", JetType::AutoNumber}}).addRow({5});
    const orvale::ImportReport report = import();
    EXPECT_TRUE(report.agrees());
    EXPECT_EQ(report.rows(), 2);
    EXPECT_EQ(report.notes.filter("Tabelle.mdb non c'è").size(), 1);
    EXPECT_TRUE(report.notes.filter("Eventi").isEmpty());
    EXPECT_TRUE(report.missingTables.contains("codes.icd9"));
    EXPECT_TRUE(report.missingTables.contains("clinical.PROBLEMS"));
    EXPECT_FALSE(report.missingTables.contains("clinical.ESAMI"));
    EXPECT_FALSE(report.missingTables.contains("clinical.orvale_properties"));
    EXPECT_EQ(entriesBeside(), (QStringList{"practice", "practice.import.tsv", "source"}));
    EXPECT_EQ(QDir(target()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 6);
    EXPECT_TRUE(rows("SELECT * FROM orvale_refused_rows").isEmpty());
}

TEST_F(ImportPlacing, TheSavedReportHoldsBothSidesOfEveryFigure)
{
    addExam("uno");
    const orvale::ImportReport report = import();
    EXPECT_EQ(report.reportFile, target() + QStringLiteral(".import.tsv"));
    const QString text = QString::fromUtf8(readFile("practice.import.tsv"));
    for (const char *line : {"caratteri\tclinical\tESAMI\tdescr_esa\t3\t3\tuguale\t\n",
                             "somma\tclinical\tESAMI\ttipo_esa\t1\t1\tuguale\t\n",
                             "tabella mancante\tclinical\tPROBLEMS\t\t\t\t\t\n"})
        EXPECT_TRUE(text.contains(line)) << line;
    for (const QString &line : text.split(u'\n', Qt::SkipEmptyParts))
        EXPECT_EQ(line.count(u'\t'), 7) << line.toStdString();
}

TEST_F(ImportPlacing, ReplacesOnlyAPracticeThatNobodyHasOpen)
{
    addExam("nuovo");
    saveFiles();
    createOld();
    const auto before = filesBelow(m_folder.path());
    {
        const auto open = Practice::open(target());
        EXPECT_NE(refusal([&] { orvale::importPractice(replacing()); }).find("è aperto"), std::string::npos);
        EXPECT_EQ(open->property("old"), "yes");
    }
    EXPECT_EQ(filesBelow(m_folder.path()), before);
    EXPECT_TRUE(isOld());

    EXPECT_EQ(orvale::importPractice(replacing()).previousPractice, QString());
    EXPECT_FALSE(isOld());
    EXPECT_EQ(rows("SELECT descr_esa FROM ESAMI"), (Rows{{"nuovo"}}));
    EXPECT_EQ(entriesBeside(), (QStringList{"practice", "practice.import.tsv", "source"}));
    // Where there is nothing to replace it is an import like any other.
    ASSERT_TRUE(QDir(target()).removeRecursively());
    EXPECT_TRUE(orvale::importPractice(replacing()).agrees());
}

TEST_F(ImportPlacing, KeepsWhatItReplacedWhenTheProofFailsOrOtherFilesAreWithIt)
{
    file().table("ESAMI", {{"tipo_esa", JetType::Integer}}).addRow({1}).setDeclaredRows(2);
    createOld();
    orvale::ImportReport report;
    saveFiles();
    report = orvale::importPractice(replacing());
    ASSERT_TRUE(report.previousPractice.startsWith(target() + QStringLiteral(".prima-")));
    EXPECT_EQ(Practice::open(report.previousPractice)->property("old"), "yes");
    EXPECT_FALSE(isOld());

    QFile(QDir(source()).filePath("Orvale.mdb")).remove();
    jetfile::JetFileWriter().save(QDir(source()).filePath("Orvale.mdb"));
    writeFile("practice/lettera.txt", "x");
    report = orvale::importPractice(replacing());
    EXPECT_TRUE(report.agrees());
    EXPECT_TRUE(QFileInfo::exists(report.previousPractice + QStringLiteral("/lettera.txt")));
    EXPECT_FALSE(QFileInfo::exists(target() + QStringLiteral("/lettera.txt")));
}

TEST_F(ImportPlacing, GivesUpAtEveryStepAndLeavesNothing)
{
    for (int i = 0; i < 3; ++i)
        addExam("x");
    file("Terzo.mdb").table("TESTI", {{"idTesto", JetType::AutoNumber}});
    saveFiles();
    createOld();
    const auto before = filesBelow(m_folder.path());
    struct GivenUp { };
    QList<orvale::ImportProgress> steps;
    int stopAt = 0;
    const auto import = [&] {
        orvale::importPractice(replacing(), [&](const orvale::ImportProgress &step) {
            steps.append(step);
            if (steps.size() == stopAt)
                throw GivenUp();
        });
    };
    for (stopAt = 1; stopAt < 100; ++stopAt) {
        steps.clear();
        try {
            import();
            break;
        } catch (const GivenUp &) {
            EXPECT_EQ(filesBelow(m_folder.path()), before) << stopAt;
        }
    }
    EXPECT_FALSE(isOld());
    ASSERT_GE(steps.size(), 5);
    qint64 done = 0;
    for (const orvale::ImportProgress &step : steps) {
        EXPECT_GE(step.done, done);
        done = step.done;
        EXPECT_LE(step.done, step.total);
    }
    EXPECT_TRUE(steps.first().table.startsWith("clinical."));
    EXPECT_FALSE(steps.first().proving);
    EXPECT_TRUE(steps.last().table.isEmpty());
    EXPECT_EQ(steps.last().done, steps.last().total);
}

TEST_F(ImportPlacing, RemovesWhatKilledProgramsLeftOfThisPracticeOnly)
{
    const QStringList names{"practice.part-aaaaaa", "practice.part-bbbbbb", "practice2.part-cccccc",
                            "practice.part-notes.d"};
    for (const QString &name : names) {
        QDir(m_folder.path()).mkdir(name);
        writeFile(name + QStringLiteral("/Orvale.sqlite"), "x");
        if (!name.contains("bbbbbb")) // a folder that no program of ours has made
            writeFile(name + QStringLiteral("/.lock"), "");
    }
    // A program that is still at work on the same practice.
    const PracticeBuild other(target());
    const QString alive = QFileInfo(other.folder()).fileName();
    Practice::create(target());
    const QStringList left = entriesBeside();
    EXPECT_FALSE(left.contains(names[0]));
    EXPECT_TRUE(left.contains(names[1]));
    EXPECT_TRUE(left.contains(names[2]));
    EXPECT_TRUE(left.contains(names[3]));
    EXPECT_TRUE(left.contains(alive));
}

} // namespace
