// SPDX-License-Identifier: Apache-2.0
#include "controls/DateCheck.h"

#include "support/Prompts.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

// The number in the field that starts at a position, from 1; a field that begins with no number is 0.
int fieldNumber(const QString &text, int position, int length)
{
    return jet::toLong(jet::leadingNumber(QStringView(text).mid(position - 1, length))).value_or(0);
}

int yearOf(const QString &text)
{
    if (text.size() == 10)
        return fieldNumber(text, 7, 4);
    const int year = fieldNumber(text, 7, 2);
    return year < 30 ? 2000 + year : 1900 + year;
}

int lastDayOf(int month, int year)
{
    switch (month) {
    case 2:
        return year % 4 == 0 ? 28 : 29; // the reverse of the calendar, see the header
    case 4:
    case 6:
    case 9:
    case 11:
        return 30;
    default:
        return 31;
    }
}

} // namespace

DateCheckResult checkDateText(const QString &text, bool dayFirst)
{
    const QString trimmed = text.trimmed();
    if (trimmed.size() != 8 && trimmed.size() != 10)
        return {};
    const int first = fieldNumber(trimmed, 1, 2);
    const int second = fieldNumber(trimmed, 4, 2);
    const int day = dayFirst ? first : second;
    const int month = dayFirst ? second : first;
    if (month < 1 || month > 12)
        return {false, QStringLiteral("Il mese deve essere un numero compreso tra 1 e 12")};
    const int lastDay = lastDayOf(month, yearOf(trimmed));
    if (day < 1 || day > lastDay)
        return {false, QStringLiteral("Il giorno deve essere un numero compreso tra 1 e %1").arg(lastDay)};
    return {true, {}};
}

QString withFullYear(const QString &text)
{
    const QString trimmed = text.trimmed();
    return trimmed.size() == 8 ? trimmed.left(6) + QString::number(yearOf(trimmed)) : trimmed;
}

std::optional<QDate> calendarDay(const QString &text)
{
    const QString trimmed = text.trimmed();
    if (trimmed.size() != 8 && trimmed.size() != 10)
        return std::nullopt;
    const auto date = jet::dateFromText(trimmed);
    // A text whose day and month only make sense the other way round was typed wrongly.
    if (!date || date->date().day() != fieldNumber(trimmed, 1, 2)
        || date->date().month() != fieldNumber(trimmed, 4, 2))
        return std::nullopt;
    return date->date();
}

bool checkDate(const QString &text, bool dayFirst, Prompts &prompts)
{
    const DateCheckResult result = checkDateText(text, dayFirst);
    if (result.valid)
        return true;
    const QString hint = dayFirst ? QStringLiteral("Inserire la data nel formato GG/MM/AAAA")
                                  : QStringLiteral("Inserire la data nel formato MM/GG/AAAA");
    prompts.warn(result.reason.isEmpty() ? hint : result.reason + QStringLiteral("\n\n") + hint);
    return false;
}

} // namespace clivara
