// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresStorage.h"

#include "dao/postgres/PostgresCursor.h"
#include "dao/postgres/PostgresDefinitions.h"
#include "dao/postgres/PostgresExclusiveUse.h"
#include "dao/postgres/PostgresOpening.h"

namespace dao {
namespace {

// Whether the database is such as a practice needs.
void requireSuitable(PostgresChannel &channel, const QString &name)
{
    PostgresCursor row(channel.run(QStringLiteral("SELECT pg_encoding_to_char(encoding) = 'UTF8' AND "
                                                  "datlocprovider = 'i', "
                                                  "current_setting('transaction_read_only')::boolean "
                                                  "FROM pg_database WHERE datname = current_database()")));
    row.next();
    if (!row.value(0).toBool())
        throw Error(NotADatabase,
                    QStringLiteral("Il database '%1' non ha la codifica UTF8 e le regole ICU che occorrono")
                        .arg(name));
    if (row.value(1).toBool())
        throw Error(ReadOnly, QStringLiteral("Il server del database '%1' è di sola lettura").arg(name));
}

// Of the text that the schema of the definitions is marked with; 0 when there is none.
int definitionsVersion(const QVariant &mark)
{
    return mark.toString().section(u' ', 1).toInt();
}

} // namespace

PostgresStorage::PostgresStorage(const QString &address, const Account &account)
    : m_address(PostgresAddress::parse(address))
    , m_connection(openPostgres(m_address, account, m_address.database))
{
    requireSuitable(m_connection.channel(), m_address.server());
    run(PostgresExclusiveUse::sharing());
    m_connection.channel().wire().addToGreeting("; " + PostgresExclusiveUse::sharing().toLatin1());
}

PostgresResult PostgresStorage::run(const QString &sql, const QVariantList &values) const
{
    return m_connection.channel().run(sql, values);
}

QString PostgresStorage::sameName(const QString &name) const
{
    return PostgresAddress::parse(name).name();
}

QString PostgresStorage::linkedName(const QString &name, const QString &holder) const
{
    // Workstations reach the same practice by several addresses, and it may be restored under another name.
    const PostgresAddress address = PostgresAddress::parse(name);
    return address.server() == PostgresAddress::parse(holder).server() ? u'#' + address.schema
                                                                       : address.name();
}

QString PostgresStorage::nameOfLinked(const QString &linked, const QString &holder) const
{
    if (!linked.startsWith(u'#'))
        return linked;
    PostgresAddress address = PostgresAddress::parse(holder);
    address.schema = linked.mid(1);
    return address.name();
}

QString PostgresStorage::attach(const QString &name, const QString &, bool)
{
    const PostgresAddress address = PostgresAddress::parse(name);
    if (address.database != m_address.database || address.host != m_address.host)
        throw Error(CannotFindFile,
                    QStringLiteral("Il database '%1' non è quello aperto").arg(address.name()));
    PostgresCursor found(run(QStringLiteral("SELECT obj_description(to_regnamespace('jet'), 'pg_namespace'), "
                                            "has_schema_privilege(oid, 'USAGE') "
                                            "FROM pg_namespace WHERE nspname = ?"),
                             {address.schema}));
    if (!found.next())
        throw Error(CannotFindFile,
                    QStringLiteral("Impossibile trovare il database '%1'").arg(address.name()));
    const int version = definitionsVersion(found.value(0));
    if (version > postgresDefinitionsVersion)
        throw Error(NotADatabase,
                    QStringLiteral("Il database '%1' è di una versione più recente del programma")
                        .arg(address.name()));
    if (!found.value(1).toBool())
        throw Error(NoPermission,
                    QStringLiteral("Manca il permesso di usare il database '%1'").arg(address.name()));
    if (version > 0 && version < postgresDefinitionsVersion)
        renewDefinitions(address);
    return address.schema;
}

void PostgresStorage::together(const std::function<void()> &work)
{
    m_connection.begin();
    try {
        work();
        m_connection.commit();
    } catch (const Error &) {
        if (m_connection.inTransaction())
            m_connection.control(QStringLiteral("ROLLBACK"));
        throw;
    }
}

void PostgresStorage::define()
{
    const QList<PostgresDefinition> definitions = postgresDefinitions();
    for (const PostgresDefinition &definition : definitions) {
        try {
            run(definition.sql);
        } catch (const Error &error) {
            throw Error(error.number(), QStringLiteral("%1: %2").arg(definition.file, error.text()),
                        definition.sql);
        }
    }
}

// What an earlier version of the program has defined gives way to this one's. Programs that begin at once
// wait for one another; to define the same again does no harm.
void PostgresStorage::renewDefinitions(const PostgresAddress &address)
{
    if (m_connection.inTransaction())
        return; // when the next database is opened
    try {
        together([this] { define(); });
    } catch (const Error &error) {
        if (error.number() != NoPermission)
            throw;
        throw Error(NoPermission,
                    QStringLiteral("Il database '%1' è di una versione precedente del programma: "
                                   "deve aprirlo per primo il suo proprietario")
                        .arg(address.name()));
    }
}

void PostgresStorage::createDatabase(const QString &name)
{
    const PostgresAddress address = PostgresAddress::parse(name);
    if (address.schema.isEmpty())
        throw Error(CannotFindFile, QStringLiteral("Manca il nome del database in '%1'").arg(address.name()));
    // Two programs that begin at once wait for one another.
    together([&] {
        PostgresCursor found(run(QStringLiteral("SELECT to_regnamespace(quote_ident(?)) IS NOT NULL, "
                                                "obj_description(to_regnamespace('jet'), 'pg_namespace')"),
                                 {address.schema}));
        found.next();
        if (found.value(0).toBool())
            throw Error(TableExists, QStringLiteral("Il database '%1' esiste già").arg(address.name()));
        if (definitionsVersion(found.value(1)) < postgresDefinitionsVersion)
            define();
        run(QStringLiteral("CREATE SCHEMA ") + m_dialect.identifier(address.schema));
    });
}

QStringList PostgresStorage::tables(const QString &schema) const
{
    PostgresCursor rows(run(QStringLiteral("SELECT relname FROM pg_class WHERE relkind = 'r' "
                                           "AND relnamespace = to_regnamespace(?) ORDER BY oid"),
                            {m_dialect.identifier(schema)}));
    QStringList names;
    while (rows.next())
        names.append(rows.value(0).toString());
    return names;
}

TableInfo PostgresStorage::describe(const QString &schema, const QString &table) const
{
    TableInfo info;
    info.name = table;
    info.nativeName = m_dialect.qualified(schema, table);
    // Columns first, then the indexes with their fields.
    PostgresCursor rows(run(
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
        const qlonglong of = rows.value(0).toLongLong();
        const QString name = rows.value(1).toString();
        if (of == 0) {
            info.columns.append(PostgresDialect::declaredColumn(
                name, rows.value(2).toString(), rows.value(3).toBool(), rows.value(4).toBool()));
            continue;
        }
        if (of != index) {
            index = of;
            info.indexes.append(indexOfNativeName(table, rows.value(2).toString()));
            info.indexes.last().unique = rows.value(3).toBool();
        }
        info.indexes.last().fields.append(name);
    }
    if (info.columns.isEmpty())
        throw Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(table));
    return info;
}

qint64 PostgresStorage::definitionVersion(const QString &schema) const
{
    PostgresCursor row(
        run(QStringLiteral(
                "SELECT hashtextextended(string_agg(concat_ws(' ', c.oid, c.relname, a.attname, a.atttypid, "
                "a.attnotnull), ',' ORDER BY c.oid, a.attnum), 0) "
                "FROM pg_class c LEFT JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 "
                "WHERE c.relnamespace = to_regnamespace(?) AND c.relkind IN ('r', 'i')"),
            {m_dialect.identifier(schema)}));
    return row.next() ? row.value(0).toLongLong() : 0;
}

const IndexInfo *PostgresStorage::brokenIndex(const Error &error, const TableInfo &table) const
{
    // The server names the index: "duplicate key value violates unique constraint "name"".
    for (const IndexInfo &index : table.indexes) {
        if ((index.unique || index.primary)
            && error.text().endsWith(m_dialect.identifier(PostgresDialect::indexName(table.name, index))))
            return &index;
    }
    return nullptr;
}

void PostgresStorage::setLastAutoNumber(const QString &schema, const QString &table, qint64 number)
{
    const TableInfo info = describe(schema, table);
    for (const ColumnInfo &column : info.columns) {
        if (column.type == FieldType::AutoNumber)
            run(QStringLiteral("SELECT setval(pg_get_serial_sequence(?, ?), greatest(max(%1), ?, 1)) FROM %2")
                    .arg(m_dialect.identifier(column.name), info.nativeName),
                {info.nativeName, column.name, number});
    }
}

qint64 PostgresStorage::lastAutoNumber(const QString &, const TableInfo &table) const
{
    for (const ColumnInfo &column : table.columns) {
        if (column.type != FieldType::AutoNumber)
            continue;
        PostgresCursor row(
            run(QStringLiteral("SELECT pg_sequence_last_value(pg_get_serial_sequence(?, ?)::regclass)"),
                {table.nativeName, column.name}));
        return row.next() ? row.value(0).toLongLong() : 0;
    }
    return 0;
}

void PostgresStorage::beginLoad(const QString &)
{
    run(QStringLiteral("SET synchronous_commit = off"));
    m_connection.channel().beginLongWork(PostgresWire::LongWork::Session);
}

void PostgresStorage::endLoad(const QString &schema)
{
    // The server plans by what it has counted: it would count only after a while by itself.
    QStringList names;
    for (const QString &table : tables(schema))
        names.append(m_dialect.qualified(schema, table));
    if (!names.isEmpty())
        run(QStringLiteral("ANALYZE ") + names.join(QStringLiteral(", ")));
    run(QStringLiteral("RESET synchronous_commit"));
    m_connection.channel().endLongWork();
}

} // namespace dao
