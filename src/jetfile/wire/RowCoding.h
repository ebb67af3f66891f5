// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetTable.h"
#include "jetfile/wire/Wire.h"

// A row is one value for each column (a tag and what it asks for) and then the row's problem (a text, mostly
// empty).
namespace jetfile::wire {

enum class Tag : quint8 {
    Null,
    Integer, // qint32
    Double, // double
    False,
    True,
    Date, // qint64: seconds from 1/1/1970, without zone
    Text, // QString
    Bytes, // QByteArray
    Guid // QUuid
};

// Seconds from 1/1/1970 of the first second that a date may stand for, and of the last one.
constexpr qint64 firstSecond = -59011459200; // 1/1/100
constexpr qint64 lastSecond = 253402300799; // 31/12/9999 23:59:59

// Reads one row into `row`, whose memory is used again. Throws Error when a value does not fit its column.
void takeRow(Reader &reader, const QList<dao::ColumnInfo> &columns, JetRow &row);

} // namespace jetfile::wire
