// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>

namespace clivara {

// Dates of a sheet: "dd/mm/yyyy" where people see them, "ddmmyyyy" in the sheet's data string.

// "dd/mm/yyyy" to "ddmmyyyy", by the places of the characters.
QString StrData2woBars(const QString &text);
// "ddmmyyyy" to "dd/mm/yyyy".
QString StrData2wBars(const QString &text);
// "ddmmyyyy" to a date; null when it is no day of the calendar.
QDate StrDatawoBars2Data(const QString &text);

} // namespace clivara
