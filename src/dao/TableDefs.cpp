// SPDX-License-Identifier: Apache-2.0
#include "dao/DatabasePrivate.h"

namespace dao {

struct TableDef::Private {
    std::shared_ptr<DatabaseCatalog> catalog;
    bool readOnly = false;
    bool appended = false;
    TableLink link; // connect and source are empty for the database's own table
};

QString TableDef::Name() const
{
    return d->link.name;
}

QString TableDef::Connect() const
{
    return d->link.connect;
}

void TableDef::setConnect(const QString &connect)
{
    d->link.connect = connect;
}

QString TableDef::SourceTableName() const
{
    return d->link.source;
}

void TableDef::setSourceTableName(const QString &name)
{
    d->link.source = name;
}

void TableDef::RefreshLink()
{
    if (!d->appended || !d->catalog->link(d->link.name))
        throw Error(InvalidOperation, QStringLiteral("'%1' non è una tabella collegata").arg(d->link.name));
    if (d->readOnly)
        throw Error(ReadOnly, QStringLiteral("Impossibile aggiornare, il database è di sola lettura"));
    d->catalog->setLink(d->link);
}

QList<ColumnInfo> TableDef::Fields() const
{
    const TableInfo *table = d->appended ? d->catalog->table(d->link.name) : nullptr;
    return table ? table->columns : QList<ColumnInfo>();
}

QList<IndexInfo> TableDef::Indexes() const
{
    const TableInfo *table = d->appended ? d->catalog->table(d->link.name) : nullptr;
    return table ? table->indexes : QList<IndexInfo>();
}

TableDef Database::CreateTableDef(const QString &name)
{
    d->requireOpen();
    TableDef table;
    table.d = std::make_shared<TableDef::Private>();
    table.d->catalog = d->catalog;
    table.d->readOnly = d->readOnly;
    table.d->link.name = name;
    return table;
}

int TableDefs::Count() const
{
    return int(m_database->d->catalog->tables()->names.size());
}

bool TableDefs::contains(const QString &name) const
{
    return m_database->d->catalog->contains(name);
}

TableDef TableDefs::operator[](const QString &name) const
{
    const DatabaseCatalog &catalog = *m_database->d->catalog;
    const std::shared_ptr<const TableSet> tables = catalog.tables();
    for (const QString &stored : tables->names) {
        if (stored.compare(name, Qt::CaseInsensitive) != 0)
            continue;
        TableDef table = m_database->CreateTableDef(stored);
        table.d->appended = true;
        if (const TableLink *link = catalog.link(stored))
            table.d->link = *link;
        return table;
    }
    throw Error(ItemNotFound, QStringLiteral("Elemento non trovato in questo insieme: '%1'").arg(name));
}

TableDef TableDefs::operator[](int position) const
{
    const std::shared_ptr<const TableSet> tables = m_database->d->catalog->tables();
    if (position < 0 || position >= tables->names.size())
        throw Error(ItemNotFound, QStringLiteral("Elemento non trovato in questo insieme: %1").arg(position));
    return (*this)[tables->names[position]];
}

void TableDefs::Append(const TableDef &table)
{
    m_database->d->requireWritable();
    if (contains(table.Name()))
        throw Error(TableExists, QStringLiteral("La tabella '%1' esiste già").arg(table.Name()));
    if (table.Connect().isEmpty())
        throw Error(InvalidOperation, QStringLiteral("La tabella '%1' non ha campi").arg(table.Name()));
    TableLink link = table.d->link;
    if (link.source.isEmpty())
        link.source = link.name;
    m_database->d->catalog->setLink(link);
    table.d->link = link;
    table.d->appended = true;
}

void TableDefs::Delete(const QString &name)
{
    const TableDef table = (*this)[name];
    m_database->d->requireWritable();
    Translation statement;
    statement.kind = StatementKind::DropTable;
    statement.definition.table = table.Name();
    m_database->d->define(statement);
}

void TableDefs::Withhold(const QString &name)
{
    m_database->d->catalog->withhold(name);
}

void TableDefs::Release(const QString &name)
{
    m_database->d->catalog->release(name);
}

void TableDefs::Refresh()
{
    m_database->d->catalog->invalidate();
}

} // namespace dao
