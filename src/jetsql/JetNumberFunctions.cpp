// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Error.h"
#include "jetsql/JetFunctions.h"
#include "values/JetValues.h"

#include <cmath>

namespace dao::sql {
namespace {

namespace jet = clivara::jet;

QVariant finite(double value)
{
    if (!std::isfinite(value))
        throwOverflow();
    return value;
}

bool isWhole(const QVariant &value)
{
    return value.typeId() == QMetaType::LongLong;
}

qint32 longFrom(const QVariant &value)
{
    const auto whole = jet::toLong(value.toDouble());
    if (!whole)
        throwOverflow();
    return *whole;
}

template <typename Sum>
QVariant arithmetic(Arguments a, bool (*whole)(qlonglong, qlonglong, qlonglong *), Sum operation)
{
    qlonglong result = 0;
    if (isWhole(a[0]) && isWhole(a[1]) && !whole(a[0].toLongLong(), a[1].toLongLong(), &result))
        return result;
    return finite(operation(a[0].toDouble(), a[1].toDouble()));
}

QVariant add(Arguments a)
{
    return arithmetic(a, qAddOverflow<qlonglong>, std::plus<double>());
}

QVariant subtract(Arguments a)
{
    return arithmetic(a, qSubOverflow<qlonglong>, std::minus<double>());
}

QVariant multiply(Arguments a)
{
    return arithmetic(a, qMulOverflow<qlonglong>, std::multiplies<double>());
}

double divisor(const QVariant &value)
{
    const double number = value.toDouble();
    if (number == 0)
        throw FunctionError{DivisionByZero, QStringLiteral("Divisione per zero")};
    return number;
}

QVariant divide(Arguments a)
{
    return finite(a[0].toDouble() / divisor(a[1]));
}

QVariant integerDivide(Arguments a)
{
    const qint32 by = longFrom(a[1]);
    divisor(by);
    return qlonglong(longFrom(a[0])) / by;
}

QVariant modulo(Arguments a)
{
    const qint32 by = longFrom(a[1]);
    divisor(by);
    return qlonglong(longFrom(a[0])) % by;
}

QVariant power(Arguments a)
{
    const double base = a[0].toDouble();
    const double exponent = a[1].toDouble();
    if ((base < 0 && exponent != std::trunc(exponent)) || (base == 0 && exponent < 0))
        throwInvalidCall();
    return finite(std::pow(base, exponent));
}

QVariant negate(Arguments a)
{
    return isWhole(a[0]) && a[0].toLongLong() != std::numeric_limits<qlonglong>::min()
               ? QVariant(-a[0].toLongLong())
               : QVariant(-a[0].toDouble());
}

QVariant abs(Arguments a)
{
    return isWhole(a[0]) ? QVariant(qAbs(a[0].toLongLong())) : QVariant(std::abs(a[0].toDouble()));
}

QVariant sgn(Arguments a)
{
    const double value = a[0].toDouble();
    return qlonglong((value > 0) - (value < 0));
}

QVariant floor(Arguments a)
{
    return isWhole(a[0]) ? a[0] : QVariant(std::floor(a[0].toDouble()));
}

QVariant fix(Arguments a)
{
    return isWhole(a[0]) ? a[0] : QVariant(std::trunc(a[0].toDouble()));
}

// To a number of decimals, halves of the decimal value to the even digit.
double roundDecimals(double value, int places)
{
    const QString up = jet::formatNumber(
        std::abs(value), places > 0 ? QStringLiteral("0.") + QString(places, u'0') : QStringLiteral("0"));
    const double away = jet::leadingNumber(up);
    const QString shortest = QString::number(std::abs(value), 'f', QLocale::FloatingPointShortest);
    const qsizetype point = shortest.indexOf(u'.');
    // Exactly half: one digit 5 after the places that stay.
    const bool half = point >= 0 && shortest.size() == point + places + 2 && shortest.back() == u'5';
    double rounded = away;
    if (half) {
        QString kept = shortest.left(point + places + (places > 0 ? 1 : 0));
        if ((kept.back().unicode() - u'0') % 2 == 0)
            rounded = jet::leadingNumber(kept);
    }
    return std::signbit(value) ? -rounded : rounded;
}

QVariant round(Arguments a)
{
    const qint32 places = a.size() > 1 ? longFrom(a[1]) : 0;
    if (places < 0)
        throwInvalidCall();
    return isWhole(a[0]) ? a[0] : QVariant(roundDecimals(a[0].toDouble(), std::min(places, 20)));
}

QVariant sqr(Arguments a)
{
    if (a[0].toDouble() < 0)
        throwInvalidCall();
    return std::sqrt(a[0].toDouble());
}

QVariant exp(Arguments a)
{
    return finite(std::exp(a[0].toDouble()));
}

QVariant log(Arguments a)
{
    if (a[0].toDouble() <= 0)
        throwInvalidCall();
    return std::log(a[0].toDouble());
}

QVariant cint(Arguments a)
{
    const auto value = jet::toInteger(a[0].toDouble());
    if (!value)
        throwOverflow();
    return qlonglong(*value);
}

QVariant clng(Arguments a)
{
    return qlonglong(longFrom(a[0]));
}

QVariant cbyte(Arguments a)
{
    const auto value = jet::toInteger(a[0].toDouble());
    if (!value || *value < 0 || *value > 255)
        throwOverflow();
    return qlonglong(*value);
}

QVariant cdbl(Arguments a)
{
    return a[0].toDouble();
}

QVariant csng(Arguments a)
{
    const auto value = float(a[0].toDouble());
    if (!std::isfinite(value))
        throwOverflow();
    return double(value);
}

QVariant ccur(Arguments a)
{
    if (std::abs(a[0].toDouble()) > 922337203685477.5)
        throwOverflow();
    return roundDecimals(a[0].toDouble(), 4);
}

QVariant cbool(Arguments a)
{
    return a[0].toDouble() != 0;
}

QVariant val(Arguments a)
{
    return jet::leadingNumber(a[0].toString());
}

QVariant numberOrNull(Arguments a)
{
    const auto value = jet::numberFromText(a[0].toString());
    return value ? QVariant(*value) : QVariant();
}

QVariant number(Arguments a)
{
    const QVariant value = numberOrNull(a);
    if (!value.isValid())
        throw FunctionError{TypeMismatch, QStringLiteral("Il testo non è un numero")};
    return value;
}

// What a text gives in a number field: an empty one is Null.
QVariant assignedNumber(Arguments a)
{
    if (a[0].toString().trimmed().isEmpty())
        return {};
    const QVariant value = numberOrNull(a);
    if (!value.isValid())
        throw FunctionError{ConversionError, QStringLiteral("Il testo non è un numero")};
    return value;
}

QVariant isNumericText(Arguments a)
{
    return a[0].isValid() && jet::numberFromText(a[0].toString()).has_value();
}

QString shown(const QVariant &value)
{
    return isWhole(value) ? QString::number(value.toLongLong()) : jet::numberText(value.toDouble());
}

QVariant numberText(Arguments a)
{
    return shown(a[0]);
}

QVariant str(Arguments a)
{
    return a[0].toDouble() < 0 ? shown(a[0]) : u' ' + shown(a[0]);
}

QVariant formatNumber(Arguments a)
{
    return jet::formatNumber(a[0].toDouble(), a[1].toString());
}

constexpr Function functionTable[] = {
    {u"add", "nn", FieldType::Double, add, Internal, u"+"},
    {u"subtract", "nn", FieldType::Double, subtract, Internal, u"-"},
    {u"multiply", "nn", FieldType::Double, multiply, Internal, u"*"},
    {u"divide", "nn", FieldType::Double, divide, Internal},
    {u"integerdivide", "nn", FieldType::Long, integerDivide, Internal},
    {u"modulo", "nn", FieldType::Long, modulo, Internal},
    {u"power", "nn", FieldType::Double, power, Internal},
    {u"negate", "n", FieldType::Double, negate, Internal, u"-"},
    {u"abs", "n", FieldType::Double, abs, KeepsNumber},
    {u"sgn", "n", FieldType::Long, sgn},
    {u"int", "n", FieldType::Double, floor, KeepsNumber},
    {u"fix", "n", FieldType::Double, fix, KeepsNumber},
    {u"round", "n|n", FieldType::Double, round, KeepsNumber},
    {u"sqr", "n", FieldType::Double, sqr},
    {u"exp", "n", FieldType::Double, exp},
    {u"log", "n", FieldType::Double, log},
    {u"cint", "n", FieldType::Integer, cint},
    {u"clng", "n", FieldType::Long, clng},
    {u"cbyte", "n", FieldType::Byte, cbyte},
    {u"cdbl", "n", FieldType::Double, cdbl},
    {u"csng", "n", FieldType::Single, csng},
    {u"ccur", "n", FieldType::Currency, ccur},
    {u"cbool", "n", FieldType::Boolean, cbool},
    {u"val", "t", FieldType::Double, val},
    {u"str", "n", FieldType::Text, str},
    {u"number", "t", FieldType::Double, number, Internal},
    {u"numberornull", "t", FieldType::Double, numberOrNull, Internal},
    {u"assignednumber", "t", FieldType::Double, assignedNumber, Internal},
    {u"isnumerictext", "t", FieldType::Boolean, isNumericText, Internal | TakesNull},
    {u"numbertext", "n", FieldType::Text, numberText, Internal},
    {u"formatnumber", "nt", FieldType::Text, formatNumber, Internal},
};

} // namespace

const std::span<const Function> &numberFunctions()
{
    static constexpr std::span<const Function> table(functionTable);
    return table;
}

} // namespace dao::sql
