// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetTable.h"
#include "jetfile/reader/PageFile.h"

#include <vector>

namespace jetreader {

// How the values of one column lie in a row.
struct Column {
    int type = 0; // libmdb's MDB_TEXT...
    int number = 0; // its place in the row's bitmap; numbers of deleted columns are never given again
    bool fixed = false;
    std::size_t offset = 0; // of a fixed column, from the first byte after the row's number of columns
    std::size_t size = 0; // bytes of a fixed column
    std::size_t least = 0; // bytes without which a value of this type is none
    std::size_t variableIndex = 0; // among the columns of variable length, deleted ones included
    int scale = 0; // digits after the point of a fixed-point number
    bool asText = false; // a fixed-point number with more digits than a double holds
    QString name;
};

struct FreeTable {
    void operator()(MdbTableDef *table) const { mdb_free_tabledef(table); }
};

// A table as its definition pages describe it.
struct TableDefinition {
    jetfile::JetTable table;
    std::vector<Column> columns; // of table.columns, in that order
    quint32 page = 0; // the first page of its definition, which its data pages name as their owner
    std::unique_ptr<MdbCatalogEntry> entry; // what libmdb's table refers to
    std::unique_ptr<MdbTableDef, FreeTable> native;

    // Throws Damage when the definition makes no sense.
    static TableDefinition read(PageFile &file, quint32 page, const QString &name);
};

} // namespace jetreader
