// SPDX-License-Identifier: Apache-2.0
#include "values/JetValues.h"

#include <cmath>

namespace clivara::jet {
namespace {

constexpr int secondsPerDay = 86400;

// Up to three numbers with the separators between them, as "12/5/2024" or "10.30".
struct NumberGroup {
    int values[3] = {0, 0, 0};
    int digits[3] = {0, 0, 0};
    QChar separators[2];
    int count = 0;
};

std::optional<NumberGroup> numberGroup(QStringView text)
{
    NumberGroup group;
    qsizetype at = 0;
    while (group.count < 3) {
        const int i = group.count;
        while (at < text.size() && text[at] >= u'0' && text[at] <= u'9' && group.digits[i] < 5) {
            group.values[i] = group.values[i] * 10 + (text[at].unicode() - u'0');
            ++group.digits[i];
            ++at;
        }
        if (group.digits[i] == 0 || group.digits[i] > 4)
            return std::nullopt;
        ++group.count;
        if (at == text.size())
            return group;
        if (group.count == 3)
            return std::nullopt;
        group.separators[i] = text[at++];
    }
    return std::nullopt;
}

bool separatedBy(const NumberGroup &group, QStringView separators)
{
    for (int i = 0; i + 1 < group.count; ++i) {
        if (!separators.contains(group.separators[i]))
            return false;
    }
    return true;
}

std::optional<QTime> timeFromGroup(const NumberGroup &group)
{
    if (group.count < 2 || !separatedBy(group, u".:"))
        return std::nullopt;
    for (int i = 0; i < group.count; ++i) {
        if (group.digits[i] > 2)
            return std::nullopt;
    }
    const QTime time(group.values[0], group.values[1], group.values[2]);
    if (!time.isValid())
        return std::nullopt;
    return time;
}

std::optional<QDate> validDate(int year, int month, int day)
{
    const QDate date(year, month, day);
    if (year < 100 || year > 9999 || !date.isValid())
        return std::nullopt;
    return date;
}

std::optional<QDate> dateFromGroup(const NumberGroup &group, DateOrder order)
{
    if (group.count != 3 || !separatedBy(group, u"/-."))
        return std::nullopt;
    const int *v = group.values;
    if (group.digits[0] > 2) {
        if (group.digits[1] > 2 || group.digits[2] > 2)
            return std::nullopt;
        return validDate(v[0], v[1], v[2]);
    }
    int year = v[2];
    if (group.digits[2] <= 2)
        year += year < 30 ? 2000 : 1900;
    const bool dayFirst = order == DateOrder::DayFirst;
    const auto date = validDate(year, dayFirst ? v[1] : v[0], dayFirst ? v[0] : v[1]);
    return date ? date : validDate(year, dayFirst ? v[0] : v[1], dayFirst ? v[1] : v[0]);
}

// Writes at least `width` digits.
void appendPadded(QString &text, int value, int width)
{
    const QString digits = QString::number(value);
    for (qsizetype i = digits.size(); i < width; ++i)
        text += u'0';
    text += digits;
}

} // namespace

QDateTime dateTime(int year, int month, int day, int hour, int minute, int second)
{
    return dateTime(QDate(year, month, day), QTime(hour, minute, second));
}

QDateTime dateTime(QDate date, QTime time)
{
    return QDateTime(date, time, Qt::UTC);
}

QDateTime zeroDate()
{
    return dateTime(1899, 12, 30);
}

double serialFromDate(const QDateTime &date)
{
    // The fraction is the time of day on both sides of day zero: noon of the day before it is -1.5.
    const double days = double(QDate(1899, 12, 30).daysTo(date.date()));
    const double time = double(date.time().msecsSinceStartOfDay()) / (secondsPerDay * 1000.0);
    return days < 0 ? days - time : days + time;
}

QDateTime dateFromSerial(double serial)
{
    if (!(serial > -657435 && serial < 2958466))
        return {};
    const double days = std::trunc(serial);
    const double time = std::abs(serial - days);
    const QDateTime date =
        zeroDate().addDays(qint64(days)).addSecs(qint64(std::llround(time * secondsPerDay)));
    return date.date().year() > 9999 ? QDateTime() : date;
}

QString formatDate(const QDateTime &date, QStringView pattern)
{
    if (!date.isValid())
        return {};
    QString text;
    bool afterHours = false;
    for (qsizetype at = 0; at < pattern.size();) {
        const QChar letter = pattern[at].toLower();
        qsizetype run = 1;
        while (at + run < pattern.size() && pattern[at + run].toLower() == letter)
            ++run;
        const int width = run >= 2 ? 2 : 1;
        qsizetype taken = width;
        switch (letter.unicode()) {
        case u'd':
            appendPadded(text, date.date().day(), width);
            afterHours = false;
            break;
        case u'm':
            appendPadded(text, afterHours ? date.time().minute() : date.date().month(), width);
            afterHours = false;
            break;
        case u'y':
            if (run >= 4) {
                taken = 4;
                appendPadded(text, date.date().year(), 4);
            } else if (run >= 2) {
                appendPadded(text, date.date().year() % 100, 2);
            } else {
                text += pattern[at];
            }
            afterHours = false;
            break;
        case u'h':
            appendPadded(text, date.time().hour(), width);
            afterHours = true;
            break;
        case u'n':
            appendPadded(text, date.time().minute(), width);
            afterHours = false;
            break;
        case u's':
            appendPadded(text, date.time().second(), width);
            afterHours = false;
            break;
        default:
            taken = 1;
            text += pattern[at];
        }
        at += taken;
    }
    return text;
}

QString slashedDate(QDate date)
{
    return formatDate(dateTime(date), u"dd/mm/yyyy");
}

QString dashedDate(QDate date)
{
    return formatDate(dateTime(date), u"dd-mm-yyyy");
}

std::optional<QDateTime> dateFromText(QStringView text, DateOrder order)
{
    text = text.trimmed();
    const qsizetype blank = text.indexOf(u' ');
    const auto first = numberGroup(blank < 0 ? text : text.first(blank));
    if (!first)
        return std::nullopt;
    if (blank >= 0) {
        const auto second = numberGroup(text.mid(blank + 1).trimmed());
        if (!second)
            return std::nullopt;
        const auto date = dateFromGroup(*first, order);
        const auto time = timeFromGroup(*second);
        if (!date || !time)
            return std::nullopt;
        return dateTime(*date, *time);
    }
    if (const auto time = timeFromGroup(*first))
        return dateTime(QDate(1899, 12, 30), *time);
    if (const auto date = dateFromGroup(*first, order))
        return dateTime(*date);
    return std::nullopt;
}

QString storedDate(const QDateTime &date)
{
    QString text;
    if (!date.isValid())
        return text;
    text.reserve(19);
    appendPadded(text, date.date().year(), 4);
    text += u'-';
    appendPadded(text, date.date().month(), 2);
    text += u'-';
    appendPadded(text, date.date().day(), 2);
    text += u' ';
    appendPadded(text, date.time().hour(), 2);
    text += u':';
    appendPadded(text, date.time().minute(), 2);
    text += u':';
    appendPadded(text, date.time().second(), 2);
    return text;
}

QDateTime dateFromStored(QStringView text)
{
    const auto number = [text](qsizetype from, qsizetype length) {
        int value = 0;
        for (qsizetype i = from; i < from + length; ++i) {
            if (text[i] < u'0' || text[i] > u'9')
                return -1;
            value = value * 10 + (text[i].unicode() - u'0');
        }
        return value;
    };
    if (text.size() != 10 && text.size() != 19)
        return {};
    if (text[4] != u'-' || text[7] != u'-')
        return {};
    const QDate date(number(0, 4), number(5, 2), number(8, 2));
    if (!date.isValid() || date.year() < 0)
        return {};
    if (text.size() == 10)
        return dateTime(date);
    if ((text[10] != u' ' && text[10] != u'T') || text[13] != u':' || text[16] != u':')
        return {};
    const QTime time(number(11, 2), number(14, 2), number(17, 2));
    return time.isValid() ? dateTime(date, time) : QDateTime();
}

} // namespace clivara::jet
