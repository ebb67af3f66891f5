// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetPages.h"

#include <QString>
#include <QVariant>

namespace jetfile {

enum class JetType : quint8 {
    Boolean = 1,
    Byte = 2,
    Integer = 3,
    Long = 4,
    Currency = 5,
    Single = 6,
    Double = 7,
    Date = 8,
    Binary = 9,
    Text = 10,
    Ole = 11,
    Memo = 12,
    Guid = 15,
    Numeric = 16, // Jet 4 only
    AutoNumber = 0x84, // stored as a Long whose flags say so
};

struct JetColumn {
    QString name;
    JetType type = JetType::Text;
    int size = 0; // characters of a Text, bytes of a Binary (0: 255); digits of a Numeric (0: 18)
    int scale = 0; // digits of a Numeric behind the point
    bool compressed = true; // Jet 4 texts and memos: stored shorter where that is possible
};

constexpr bool isLongValue(JetType type)
{
    return type == JetType::Memo || type == JetType::Ole;
}
constexpr bool isVariable(JetType type)
{
    return isLongValue(type) || type == JetType::Text || type == JetType::Binary;
}
// Bytes of a value of fixed length; 0 for Boolean (it stands in the row's Null mask) and variable ones.
int fixedSize(JetType type);
// What the column's definition says about its length, in bytes.
int declaredSize(const JetColumn &column, JetVersion version);

// Text as Jet 3 stores it, in code page 1252, and as Jet 4 does: UTF-16, or with `compress` FF FE and then
// one byte a character for those of Latin-1, a byte 0 switching to two bytes a character and back; only where
// that is shorter. Throws std::invalid_argument for a character that the code page lacks.
QByteArray encodeText(const QString &text, JetVersion version, bool compress);

// Bytes of a value that is not Null and no Boolean. Takes for
//   whole numbers  int; Currency: qint64 of ten-thousandths; Single, Double: double (float)
//   Date           QDateTime (of any zone: its own clock counts), or the raw double
//   Guid           16 raw bytes, or a text of 32 digits in any punctuation
//   Numeric        text such as "-12.50"
//   texts          QString; Binary, Ole: QByteArray
QByteArray encodeValue(const JetColumn &column, const QVariant &value, JetVersion version);

// Days since 30/12/1899 with the time as a fraction that always counts forward, so that 29/12/1899 18:00 is
// -1.75.
double jetDate(const QDateTime &date);

// A row as it is put together from its parts: the values of fixed length at their places, then the variable
// ones, their offsets in reverse order and a mask of the columns that are not Null.
struct RowParts {
    int columnCount = 0; // ever defined in the table, deleted ones included
    QByteArray fixed;
    QList<QByteArray> variable;
    bool hasVariable = false; // the table has columns of variable length
    QByteArray mask; // a bit for each column
};
QByteArray assembleRow(const RowParts &parts, JetVersion version);

} // namespace jetfile
