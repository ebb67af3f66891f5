// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresSql.h"
#include "dao/postgres/PostgresStorage.h"

namespace dao {
namespace {

// A value in the text that COPY reads: columns end with a tab, rows with a line feed, and what would be taken for
// either has a backslash before it.
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

class PostgresInsert final : public NativeInsert {
public:
    PostgresInsert(const Storage &storage, const QSqlDatabase &connection, const QString &nativeTable,
                   const QList<ColumnInfo> &columns)
        : m_storage(storage)
        , m_connection(storage, connection)
        , m_insert(storage.dialect().insertStatement(nativeTable, columns))
        , m_columns(columns)
    {
        QStringList names;
        for (const ColumnInfo &column : columns)
            names.append(quotedName(column.name));
        m_copy = QStringLiteral("COPY %1 (%2) FROM STDIN").arg(nativeTable, names.join(QStringLiteral(", ")));
    }

    void add(const QVariantList &values) override
    {
        QVariantList native;
        for (qsizetype i = 0; i < values.size(); ++i)
            native.append(m_storage.dialect().toNative(values[i], m_columns[i].type));
        m_connection.run(m_insert, native);
    }

    void addRows(const QList<QVariantList> &rows, const Refused &refused) override
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
                appendCopied(text, m_storage.dialect().toNative(row[i], m_columns[i].type));
                text += i + 1 < row.size() ? '\t' : '\n';
            }
        }
        const bool inside = m_connection.inTransaction();
        try {
            m_connection.copyIn(m_copy, text);
        } catch (const Error &error) {
            if (error.number() == ConnectionLost || m_connection.inTransaction() != inside)
                throw;
            // The server takes all or none of them: which one is it?
            NativeInsert::addRows(rows, refused);
        }
    }

private:
    const Storage &m_storage;
    PostgresConnection m_connection;
    QString m_insert, m_copy;
    QList<ColumnInfo> m_columns;
};

} // namespace

qint64 PostgresStorage::lastAutoNumber(QSqlDatabase &connection, const QString &,
                                       const TableInfo &table) const
{
    for (const ColumnInfo &column : table.columns) {
        if (column.type != FieldType::AutoNumber)
            continue;
        PostgresCursor row(runPostgres(
            *this, connection,
            QStringLiteral("SELECT pg_sequence_last_value(pg_get_serial_sequence(?, ?)::regclass)"),
            {table.nativeName, column.name}));
        return row.next() ? row.value(0).toLongLong() : 0;
    }
    return 0;
}

void PostgresStorage::beginLoad(QSqlDatabase &connection, const QString &) const
{
    runPostgres(*this, connection, QStringLiteral("SET synchronous_commit = off"));
    PostgresConnection(*this, connection).beginLongWork(PostgresWire::LongWork::Session);
}

void PostgresStorage::endLoad(QSqlDatabase &connection, const QString &schema) const
{
    // The server plans by what it has counted: it would count only after a while by itself.
    QStringList names;
    for (const QString &table : tables(connection, schema))
        names.append(qualifiedName(schema, table));
    if (!names.isEmpty())
        runPostgres(*this, connection, QStringLiteral("ANALYZE ") + names.join(QStringLiteral(", ")));
    runPostgres(*this, connection, QStringLiteral("RESET synchronous_commit"));
    PostgresConnection(*this, connection).endLongWork();
}

std::unique_ptr<NativeCursor> PostgresStorage::openStream(QSqlDatabase &connection, const QString &sql) const
{
    return std::make_unique<PostgresStream>(*this, connection, sql);
}

std::unique_ptr<NativeInsert> PostgresStorage::openInsert(QSqlDatabase &connection,
                                                          const QString &nativeTable,
                                                          const QList<ColumnInfo> &columns) const
{
    return std::make_unique<PostgresInsert>(*this, connection, nativeTable, columns);
}

} // namespace dao
