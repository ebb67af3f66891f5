// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>
#include <QVariant>

namespace clivara {

// How values go into queries and fields of the clinical database.

// A text between quotes, those inside it doubled.
QString sqlText(const QString &text);
// What a date field gets; Null for an invalid date.
QVariant dateValue(QDate date);
// What a long text's field gets: the text as it is, an empty one when it holds only blanks.
QString storedText(const QString &text);

} // namespace clivara
