// SPDX-License-Identifier: Apache-2.0
#include "jetfile/wire/TableCoding.h"

namespace jetfile::wire {

namespace {

constexpr qsizetype longestName = 256; // Jet allows 64
constexpr int mostFields = 10; // of an index

dao::ColumnInfo takeColumn(Reader &reader)
{
    dao::ColumnInfo column;
    column.name = reader.takeText(longestName);
    const auto type = reader.take<quint8>();
    if (type >= quint8(dao::FieldType::Null))
        throw Error("unknown type of field");
    column.type = dao::FieldType(type);
    column.size = reader.takeCount(65535);
    column.required = reader.take<quint8>() != 0;
    return column;
}

dao::IndexInfo takeIndex(Reader &reader)
{
    dao::IndexInfo index;
    index.name = reader.takeText(longestName);
    index.unique = reader.take<quint8>() != 0;
    index.primary = reader.take<quint8>() != 0;
    const int fields = reader.takeCount(mostFields);
    if (fields == 0)
        throw Error("index without fields");
    for (int i = 0; i < fields; ++i)
        index.fields += reader.takeText(longestName);
    return index;
}

JetTable takeTable(Reader &reader)
{
    JetTable table;
    table.name = reader.takeText(longestName);
    table.declaredRows = reader.take<qint64>();
    table.lastAutoNumber = reader.take<qint64>();
    if (table.declaredRows < 0)
        throw Error("negative number of rows");
    const int columns = reader.takeCount(mostColumns);
    for (int i = 0; i < columns; ++i)
        table.columns += takeColumn(reader);
    const int indexes = reader.takeCount(mostIndexes);
    for (int i = 0; i < indexes; ++i)
        table.indexes += takeIndex(reader);
    return table;
}

} // namespace

void putTables(Writer &writer, const QList<JetTable> &tables)
{
    writer << quint32(tables.size());
    for (const JetTable &table : tables) {
        writer << table.name << table.declaredRows << table.lastAutoNumber << quint32(table.columns.size());
        for (const dao::ColumnInfo &column : table.columns)
            writer << column.name << quint8(column.type) << quint32(column.size) << quint8(column.required);
        writer << quint32(table.indexes.size());
        for (const dao::IndexInfo &index : table.indexes)
            writer << index.name << quint8(index.unique) << quint8(index.primary) << index.fields;
    }
}

QList<JetTable> takeTables(Reader &reader)
{
    QList<JetTable> tables;
    const int count = reader.takeCount(mostTables);
    for (int i = 0; i < count; ++i)
        tables += takeTable(reader);
    if (!reader.atEnd())
        throw Error("bytes after the last table");
    return tables;
}

} // namespace jetfile::wire
