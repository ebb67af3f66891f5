// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetTable.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace orvale {

// A field of the practice that gets values of the source.
struct PlannedColumn {
    dao::ColumnInfo target;
    int source = 0; // the position among the source's fields
    bool converts = false; // the source's field is of another kind: its values are converted one by one
};

// How one table of the source becomes one of the practice.
struct PlannedTable {
    QString name; // in the practice
    bool isKnown = false; // the practice has it by itself
    bool isChanged = false; // the practice's definition gives way to this one; always so for an unknown table
    QList<dao::ColumnInfo> columns; // the whole definition
    QList<dao::IndexInfo> indexes;
    QList<PlannedColumn> copied; // in the order of `columns`
    QStringList unknownFields, missingFields;
    QStringList notes; // Italian sentences: widened fields, changed names...
};

// The field that holds the values of both: the known one where that holds the source's, a wider one of the
// same kind otherwise (longer Text, Text to Memo, Integer to Long, Long to Double...). Empty when they are of
// different kinds; then the source's values have to be converted.
std::optional<dao::ColumnInfo> widened(const dao::ColumnInfo &known, const dao::ColumnInfo &source);

// Merges the definition of a table of the practice with the source's: known fields keep name, order and at
// least their width; unknown ones follow as they are, as do the source's further indexes.
PlannedTable planKnownTable(const dao::TableInfo &known, const jetfile::JetTable &source);
// A table that only the source has. `taken` are the names that the practice's database cannot give once more.
PlannedTable planUnknownTable(const jetfile::JetTable &source, const QStringList &taken);

// Names that belong to the practice's own machinery or to its databases.
bool isReservedTable(const QString &name);

} // namespace orvale
