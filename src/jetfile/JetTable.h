// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Catalog.h"

#include <QList>
#include <QString>
#include <QVariantList>

namespace jetfile {

// A user table of a Jet file, as its definition pages describe it. Field types are the engine's: long binary
// objects are Binary, a fixed-point number is a Double of up to 15 digits and a Text of its digits beyond. A
// field counts as required when an index forbids it to be Null; what the design says beyond that is not read.
struct JetTable {
    QString name;
    QList<dao::ColumnInfo> columns; // in the order of the table's design
    QList<dao::IndexInfo> indexes; // without those that only serve relations between tables
    qint64 declaredRows = 0; // what the file itself says that it holds
    qint64 lastAutoNumber = 0; // the highest number ever given by the autonumber field; 0 when it has none
};

// One live row. Values stand in the order of the columns: int (Byte, Integer, Long, AutoNumber), double
// (Currency, Single, Double), bool, QDateTime (UTC, standing for a date without zone, whole seconds),
// QString, QByteArray; an invalid variant is Null, and an empty text is an empty text. A GUID is 38
// characters in braces, upper-case. A date outside the years 100 to 9999 comes as the double that the file
// holds.
struct JetRow {
    QVariantList values;
    QString problem; // why some of the values could not be read (those are Null here); empty for a whole row
};

} // namespace jetfile
