// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringView>
#include <QUtf8StringView>
#include <optional>

// The value rules of the practice's databases, as the doctors' records were written with them: how a text is
// read as a number or a date, how numbers are rounded and how both are shown. Everything here is pure: no
// clock, no database, no locale. The data engine, the forms' rules and the controls all use this one copy.
namespace clivara::jet {

// Dates have no time zone. They are kept as QDateTime in UTC so that no local clock change makes an hour
// vanish.
QDateTime dateTime(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
QDateTime dateTime(QDate date, QTime time = QTime(0, 0));

// Day zero of the date count: 30/12/1899.
QDateTime zeroDate();

// Days (and the fraction of a day) since day zero; the inverse of dateFromSerial.
double serialFromDate(const QDateTime &date);
// Invalid when the serial is outside the years 100 to 9999.
QDateTime dateFromSerial(double serial);

// Reads the number a text begins with: leading blanks are skipped, a sign, digits, a decimal point and an
// exponent are taken, and reading stops at the first character that is no part of a number (a comma
// included). 0 when the text begins with no number. Never infinite: too large a number gives 0.
double leadingNumber(QStringView text);

// Reads a whole text as a number (blanks around it allowed, point as separator); empty when it is not one.
std::optional<double> numberFromText(QStringView text);

// To the nearest whole number, halves to the even one.
double roundHalfToEven(double value);
// Rounded half to even; empty outside the range of a 32-bit integer.
std::optional<qint32> toLong(double value);
// Rounded half to even; empty outside the range of a 16-bit integer.
std::optional<qint16> toInteger(double value);

// Shows a number by one of the patterns "0", "0.0", "0.00", ... and "0.0%" (the value times 100); text around
// the digits is kept as it stands ("0.0 mg/dl"). Halves of the decimal value as written (17 significant
// digits shortened to the shortest text that reads back equal) go away from zero: 2.675 by "0.00" is "2.68".
// The separator is a point. A result of nothing but zeros has no sign. A value that is not finite gives an
// empty text, a pattern without digits the pattern itself.
QString formatNumber(double value, QStringView pattern);

// The shortest text that reads back as the same number: "3", "-0.5", "1E+20" from 1e15 on.
QString numberText(double value);

// Shows a date by a pattern of dd, d, mm, m, yyyy, yy, hh, h, nn, n, ss, s ("mm" next to hours is minutes, as
// in "hh:mm:ss"); other characters stand for themselves. An invalid date gives an empty text.
QString formatDate(const QDateTime &date, QStringView pattern);
// The date as lists and queries show it, "dd/mm/yyyy", and as date fields do, "dd-mm-yyyy"; empty when there
// is none.
QString slashedDate(QDate date);
QString dashedDate(QDate date);

enum class DateOrder { DayFirst, MonthFirst };

// Reads a date as people and queries write it: d/m/yyyy, dd/mm/yy (below 30 is 2000 and on), yyyy/m/d, with
// the separators '/', '-', '.'; an optional time with ':' or '.', or a time alone (on day zero). Day first;
// when that cannot be a date but month first can, month first (the other way round for MonthFirst). Three
// short groups between points are a time when they can be one ("0.00.00"), else a date ("25.12.24"). Empty
// when the text is no date.
std::optional<QDateTime> dateFromText(QStringView text, DateOrder order = DateOrder::DayFirst);

// The form in which dates are stored and compared: "YYYY-MM-DD HH:MM:SS"; empty for an invalid date.
QString storedDate(const QDateTime &date);
// Reads a stored date ("YYYY-MM-DD", with or without a time); invalid when it is not one.
QDateTime dateFromStored(QStringView text);

// Compares texts without regard to case, accents kept apart ("Nicolò" equals "NICOLÒ", not "Nicolo"). A
// letter with an accent is ordered with its plain letter: "e" < "è" < "ea" < "z". Negative, zero or positive.
int compareText(QStringView a, QStringView b);
int compareText(QUtf8StringView a, QUtf8StringView b);
inline bool sameText(QStringView a, QStringView b)
{
    return compareText(a, b) == 0;
}

// True when the text matches the pattern: '*' any text, '?' one character, '#' one digit, [a-c] one of,
// [!a-c] none of; a bracketed special character is literal. Without regard to case.
// A pattern with an unclosed bracket matches nothing.
bool like(QStringView text, QStringView pattern);

} // namespace clivara::jet
