// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>
#include <optional>

namespace clivara {

class Prompts;

struct DateCheckResult {
    bool valid = false;
    QString
        reason; // why day or month are refused; empty when valid and when only the form of the text is wrong
};

// Checks a typed date field by field: 8 characters (two-digit year) or 10 ("dd/mm/yyyy"), day first or month
// first. February has 28 days in the years divisible by 4 and 29 in the others: the reverse of the calendar,
// kept on purpose.
DateCheckResult checkDateText(const QString &text, bool dayFirst);

// A valid text with its year in four digits: years below 30 are of this century, "01/02/29" is "01/02/2029".
QString withFullYear(const QString &text);

// The day of the calendar that a text is, day first: "31-12-2026" or, with the year in two digits,
// "31/12/26". Empty when there is no such day. Unlike the check above it knows the leap years.
std::optional<QDate> calendarDay(const QString &text);

// The same as checkDateText, and tells the doctor what is wrong.
bool checkDate(const QString &text, bool dayFirst, Prompts &prompts);

} // namespace clivara
