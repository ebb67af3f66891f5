// SPDX-License-Identifier: Apache-2.0
#include "data/engine/DatabasePrivate.h"
#include "data/engine/FieldValue.h"

namespace dao {

struct BulkInsert::Private {
    std::shared_ptr<Session> session;
    QList<ColumnInfo> columns;
    std::shared_ptr<const TableSet> tables; // keeps a linked table's file attached
    QSqlQuery insert;
};

BulkInsert::BulkInsert(Database &database, const QString &table, const QStringList &fields)
{
    const Database::Private &from = *database.d;
    from.requireWritable();
    const TableInfo *info = from.catalog->table(table);
    if (!info)
        throw Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(table));
    QStringList names;
    QStringList marks;
    QList<ColumnInfo> columns;
    for (const QString &field : fields) {
        const int column = info->columnIndex(field);
        if (column < 0)
            throw Error(ItemNotFound,
                        QStringLiteral("Elemento non trovato in questo insieme: '%1'").arg(field));
        columns.append(info->columns[column]);
        names.append(from.session->dialect().identifier(columns.last().name));
        marks.append(QStringLiteral("?"));
    }
    QSqlQuery insert = from.session->prepare(
        QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
            .arg(info->nativeName, names.join(QStringLiteral(", ")), marks.join(QStringLiteral(", "))));
    d = std::make_unique<Private>(Private{from.session, columns, from.catalog->tables(), std::move(insert)});
}

BulkInsert::~BulkInsert() = default;

void BulkInsert::add(const QVariantList &values)
{
    if (values.size() != d->columns.size())
        throw Error(InvalidArgument,
                    QStringLiteral("Il numero dei valori e quello dei campi non coincidono"));
    for (int i = 0; i < values.size(); ++i) {
        const ColumnInfo &column = d->columns[i];
        d->insert.bindValue(i, d->session->dialect().toNative(fieldValue(values[i], column), column.type));
    }
    d->session->execute(d->insert);
}

} // namespace dao
