// SPDX-License-Identifier: Apache-2.0
#include "dao/DatabasePrivate.h"

namespace dao {

QString Database::Private::nativeName(const QString &table) const
{
    const Dialect &dialect = session->dialect();
    return dialect.identifier(attachment->schema) + u'.' + dialect.identifier(table);
}

// Carries out a definition, wholly or not at all.
void Database::Private::define(const Translation &statement)
{
    const Definition &definition = statement.definition;
    const Dialect &dialect = session->dialect();
    Atomic atomic(*session);
    if (statement.kind == StatementKind::CreateTable) {
        createTable(definition.table, definition.columns, definition.indexes);
    } else if (catalog->link(definition.table)) {
        if (statement.kind != StatementKind::DropTable)
            throw Error(InvalidOperation,
                        QStringLiteral("La struttura di una tabella collegata non si può modificare: '%1'")
                            .arg(definition.table));
        catalog->removeLink(definition.table);
    } else {
        const TableInfo *found = catalog->table(definition.table);
        if (!found)
            throw Error(ObjectNotFound,
                        QStringLiteral("Tabella o query inesistente: '%1'").arg(definition.table));
        const TableInfo table = *found;
        switch (statement.kind) {
        case StatementKind::DropTable:
            session->execute(QStringLiteral("DROP TABLE ") + table.nativeName);
            break;
        case StatementKind::CreateIndex:
            for (const IndexInfo &index : definition.indexes)
                createIndex(table, index);
            break;
        case StatementKind::DropIndex:
            for (const IndexInfo &index : definition.indexes) {
                const IndexInfo *existing = table.index(index.name);
                if (!existing)
                    throw Error(ItemNotFound, QStringLiteral("Indice inesistente: '%1'").arg(index.name));
                session->execute(dialect.dropIndex(attachment->schema, table.name, *existing));
            }
            break;
        case StatementKind::AddColumn:
            for (const ColumnInfo &column : definition.columns)
                session->execute(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2")
                                     .arg(table.nativeName, dialect.columnDeclaration(column)));
            for (const QString &sql : dialect.completeTable(table.nativeName, definition.columns))
                session->execute(sql);
            for (const IndexInfo &index : definition.indexes)
                session->execute(dialect.createIndex(attachment->schema, table.name, index));
            break;
        default:
            for (const ColumnInfo &column : definition.columns)
                session->execute(QStringLiteral("ALTER TABLE %1 DROP COLUMN %2")
                                     .arg(table.nativeName, dialect.identifier(column.name)));
        }
    }
    session->definitionsChanged();
    atomic.commit();
}

void Database::Private::createTable(const QString &table, const QList<ColumnInfo> &columns,
                                    const QList<IndexInfo> &indexes)
{
    if (catalog->contains(table))
        throw Error(TableExists, QStringLiteral("La tabella '%1' esiste già").arg(table));
    QStringList declarations;
    for (ColumnInfo column : columns) {
        for (const IndexInfo &index : indexes)
            column.required |= index.primary && index.fields.contains(column.name, Qt::CaseInsensitive);
        declarations.append(session->dialect().columnDeclaration(column));
    }
    const Dialect &dialect = session->dialect();
    declarations.append(dialect.hiddenColumns());
    session->execute(QStringLiteral("CREATE TABLE %1 (%2)")
                         .arg(nativeName(table), declarations.join(QStringLiteral(", "))));
    for (const QString &statement : dialect.completeTable(nativeName(table), columns))
        session->execute(statement);
    for (const IndexInfo &index : indexes)
        session->execute(dialect.createIndex(attachment->schema, table, index));
}

void Database::Private::createIndex(const TableInfo &table, const IndexInfo &index)
{
    if (table.index(index.name))
        throw Error(TableExists, QStringLiteral("L'indice '%1' esiste già").arg(index.name));
    const Dialect &dialect = session->dialect();
    QList<ColumnInfo> columns = table.columns;
    bool isChanged = false;
    for (ColumnInfo &column : columns) {
        // A primary key takes no Null.
        if (!index.primary || column.required || column.type == FieldType::AutoNumber
            || !index.fields.contains(column.name, Qt::CaseInsensitive))
            continue;
        const QString statement = dialect.requireColumn(table.nativeName, column.name);
        if (!statement.isEmpty()) {
            session->execute(statement);
            continue;
        }
        column.required = isChanged = true;
    }
    if (isChanged)
        rebuild(table, columns);
    session->execute(dialect.createIndex(attachment->schema, table.name, index));
}

void Database::Private::rebuild(const TableInfo &table, const QList<ColumnInfo> &columns)
{
    const Dialect &dialect = session->dialect();
    const QString temporary = QStringLiteral("engine_rebuilt");
    QStringList declarations;
    QStringList names;
    for (const ColumnInfo &column : columns) {
        declarations.append(dialect.columnDeclaration(column));
        names.append(dialect.identifier(column.name));
    }
    const QString list = names.join(QStringLiteral(", "));
    session->execute(QStringLiteral("CREATE TABLE %1 (%2)")
                         .arg(nativeName(temporary), declarations.join(QStringLiteral(", "))));
    session->execute(QStringLiteral("INSERT INTO %1 (%2) SELECT %2 FROM %3")
                         .arg(nativeName(temporary), list, table.nativeName));
    session->execute(QStringLiteral("DROP TABLE ") + table.nativeName);
    session->execute(QStringLiteral("ALTER TABLE %1 RENAME TO %2")
                         .arg(nativeName(temporary), dialect.identifier(table.name)));
    for (const IndexInfo &index : table.indexes)
        session->execute(dialect.createIndex(attachment->schema, table.name, index));
}

} // namespace dao
