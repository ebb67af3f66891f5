// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresSql.h"
#include "dao/postgres/PostgresStorage.h"

namespace dao {
namespace {

QVariantList rowOf(NativeCursor &rows, int columns)
{
    QVariantList values;
    for (int i = 0; i < columns; ++i)
        values.append(rows.value(i));
    return values;
}

} // namespace

QStringList PostgresStorage::tables(QSqlDatabase &connection, const QString &schema) const
{
    PostgresCursor rows(runPostgres(*this, connection,
                                    QStringLiteral("SELECT relname FROM pg_class WHERE relkind = 'r' "
                                                   "AND relnamespace = to_regnamespace(?) ORDER BY oid"),
                                    {quotedName(schema)}));
    QStringList names;
    while (rows.next())
        names.append(rows.value(0).toString());
    return names;
}

TableInfo PostgresStorage::describe(QSqlDatabase &connection, const QString &schema,
                                    const QString &table) const
{
    TableInfo info;
    info.name = table;
    info.nativeName = qualifiedName(schema, table);
    // Columns first, then the indexes with their fields.
    PostgresCursor rows(runPostgres(
        *this, connection,
        QStringLiteral(
            "SELECT 0, attname, format_type(atttypid, atttypmod), attidentity <> '', attnotnull, attnum::int "
            "FROM pg_attribute WHERE attrelid = to_regclass(?) AND attnum > 0 AND NOT attisdropped "
            "AND attname <> 'engine_row' "
            "UNION ALL "
            "SELECT i.indexrelid::int8, a.attname, coalesce(obj_description(i.indexrelid, 'pg_class'), "
            "c.relname), "
            "i.indisunique, true, k.place::int "
            "FROM pg_index i JOIN pg_class c ON c.oid = i.indexrelid "
            "CROSS JOIN unnest(i.indkey::int2[]) WITH ORDINALITY AS k(number, place) "
            "JOIN pg_attribute a ON a.attrelid = i.indrelid AND a.attnum = k.number "
            "WHERE i.indrelid = to_regclass(?) "
            "AND NOT EXISTS (SELECT 1 FROM pg_constraint WHERE conindid = i.indexrelid) "
            "ORDER BY 1, 6"),
        {info.nativeName, info.nativeName}));
    qlonglong index = 0;
    while (rows.next()) {
        const QVariantList row = rowOf(rows, 5);
        if (row[0].toLongLong() == 0) {
            info.columns.append(PostgresDialect::declaredColumn(row[1].toString(), row[2].toString(),
                                                                row[3].toBool(), row[4].toBool()));
            continue;
        }
        if (row[0].toLongLong() != index) {
            index = row[0].toLongLong();
            info.indexes.append(indexOfNativeName(table, row[2].toString()));
            info.indexes.last().unique = row[3].toBool();
        }
        info.indexes.last().fields.append(row[1].toString());
    }
    if (info.columns.isEmpty())
        throw Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(table));
    return info;
}

qint64 PostgresStorage::definitionVersion(QSqlDatabase &connection, const QString &schema) const
{
    PostgresCursor row(runPostgres(
        *this, connection,
        QStringLiteral(
            "SELECT hashtextextended(string_agg(concat_ws(' ', c.oid, c.relname, a.attname, a.atttypid, "
            "a.attnotnull), ',' ORDER BY c.oid, a.attnum), 0) "
            "FROM pg_class c LEFT JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 "
            "WHERE c.relnamespace = to_regnamespace(?) AND c.relkind IN ('r', 'i')"),
        {quotedName(schema)}));
    return row.next() ? row.value(0).toLongLong() : 0;
}

void PostgresStorage::setLastAutoNumber(QSqlDatabase &connection, const QString &schema, const QString &table,
                                        qint64 number) const
{
    const TableInfo info = describe(connection, schema, table);
    for (const ColumnInfo &column : info.columns) {
        if (column.type == FieldType::AutoNumber)
            runPostgres(
                *this, connection,
                QStringLiteral("SELECT setval(pg_get_serial_sequence(?, ?), greatest(max(%1), ?, 1)) FROM %2")
                    .arg(quotedName(column.name), info.nativeName),
                {info.nativeName, column.name, number});
    }
}

const IndexInfo *PostgresStorage::brokenIndex(const Error &error, const TableInfo &table) const
{
    // The server names the index: "duplicate key value violates unique constraint "name"".
    for (const IndexInfo &index : table.indexes) {
        if ((index.unique || index.primary)
            && error.text().endsWith(quotedName(PostgresDialect::indexName(table.name, index))))
            return &index;
    }
    return nullptr;
}

} // namespace dao
