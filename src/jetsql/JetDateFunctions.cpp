// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Error.h"
#include "jetsql/JetFunctions.h"
#include "values/JetValues.h"

namespace dao::sql {
namespace {

namespace jet = clivara::jet;

qint32 whole(const QVariant &value)
{
    const auto number = jet::toLong(value.toDouble());
    if (!number)
        throwOverflow();
    return *number;
}

QVariant inRange(const QDateTime &date)
{
    if (!date.isValid() || date.date().year() < 100 || date.date().year() > 9999)
        throwInvalidCall();
    return date;
}

QVariant dateOrNull(Arguments a)
{
    const auto date = jet::dateFromText(a[0].toString());
    return date ? QVariant(*date) : QVariant();
}

QVariant dateFromText(Arguments a)
{
    const QVariant date = dateOrNull(a);
    if (!date.isValid())
        throw FunctionError{TypeMismatch, QStringLiteral("Il testo non è una data")};
    return date;
}

// What a text gives in a date field: an empty one is Null.
QVariant assignedDate(Arguments a)
{
    if (a[0].toString().trimmed().isEmpty())
        return {};
    const QVariant date = dateOrNull(a);
    if (!date.isValid())
        throw FunctionError{ConversionError, QStringLiteral("Il testo non è una data")};
    return date;
}

QVariant dateFromSerial(Arguments a)
{
    return inRange(jet::dateFromSerial(a[0].toDouble()));
}

QVariant serial(Arguments a)
{
    const double days = jet::serialFromDate(a[0].toDateTime());
    return days == double(qlonglong(days)) ? QVariant(qlonglong(days)) : QVariant(days);
}

QVariant isDateText(Arguments a)
{
    return a[0].isValid() && jet::dateFromText(a[0].toString()).has_value();
}

QVariant shown(Arguments a)
{
    return dateText(a[0].toDateTime());
}

QVariant formatDate(Arguments a)
{
    return jet::formatDate(a[0].toDateTime(), a[1].toString());
}

QVariant dateValue(Arguments a)
{
    return jet::dateTime(a[0].toDateTime().date());
}

QVariant timeValue(Arguments a)
{
    return jet::dateTime(jet::zeroDate().date(), a[0].toDateTime().time());
}

// Months beyond 12 and days beyond the month's end carry over; years below 100 are of this century or the
// last.
QVariant dateSerial(Arguments a)
{
    qint32 year = whole(a[0]);
    if (year >= 0 && year < 100)
        year += year < 30 ? 2000 : 1900;
    const qint32 month = whole(a[1]);
    const qint32 day = whole(a[2]);
    if (year < 100 || year > 9999 || qAbs(month) > 120000 || qAbs(day) > 4000000)
        throwInvalidCall();
    return inRange(jet::dateTime(year, 1, 1).addMonths(month - 1).addDays(day - 1));
}

QVariant timeSerial(Arguments a)
{
    const qint64 seconds = qint64(whole(a[0])) * 3600 + qint64(whole(a[1])) * 60 + whole(a[2]);
    return inRange(jet::zeroDate().addSecs(seconds));
}

QVariant year(Arguments a)
{
    return qlonglong(a[0].toDateTime().date().year());
}

QVariant month(Arguments a)
{
    return qlonglong(a[0].toDateTime().date().month());
}

QVariant day(Arguments a)
{
    return qlonglong(a[0].toDateTime().date().day());
}

QVariant hour(Arguments a)
{
    return qlonglong(a[0].toDateTime().time().hour());
}

QVariant minute(Arguments a)
{
    return qlonglong(a[0].toDateTime().time().minute());
}

QVariant second(Arguments a)
{
    return qlonglong(a[0].toDateTime().time().second());
}

// 1 is the first day of the week; days are numbered 1 Sunday to 7 Saturday.
int weekdayNumber(QDate date, qint32 firstDay)
{
    const int fromSunday = date.dayOfWeek() % 7 + 1;
    return (fromSunday - firstDay + 7) % 7 + 1;
}

qint32 firstDayOfWeek(Arguments a, size_t position)
{
    const qint32 first = a.size() > position ? whole(a[position]) : 1;
    if (first < 1 || first > 7)
        throwInvalidCall();
    return first;
}

QVariant weekday(Arguments a)
{
    return qlonglong(weekdayNumber(a[0].toDateTime().date(), firstDayOfWeek(a, 1)));
}

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval interval(const QVariant &name)
{
    const QString text = name.toString().toLower();
    const std::pair<QStringView, Interval> names[] = {
        {u"yyyy", Interval::Year},   {u"q", Interval::Quarter}, {u"m", Interval::Month},
        {u"y", Interval::DayOfYear}, {u"d", Interval::Day},     {u"w", Interval::Weekday},
        {u"ww", Interval::Week},     {u"h", Interval::Hour},    {u"n", Interval::Minute},
        {u"s", Interval::Second},
    };
    for (const auto &[known, value] : names) {
        if (text == known)
            return value;
    }
    throwInvalidCall();
}

int quarter(QDate date)
{
    return (date.month() - 1) / 3;
}

qint64 days(const QDateTime &date)
{
    return date.date().toJulianDay();
}

qint64 floorDivide(qint64 a, qint64 b)
{
    return a >= 0 ? a / b : -((-a + b - 1) / b);
}

// Seconds since Julian day 0.
qint64 seconds(const QDateTime &date)
{
    return days(date) * 86400 + date.time().msecsSinceStartOfDay() / 1000;
}

// The boundaries crossed from the first date to the second.
QVariant dateDiff(Arguments a)
{
    const QDateTime from = a[1].toDateTime();
    const QDateTime to = a[2].toDateTime();
    const qint64 years = to.date().year() - from.date().year();
    switch (interval(a[0])) {
    case Interval::Year:
        return qlonglong(years);
    case Interval::Quarter:
        return qlonglong(years * 4 + quarter(to.date()) - quarter(from.date()));
    case Interval::Month:
        return qlonglong(years * 12 + to.date().month() - from.date().month());
    case Interval::DayOfYear:
    case Interval::Day:
        return qlonglong(days(to) - days(from));
    case Interval::Weekday: // whole weeks
        return qlonglong((days(to) - days(from)) / 7);
    case Interval::Week: { // first days of the week crossed
        const qint32 first = firstDayOfWeek(a, 3);
        const auto week = [first](const QDateTime &date) {
            return days(date) - weekdayNumber(date.date(), first);
        };
        return qlonglong((week(to) - week(from)) / 7);
    }
    case Interval::Hour:
        return qlonglong(floorDivide(seconds(to), 3600) - floorDivide(seconds(from), 3600));
    case Interval::Minute:
        return qlonglong(floorDivide(seconds(to), 60) - floorDivide(seconds(from), 60));
    case Interval::Second:
        return qlonglong(seconds(to) - seconds(from));
    }
    return {};
}

// By months clipped to the month's end.
QVariant dateAdd(Arguments a)
{
    const Interval unit = interval(a[0]);
    const qint32 number = whole(std::trunc(a[1].toDouble()));
    const QDateTime date = a[2].toDateTime();
    const qint64 most = 4000000; // more days than the years 100 to 9999 have
    const auto months = [&](int each) {
        if (qAbs(qint64(number) * each) > 120000)
            throwInvalidCall();
        return inRange(date.addMonths(number * each));
    };
    switch (unit) {
    case Interval::Year:
        return months(12);
    case Interval::Quarter:
        return months(3);
    case Interval::Month:
        return months(1);
    case Interval::DayOfYear:
    case Interval::Day:
    case Interval::Weekday:
        return qAbs(number) > most ? QVariant(inRange({})) : inRange(date.addDays(number));
    case Interval::Week:
        return qAbs(number) > most / 7 ? QVariant(inRange({})) : inRange(date.addDays(qint64(number) * 7));
    case Interval::Hour:
        return inRange(date.addSecs(qint64(number) * 3600));
    case Interval::Minute:
        return inRange(date.addSecs(qint64(number) * 60));
    case Interval::Second:
        return inRange(date.addSecs(number));
    }
    return {};
}

QVariant datePart(Arguments a)
{
    const QDateTime date = a[1].toDateTime();
    switch (interval(a[0])) {
    case Interval::Year:
        return qlonglong(date.date().year());
    case Interval::Quarter:
        return qlonglong(quarter(date.date()) + 1);
    case Interval::Month:
        return qlonglong(date.date().month());
    case Interval::DayOfYear:
        return qlonglong(date.date().dayOfYear());
    case Interval::Day:
        return qlonglong(date.date().day());
    case Interval::Weekday:
        return qlonglong(weekdayNumber(date.date(), firstDayOfWeek(a, 2)));
    case Interval::Week: { // the week of 1 January is the first
        const qint32 first = firstDayOfWeek(a, 2);
        const QDate newYear(date.date().year(), 1, 1);
        return qlonglong((date.date().dayOfYear() - 1 + weekdayNumber(newYear, first) - 1) / 7 + 1);
    }
    case Interval::Hour:
        return qlonglong(date.time().hour());
    case Interval::Minute:
        return qlonglong(date.time().minute());
    case Interval::Second:
        return qlonglong(date.time().second());
    }
    return {};
}

constexpr Function functionTable[] = {
    {u"year", "d", FieldType::Long, year},
    {u"month", "d", FieldType::Long, month},
    {u"day", "d", FieldType::Long, day},
    {u"hour", "d", FieldType::Long, hour},
    {u"minute", "d", FieldType::Long, minute},
    {u"second", "d", FieldType::Long, second},
    {u"weekday", "d|n", FieldType::Long, weekday},
    {u"datevalue", "d", FieldType::Date, dateValue},
    {u"timevalue", "d", FieldType::Date, timeValue},
    {u"dateserial", "nnn", FieldType::Date, dateSerial},
    {u"timeserial", "nnn", FieldType::Date, timeSerial},
    {u"datediff", "tdd|n", FieldType::Long, dateDiff},
    {u"dateadd", "tnd", FieldType::Date, dateAdd},
    {u"datepart", "td|n", FieldType::Long, datePart},
    {u"datefromtext", "t", FieldType::Date, dateFromText, Internal},
    {u"dateornull", "t", FieldType::Date, dateOrNull, Internal},
    {u"assigneddate", "t", FieldType::Date, assignedDate, Internal},
    {u"datefromserial", "n", FieldType::Date, dateFromSerial, Internal},
    {u"serial", "d", FieldType::Double, serial, Internal},
    {u"isdatetext", "t", FieldType::Boolean, isDateText, Internal | TakesNull},
    {u"datetext", "d", FieldType::Text, shown, Internal},
    {u"formatdate", "dt", FieldType::Text, formatDate, Internal},
};

} // namespace

QString dateText(const QDateTime &date)
{
    if (date.date() == jet::zeroDate().date())
        return jet::formatDate(date, u"hh:nn:ss");
    return jet::formatDate(date, date.time() == QTime(0, 0) ? u"dd/mm/yyyy" : u"dd/mm/yyyy hh:nn:ss");
}

const std::span<const Function> &dateFunctions()
{
    static constexpr std::span<const Function> table(functionTable);
    return table;
}

} // namespace dao::sql
