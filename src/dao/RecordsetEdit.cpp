// SPDX-License-Identifier: Apache-2.0
#include "dao/FieldValue.h"
#include "dao/RecordsetPrivate.h"

namespace dao {
namespace {

Error rowIsGone()
{
    return Error(RecordDeleted, QStringLiteral("Il record è stato eliminato"));
}

} // namespace

void Recordset::Private::requireUpdatable() const
{
    requireOpen();
    if (!updatable)
        throw Error(ReadOnly,
                    QStringLiteral("Impossibile aggiornare, il database o il recordset è di sola lettura"));
}

QVariantList Recordset::Private::readBaseRow(int source, const QVariant &identity) const
{
    const TableInfo &table = *translation.sources[source].table;
    const Dialect &dialect = session->dialect();
    QStringList columns;
    for (const ColumnInfo &column : table.columns)
        columns.append(dialect.identifier(column.name));
    const auto row = session->select(QStringLiteral("SELECT %1 FROM %2 AS t WHERE %3 = ?")
                                         .arg(columns.join(QStringLiteral(", ")), table.nativeName,
                                              dialect.rowIdentity(QStringLiteral("t"))),
                                     {identity});
    QVariantList values;
    if (row->next()) {
        for (int i = 0; i < table.columns.size(); ++i)
            values.append(row->value(i));
    }
    return values;
}

void Recordset::Private::showBaseRow(int source, const QVariant &identity, const QVariantList &values)
{
    const int identityColumn = translation.sources[source].identityColumn;
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.cell(row, identityColumn) != identity)
            continue;
        for (int column = 0; column < translation.columns.size(); ++column) {
            const ResultColumn &result = translation.columns[column];
            if (result.source == source && result.sourceColumn >= 0)
                rows.setCell(row, column, values[result.sourceColumn]);
        }
    }
}

void Recordset::Private::edit()
{
    requireUpdatable();
    requireRow();
    leaveEdit();
    QList<QVariantList> read;
    for (int source = 0; source < translation.sources.size(); ++source) {
        QVariantList values;
        if (isWritable(source)) {
            const QVariant identity = cell(translation.sources[source].identityColumn);
            if (!identity.isNull()) { // Null on the empty side of an outer join
                values = readBaseRow(source, identity);
                if (values.isEmpty())
                    throw rowIsGone();
                showBaseRow(source, identity, values);
            }
        }
        read.append(values);
    }
    original = read;
    mode = EditMode::InProgress;
}

void Recordset::Private::leaveEdit()
{
    mode = EditMode::None;
    buffer.clear();
    isSet.clear();
    original.clear();
}

int Recordset::Private::writtenSource() const
{
    int source = -1;
    for (int column = 0; column < isSet.size(); ++column) {
        if (!isSet[column])
            continue;
        const int of = translation.columns[column].source;
        if (source >= 0 && source != of)
            throw Error(InvalidOperation,
                        QStringLiteral("Si possono aggiornare i campi di una sola tabella per volta"));
        source = of;
    }
    return source;
}

void Recordset::Private::update()
{
    requireOpen();
    if (mode == EditMode::None)
        throw Error(UpdateWithoutEdit, QStringLiteral("Update o CancelUpdate senza AddNew o Edit"));
    if (mode == EditMode::Add)
        insertRow();
    else
        changeRow();
    leaveEdit();
}

void Recordset::Private::insertRow()
{
    int source = writtenSource();
    if (source < 0) {
        if (translation.sources.size() != 1)
            throw Error(InvalidOperation, QStringLiteral("Nessun campo assegnato nel nuovo record"));
        source = 0;
    }
    const TableInfo &table = *translation.sources[source].table;
    const Dialect &dialect = session->dialect();
    QStringList names;
    QStringList marks;
    QVariantList values;
    for (int column = 0; column < isSet.size(); ++column) {
        const ColumnInfo *info = columnInfo(column);
        if (!isSet[column])
            continue;
        names.append(dialect.identifier(info->name));
        marks.append(QStringLiteral("?"));
        values.append(dialect.toNative(buffer[column], info->type));
    }
    const QString sql =
        names.isEmpty()
            ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(table.nativeName)
            : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                  .arg(table.nativeName, names.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
    const auto autoNumber =
        std::find_if(table.columns.begin(), table.columns.end(),
                     [](const ColumnInfo &column) { return column.type == FieldType::AutoNumber; });
    lastAutoNumber =
        session->insertRow(sql, values, autoNumber == table.columns.end() ? QString() : autoNumber->name);
}

void Recordset::Private::changeRow()
{
    const int source = writtenSource();
    if (source < 0)
        return;
    const RowSource &rowSource = translation.sources[source];
    const TableInfo &table = *rowSource.table;
    const Dialect &dialect = session->dialect();
    const QString alias = QStringLiteral("t");
    const QVariant identity = cell(rowSource.identityColumn);
    if (original[source].isEmpty())
        throw Error(InvalidOperation, QStringLiteral("La tabella '%1' non ha qui un record").arg(table.name));
    QStringList changes;
    QVariantList values;
    for (int column = 0; column < isSet.size(); ++column) {
        if (!isSet[column])
            continue;
        const ColumnInfo &info = *columnInfo(column);
        changes.append(dialect.identifier(info.name) + QStringLiteral(" = ?"));
        values.append(dialect.toNative(buffer[column], info.type));
    }
    QStringList conditions{dialect.rowIdentity(alias) + QStringLiteral(" = ?")};
    values.append(identity);
    for (qsizetype i = 0; i < table.columns.size(); ++i) {
        conditions.append(dialect.identical(alias + u'.' + dialect.identifier(table.columns[i].name),
                                            QStringLiteral("?"), table.columns[i].type));
        values.append(original[source][i]);
    }
    const int affected =
        session->execute(QStringLiteral("UPDATE %1 AS %2 SET %3 WHERE %4")
                             .arg(table.nativeName, alias, changes.join(QStringLiteral(", ")),
                                  conditions.join(QStringLiteral(" AND "))),
                         values);
    const QVariantList now = readBaseRow(source, identity);
    if (affected == 0 && now.isEmpty())
        throw rowIsGone();
    if (affected == 0)
        throw Error(RecordChanged,
                    QStringLiteral("Un altro utente ha modificato il record dopo l'inizio della modifica"));
    showBaseRow(source, identity, now);
}

void Recordset::Private::deleteRow()
{
    requireUpdatable();
    requireRow();
    leaveEdit();
    int source = -1;
    for (int i = 0; i < translation.sources.size(); ++i) {
        if (!isWritable(i))
            continue;
        if (source >= 0)
            throw Error(InvalidOperation, QStringLiteral("Non si elimina un record di più tabelle"));
        source = i;
    }
    const RowSource &rowSource = translation.sources[source];
    const int affected = session->execute(
        QStringLiteral("DELETE FROM %1 AS t WHERE %2 = ?")
            .arg(rowSource.table->nativeName, session->dialect().rowIdentity(QStringLiteral("t"))),
        {cell(rowSource.identityColumn)});
    if (affected == 0)
        throw rowIsGone();
    rows.remove(position);
    --visited;
    standing = Standing::Deleted;
}

} // namespace dao
