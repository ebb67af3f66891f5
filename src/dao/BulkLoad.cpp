// SPDX-License-Identifier: Apache-2.0
#include "dao/BulkLoad.h"

#include "dao/DatabasePrivate.h"

#include <algorithm>

namespace dao {

namespace {

Error noSuchTable(const QString &table)
{
    return Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(table));
}

} // namespace

BulkLoad::BulkLoad(Database &database)
    : m_database(database)
{
    database.d->requireWritable();
    database.d->session->storage().beginLoad(database.d->attachment->schema);
}

void BulkLoad::finish()
{
    Session &session = *m_database.d->session;
    session.storage().endLoad(m_database.d->attachment->schema);
}

void BulkLoad::prepareLinks()
{
    m_database.d->catalog->prepareLinks();
}

const TableInfo &BulkLoad::describe(const QString &table) const
{
    const TableInfo *info = m_database.d->catalog->table(table);
    if (!info)
        throw noSuchTable(table);
    return *info;
}

void BulkLoad::createTable(const QString &name, const QList<ColumnInfo> &columns,
                           const QList<IndexInfo> &indexes)
{
    Session &session = *m_database.d->session;
    Atomic atomic(session);
    m_database.d->createTable(name, columns, indexes);
    session.definitionsChanged();
    atomic.commit();
}

void BulkLoad::dropTable(const QString &name)
{
    Session &session = *m_database.d->session;
    session.execute(QStringLiteral("DROP TABLE ") + describe(name).nativeName);
    session.definitionsChanged();
}

void BulkLoad::createIndex(const QString &table, const IndexInfo &index)
{
    Session &session = *m_database.d->session;
    Atomic atomic(session);
    m_database.d->createIndex(TableInfo(describe(table)), index);
    session.definitionsChanged();
    atomic.commit();
}

void BulkLoad::dropIndex(const QString &table, const QString &index)
{
    Session &session = *m_database.d->session;
    const TableInfo &info = describe(table);
    const IndexInfo *existing = info.index(index);
    if (!existing)
        throw Error(ItemNotFound, QStringLiteral("Indice inesistente: '%1'").arg(index));
    session.execute(session.dialect().dropIndex(m_database.d->attachment->schema, info.name, *existing));
    session.definitionsChanged();
}

void BulkLoad::setLastAutoNumber(const QString &table, qint64 number)
{
    Session &session = *m_database.d->session;
    session.storage().setLastAutoNumber(m_database.d->attachment->schema, describe(table).name, number);
}

struct BulkReader::Private {
    std::shared_ptr<Session> session;
    std::shared_ptr<const TableSet> tables; // keeps a linked table's file attached
    QList<FieldType> types;
    std::unique_ptr<NativeCursor> cursor;
};

BulkReader::BulkReader(Database &database, const QString &table, const QStringList &fields)
{
    const Database::Private &from = *database.d;
    from.requireOpen();
    const TableInfo *info = from.catalog->table(table);
    if (!info)
        throw noSuchTable(table);
    const Dialect &dialect = from.session->dialect();
    const QString alias = QStringLiteral("t");
    QStringList columns;
    QList<FieldType> types;
    for (const QString &field : fields) {
        const int column = info->columnIndex(field);
        if (column < 0)
            throw Error(ItemNotFound,
                        QStringLiteral("Elemento non trovato in questo insieme: '%1'").arg(field));
        columns.append(alias + u'.' + dialect.identifier(info->columns[column].name));
        types.append(info->columns[column].type);
    }
    // The order also keeps the rows from being read out of an index that happens to hold these fields.
    const QString identity = dialect.rowIdentity(alias);
    if (columns.isEmpty())
        columns.append(identity);
    auto cursor =
        from.session->stream(QStringLiteral("SELECT %1 FROM %2 AS %3 ORDER BY %4")
                                 .arg(columns.join(QStringLiteral(", ")), info->nativeName, alias, identity));
    d = std::make_unique<Private>(Private{from.session, from.catalog->tables(), types, std::move(cursor)});
}

BulkReader::~BulkReader() = default;

qint64 lastAutoNumber(Database &database, const QString &table)
{
    const Database::Private &from = *database.d;
    from.requireOpen();
    const TableInfo *info = from.catalog->table(table);
    if (!info)
        throw noSuchTable(table);
    const bool isNumbered =
        std::any_of(info->columns.begin(), info->columns.end(),
                    [](const ColumnInfo &column) { return column.type == FieldType::AutoNumber; });
    if (!isNumbered)
        return 0;
    return from.session->storage().lastAutoNumber(from.attachment->schema, *info);
}

bool BulkReader::next()
{
    return d->cursor->next();
}

QVariant BulkReader::value(int field) const
{
    return d->session->dialect().fromNative(d->cursor->value(field), d->types[field]);
}

} // namespace dao
