// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetFileReader.h"
#include "jetfile/JetFileWriter.h"

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>
#include <array>
#include <bit>
#include <gmock/gmock.h>

namespace jetfile {

inline constexpr std::array bothVersions{JetVersion::Jet3, JetVersion::Jet4};

// The first column of most tables.
inline const JetColumn number{"n", JetType::Long};

struct ReadTable {
    JetTable table;
    QList<JetRow> rows;
};

class JetFileFixture : public testing::Test {
protected:
    QString save(const JetFileWriter &writer) { return save(writer.bytes()); }
    QString save(const QByteArray &bytes)
    {
        const QString path = m_folder.filePath("Orvale.mdb");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return path;
    }

    QList<ReadTable> read(const QString &path)
    {
        JetFileReader reader(path);
        QList<ReadTable> tables;
        for (const JetTable &table : reader.tables()) {
            ReadTable read{table, {}};
            JetRow row;
            while (reader.nextRow(row))
                read.rows.append(row);
            tables.append(read);
        }
        JetRow none;
        EXPECT_FALSE(reader.nextRow(none));
        return tables;
    }
    // The only table.
    ReadTable readTable(const JetFileWriter &writer)
    {
        const QList<ReadTable> tables = read(save(writer));
        EXPECT_EQ(tables.size(), 1);
        return tables.value(0);
    }
    // The line that a file that cannot be read ends in; empty when it can be read after all.
    QString refusal(const QString &path)
    {
        try {
            read(path);
        } catch (const SourceError &error) {
            return error.text();
        }
        return {};
    }
    QString refusal(const QByteArray &bytes) { return refusal(save(bytes)); }
    // A file with a single table, damaged or not: its rows.
    QList<JetRow> rowsOf(const QByteArray &bytes)
    {
        const QList<ReadTable> tables = read(save(bytes));
        EXPECT_EQ(tables.size(), 1);
        return tables.value(0).rows;
    }

    QTemporaryDir m_folder;
};

// Its tests hold for both versions of the format.
class BothVersions : public JetFileFixture, public testing::WithParamInterface<JetVersion> { };

inline std::string describe(const QVariant &value)
{
    QString text = value.isValid() ? value.toString() : QStringLiteral("Null");
    return QStringLiteral("%1 %2").arg(QLatin1String(value.metaType().name()), text.left(200)).toStdString();
}

// Of the same type too; numbers bit by bit.
inline bool same(const QVariant &one, const QVariant &other)
{
    if (one.typeId() != other.typeId())
        return false;
    if (one.typeId() == QMetaType::Double)
        return std::bit_cast<quint64>(one.toDouble()) == std::bit_cast<quint64>(other.toDouble());
    if (one.typeId() == QMetaType::QDateTime)
        return one.toDateTime() == other.toDateTime() && other.toDateTime().timeSpec() == Qt::UTC;
    return one == other;
}

inline void expectValues(const JetRow &row, const QVariantList &expected)
{
    EXPECT_EQ(row.problem, QString());
    ASSERT_EQ(row.values.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        EXPECT_TRUE(same(expected[i], row.values[i]))
            << "value " << i << ": " << describe(row.values[i]) << ", not " << describe(expected[i]);
    }
}

inline void expectRows(const QList<JetRow> &rows, const QList<QVariantList> &expected)
{
    ASSERT_EQ(rows.size(), expected.size());
    for (qsizetype i = 0; i < rows.size() && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        expectValues(rows[i], expected[i]);
    }
}

// The first column of the rows that could be read.
inline QList<int> numbers(const QList<JetRow> &rows)
{
    QList<int> numbers;
    for (const JetRow &row : rows) {
        if (row.problem.isEmpty())
            numbers.append(row.values.value(0).toInt());
    }
    return numbers;
}

inline QDateTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
}

inline QString letters(int count)
{
    QString text;
    while (text.size() < count)
        text += QStringLiteral("riga %1 con più parole\r\n").arg(text.size());
    return text.left(count);
}

} // namespace jetfile
