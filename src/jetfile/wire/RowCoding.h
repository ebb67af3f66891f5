// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetTable.h"
#include "jetfile/wire/Wire.h"

// A row is one value for each column (a tag and what it asks for) and then the row's problem (a text, mostly empty).
namespace jetfile::wire {

enum class Tag : quint8 {
    Null,
    Integer, // qint32
    Double, // double
    False,
    True,
    Date, // qint64: seconds from 1/1/1970, without zone
    Latin, // quint32 count; characters below U+0100, one byte each
    Wide, // quint32 count; UTF-16 units
    Bytes, // quint32 count; bytes
    Guid // 16 bytes as the file holds them
};

// Seconds from 1/1/1970 of the first second that a date may stand for, and of the last one.
constexpr qint64 firstSecond = -59011459200; // 1/1/100
constexpr qint64 lastSecond = 253402300799; // 31/12/9999 23:59:59

void putValue(Writer &writer, Tag tag);
void putInteger(Writer &writer, qint32 number);
void putDouble(Writer &writer, double number);
void putDate(Writer &writer, qint64 seconds);
void putCharacters(Writer &writer, QStringView text);
void putLatin(Writer &writer, std::span<const uchar> text);
void putBytes(Writer &writer, std::span<const uchar> bytes);
void putGuid(Writer &writer, std::span<const uchar, 16> guid);

// Reads one row into `row`, whose room is used again. Throws Error when a value does not fit its column.
void takeRow(Reader &reader, const QList<dao::ColumnInfo> &columns, JetRow &row);

} // namespace jetfile::wire
