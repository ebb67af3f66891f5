// SPDX-License-Identifier: Apache-2.0
#include "data/engine/DatabasePrivate.h"
#include "data/engine/FieldValue.h"

namespace dao {

struct BulkInsert::Private {
    std::shared_ptr<Session> session;
    QList<ColumnInfo> columns;
    std::shared_ptr<const TableSet> tables; // keeps a linked table's file attached
    TableInfo table;
    std::unique_ptr<NativeInsert> insert;
    QVariantList converted;
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
    QSqlDatabase connection = from.session->connection();
    auto insert = from.session->dialect().openInsert(
        connection,
        QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
            .arg(info->nativeName, names.join(QStringLiteral(", ")), marks.join(QStringLiteral(", "))),
        columns);
    d = std::make_unique<Private>(
        Private{from.session, columns, from.catalog->tables(), *info, std::move(insert), {}});
}

BulkInsert::~BulkInsert() = default;

void BulkInsert::add(const QVariantList &values)
{
    if (values.size() != d->columns.size())
        throw Error(InvalidArgument,
                    QStringLiteral("Il numero dei valori e quello dei campi non coincidono"));
    d->converted.resize(values.size());
    for (int i = 0; i < values.size(); ++i)
        d->converted[i] = fieldValue(values[i], d->columns[i]);
    d->session->insert(*d->insert, d->converted);
}

IndexInfo BulkInsert::brokenIndex(const Error &error) const
{
    const IndexInfo *index = d->session->dialect().brokenIndex(error, d->table);
    return index ? *index : IndexInfo();
}

} // namespace dao
