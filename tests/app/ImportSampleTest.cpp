// SPDX-License-Identifier: Apache-2.0
#include "ImportFixture.h"

namespace {

using orvale::Practice;

// A practice of Jet files with a list of what an import must find in it.
class ImportSample : public PracticeFixture, public ::testing::WithParamInterface<const char *> { };

using DatabasesByRole = QMap<QString, std::shared_ptr<dao::Database>>;

DatabasesByRole databasesOf(const Practice &practice)
{
    const clivara::HostEnvironment &environment = practice.environment();
    return {{"clinical", environment.clinical}, {"codes", environment.codes}, {"third", environment.third},
            {"doctors", environment.doctors},   {"local", environment.local}, {"events", environment.events}};
}

// What one line of the list asks for, found in the practice with its own query.
QString found(dao::Database &database, const QString &kind, const QString &table, const QString &column)
{
    if (kind == QLatin1String("rows"))
        return database.OpenRecordset(QStringLiteral("SELECT count(*) FROM [%1]").arg(table))
            ->Fields(0)
            .text();
    qint64 count = 0;
    qint64 blank = 0;
    qint64 units = 0;
    qint64 codes = 0;
    qint64 longest = 0;
    double sum = 0;
    QDateTime least;
    QDateTime most;
    const auto rows = database.OpenRecordset(
        QStringLiteral("SELECT [%1] FROM [%2] WHERE NOT [%1] IS NULL").arg(column, table));
    for (; !rows->Eof(); rows->MoveNext()) {
        const dao::Field field = rows->Fields(0);
        ++count;
        const QString text = field.text();
        blank += text.trimmed().isEmpty() ? 1 : 0;
        units += text.size();
        longest = std::max(longest, qint64(text.size()));
        for (const QChar unit : text)
            codes += unit.unicode();
        sum += field.number();
        if (const QDateTime date = field.date(); date.isValid()) {
            least = least.isValid() ? std::min(least, date) : date;
            most = std::max(most, date);
        }
    }
    const QMap<QString, QString> answers{
        {"nonnull", QString::number(count)},
        {"nonblank", QString::number(count - blank)},
        {"sum", QString::number(sum, 'f', 0)},
        {"sum6", QString::number(sum, 'f', 6)},
        {"true", QString::number(sum, 'f', 0)},
        {"chars", QString::number(units)},
        {"codepoints", QString::number(codes)},
        {"maxchars", QString::number(longest)},
        {"mindate", least.date().toString(Qt::ISODate)},
        {"maxdate", most.date().toString(Qt::ISODate)},
    };
    return answers.value(kind, "unknown kind");
}

TEST_P(ImportSample, AgreesWithEveryLineOfItsList)
{
    const QString source =
        QDir(QStringLiteral(APP_TESTS_FOLDER "/../..")).filePath(QString::fromLatin1(GetParam()));
    QFile list(QDir(source).filePath("EXPECTED.tsv"));
    if (!list.open(QIODevice::ReadOnly))
        GTEST_SKIP() << "not here: " << GetParam();
    const orvale::ImportReport report = orvale::importPractice({source, path("practice"), "03", false});
    EXPECT_TRUE(report.agrees()) << orvale::summaryLines(report).join(u'\n').toStdString();

    const auto practice = Practice::open(path("practice"));
    EXPECT_EQ(practice->property("region"), "03");
    const DatabasesByRole databases = databasesOf(*practice);
    int lines = 0;
    list.readLine(); // the headings
    while (!list.atEnd()) {
        const QStringList cells = QString::fromUtf8(list.readLine()).split(u'\t');
        ASSERT_GE(cells.size(), 6);
        const QString &table = cells[3];
        EXPECT_EQ(found(*databases[cells[1]], cells[0], table, cells[4]), cells[5])
            << cells.join(u' ').toStdString();
        ++lines;
    }
    EXPECT_GE(lines, 60);
}

INSTANTIATE_TEST_SUITE_P(Practices, ImportSample,
                         ::testing::Values("samples/practice-tiny", "../shared/practice"),
                         [](const auto &each) { return std::string(each.index == 0 ? "Tiny" : "Large"); });

} // namespace
