// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresInsert.h"

#include <QLocale>

namespace dao {
namespace {

// A value in the text that COPY reads: columns end with a tab, rows with a line feed, and what would be taken
// for either has a backslash before it.
void appendCopied(QByteArray &rows, const QVariant &value)
{
    if (!value.isValid() || value.isNull()) {
        rows += "\\N";
        return;
    }
    switch (value.typeId()) {
    case QMetaType::Bool:
        rows += value.toBool() ? 't' : 'f';
        return;
    case QMetaType::Int:
    case QMetaType::LongLong:
        rows += QByteArray::number(value.toLongLong());
        return;
    case QMetaType::Double:
        rows += QByteArray::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
        return;
    case QMetaType::QByteArray:
        rows += "\\\\x" + value.toByteArray().toHex();
        return;
    default:
        break;
    }
    for (const char c : value.toString().toUtf8()) {
        switch (c) {
        case '\\':
            rows += "\\\\";
            break;
        case '\n':
            rows += "\\n";
            break;
        case '\r':
            rows += "\\r";
            break;
        case '\t':
            rows += "\\t";
            break;
        default:
            rows += c; // a null character makes the server refuse the rows, and then this one alone
        }
    }
}

} // namespace

PostgresInsert::PostgresInsert(PostgresChannel &channel, const QString &nativeTable,
                               const QList<ColumnInfo> &columns)
    : m_channel(channel)
    , m_insert(m_dialect.insertStatement(nativeTable, columns))
    , m_columns(columns)
{
    QStringList names;
    for (const ColumnInfo &column : columns)
        names.append(m_dialect.identifier(column.name));
    m_copy = QStringLiteral("COPY %1 (%2) FROM STDIN").arg(nativeTable, names.join(QStringLiteral(", ")));
}

void PostgresInsert::add(const QVariantList &values)
{
    QVariantList native;
    for (qsizetype i = 0; i < values.size(); ++i)
        native.append(m_dialect.toNative(values[i], m_columns[i].type));
    m_channel.run(m_insert, native);
}

void PostgresInsert::addRows(const QList<QVariantList> &rows, const Refused &refused)
{
    // A few rows are there sooner one by one.
    constexpr qsizetype few = 3;
    if (rows.size() <= few || m_columns.isEmpty()) {
        NativeInsert::addRows(rows, refused);
        return;
    }
    QByteArray text;
    for (const QVariantList &row : rows) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            appendCopied(text, m_dialect.toNative(row[i], m_columns[i].type));
            text += i + 1 < row.size() ? '\t' : '\n';
        }
    }
    const bool isInside = m_channel.inTransaction();
    try {
        m_channel.copyIn(m_copy, text);
    } catch (const Error &error) {
        if (error.number() == ConnectionLost || m_channel.inTransaction() != isInside)
            throw;
        // The server takes all or none of them: which one is it?
        NativeInsert::addRows(rows, refused);
    }
}

} // namespace dao
