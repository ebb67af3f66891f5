// SPDX-License-Identifier: Apache-2.0
#include "dao/DatabasePrivate.h"
#include "dao/FieldValue.h"

namespace dao {

struct BulkInsert::Private {
    std::shared_ptr<Session> session;
    QList<ColumnInfo> columns;
    std::shared_ptr<const TableSet> tables; // keeps a linked table's file attached
    TableInfo table;
    std::unique_ptr<NativeInsert> insert;
    QVariantList converted;

    void convert(const QVariantList &values);
};

BulkInsert::BulkInsert(Database &database, const QString &table, const QStringList &fields)
{
    const Database::Private &from = *database.d;
    from.requireWritable();
    const TableInfo *info = from.catalog->table(table);
    if (!info)
        throw Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(table));
    QList<ColumnInfo> columns;
    for (const QString &field : fields) {
        const int column = info->columnIndex(field);
        if (column < 0)
            throw Error(ItemNotFound,
                        QStringLiteral("Elemento non trovato in questo insieme: '%1'").arg(field));
        columns.append(info->columns[column]);
    }
    auto insert = from.session->connection().openInsert(info->nativeName, columns);
    d = std::make_unique<Private>(
        Private{from.session, columns, from.catalog->tables(), *info, std::move(insert), {}});
}

BulkInsert::~BulkInsert() = default;

void BulkInsert::Private::convert(const QVariantList &values)
{
    if (values.size() != columns.size())
        throw Error(InvalidArgument,
                    QStringLiteral("Il numero dei valori e quello dei campi non coincidono"));
    converted.resize(values.size());
    for (int i = 0; i < values.size(); ++i)
        converted[i] = fieldValue(values[i], columns[i]);
}

void BulkInsert::add(const QVariantList &values)
{
    d->convert(values);
    d->session->insert(*d->insert, d->converted);
}

void BulkInsert::addRows(const QList<QVariantList> &rows,
                         const std::function<void(qsizetype, const Error &)> &refused)
{
    QList<QVariantList> converted;
    QList<qsizetype> positions; // of the converted rows among all
    for (qsizetype i = 0; i < rows.size(); ++i) {
        try {
            d->convert(rows[i]);
            converted.append(d->converted);
            positions.append(i);
        } catch (const Error &error) {
            refused(i, error);
        }
    }
    d->session->insertRows(*d->insert, converted,
                           [&](qsizetype row, const Error &error) { refused(positions[row], error); });
}

IndexInfo BulkInsert::brokenIndex(const Error &error) const
{
    const IndexInfo *index = d->session->storage().brokenIndex(error, d->table);
    return index ? *index : IndexInfo();
}

} // namespace dao
