// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>
#include <QVariant>

namespace dao {
class Field;
}

namespace clivara {

// How values go into queries and fields of the clinical database.

// A text between quotes, those inside it doubled.
QString sqlText(const QString &text);
// What a date field gets; Null for an invalid date.
QVariant dateValue(QDate date);
// Sets a date field of the open edit buffer to a day; null is Null. A field that is of that day already is
// left with its hour, which other programs write.
void writeDay(dao::Field field, QDate day);
// What a long text's field gets: the text as it is, an empty one when it holds only blanks.
QString storedText(const QString &text);

} // namespace clivara
