// SPDX-License-Identifier: Apache-2.0
// The sample practice was not written by JetFileWriter, and EXPECTED.tsv beside it lists what its files hold,
// counted without this project's code.
#include "jetfile/JetFileFixture.h"

#include <algorithm>
#include <map>
#include <numeric>

namespace jetfile {

namespace {

struct Expectation {
    QString kind, file, table, column, value;
};

QList<Expectation> expectations(const QString &folder)
{
    QFile file(folder + QStringLiteral("/EXPECTED.tsv"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QList<Expectation> list;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines.mid(1)) {
        const QStringList cells = line.split(u'\t');
        list.append({cells.value(0), cells.value(2), cells.value(3), cells.value(4), cells.value(5)});
    }
    return list;
}

double sum(const QVariantList &values)
{
    return std::accumulate(values.begin(), values.end(), 0.0,
                           [](double total, const QVariant &value) { return total + value.toDouble(); });
}

// What the list calls `kind`, of the values of a column that are not Null.
QString measured(const QString &kind, const QVariantList &values)
{
    QStringList texts;
    for (const QVariant &value : values)
        texts.append(value.typeId() == QMetaType::QDateTime ? value.toDateTime().toString("yyyy-MM-dd")
                                                            : value.toString());
    if (kind == QLatin1String("nonnull"))
        return QString::number(values.size());
    if (kind == QLatin1String("sum"))
        return QString::number(sum(values), 'f', 0);
    if (kind == QLatin1String("sum6"))
        return QString::number(sum(values), 'f', 6);
    if (kind == QLatin1String("true"))
        return QString::number(values.count(true));
    if (kind == QLatin1String("nonblank")) {
        return QString::number(std::count_if(texts.begin(), texts.end(),
                                             [](const QString &text) { return !text.trimmed().isEmpty(); }));
    }
    texts.sort();
    if (kind == QLatin1String("mindate"))
        return texts.value(0);
    if (kind == QLatin1String("maxdate"))
        return texts.isEmpty() ? QString() : texts.last();
    qint64 characters = 0, codes = 0, longest = 0;
    for (const QString &text : texts) {
        characters += text.size();
        longest = std::max(longest, qint64(text.size()));
        for (const QChar c : text)
            codes += c.unicode();
    }
    const std::map<QString, qint64> numbers{
        {"chars", characters}, {"codepoints", codes}, {"maxchars", longest}};
    const auto number = numbers.find(kind);
    return number == numbers.end() ? QStringLiteral("unknown kind") : QString::number(number->second);
}

class SamplePractice : public JetFileFixture { };

TEST_F(SamplePractice, AgreesWithEveryLineOfItsList)
{
    const QString folder = QStringLiteral(CLIVARA_SAMPLES "/practice-tiny");
    const QList<Expectation> list = expectations(folder);
    ASSERT_GT(list.size(), 50);
    std::map<QString, QList<ReadTable>> files;
    for (const Expectation &expected : list) {
        if (!files.contains(expected.file))
            files[expected.file] = read(folder + u'/' + expected.file);
        SCOPED_TRACE((QStringList{expected.kind, expected.file, expected.table, expected.column})
                         .join(u' ')
                         .toStdString());
        const QList<ReadTable> &tables = files[expected.file];
        const auto table = std::find_if(tables.begin(), tables.end(), [&](const ReadTable &candidate) {
            return candidate.table.name == expected.table;
        });
        ASSERT_NE(table, tables.end());
        if (expected.kind == QLatin1String("rows")) {
            EXPECT_EQ(QString::number(table->rows.size()), expected.value);
            continue;
        }
        const auto &columns = table->table.columns;
        const auto column =
            std::find_if(columns.begin(), columns.end(), [&](const dao::ColumnInfo &candidate) {
                return candidate.name.compare(expected.column, Qt::CaseInsensitive) == 0;
            });
        ASSERT_NE(column, columns.end());
        QVariantList values;
        for (const JetRow &row : table->rows) {
            const QVariant &value = row.values[column - columns.begin()];
            if (value.isValid())
                values.append(value);
        }
        EXPECT_EQ(measured(expected.kind, values), expected.value);
    }
    EXPECT_EQ(files.size(), 5);
    for (const auto &[name, tables] : files) {
        for (const ReadTable &table : tables) {
            EXPECT_EQ(table.rows.size(), table.table.declaredRows) << table.table.name.toStdString();
            for (const JetRow &row : table.rows)
                EXPECT_EQ(row.problem, QString());
        }
    }
}

} // namespace

} // namespace jetfile
