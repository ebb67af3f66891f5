// SPDX-License-Identifier: Apache-2.0
#include "values/JetValues.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace clivara::jet {
namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n' || c == QChar::Nbsp;
}

// Length of the number that begins at `from`: sign, digits with a point, exponent; 0 when there is none.
qsizetype numberLength(QStringView text, qsizetype from)
{
    qsizetype at = from;
    const qsizetype size = text.size();
    if (at < size && (text[at] == u'+' || text[at] == u'-'))
        ++at;
    qsizetype digits = 0;
    for (; at < size && isDigit(text[at]); ++at)
        ++digits;
    if (at < size && text[at] == u'.') {
        qsizetype fraction = 0;
        for (qsizetype next = at + 1; next < size && isDigit(text[next]); ++next)
            ++fraction;
        if (digits + fraction > 0)
            at += 1 + fraction;
        digits += fraction;
    }
    if (digits == 0)
        return 0;
    if (at < size && (text[at] == u'e' || text[at] == u'E')) {
        qsizetype exponent = at + 1;
        if (exponent < size && (text[exponent] == u'+' || text[exponent] == u'-'))
            ++exponent;
        if (exponent < size && isDigit(text[exponent])) {
            while (exponent < size && isDigit(text[exponent]))
                ++exponent;
            at = exponent;
        }
    }
    return at - from;
}

// Empty when the number is too large (or too small) for a double. The text is one that numberLength measured.
std::optional<double> readNumber(QStringView number)
{
    if (number.startsWith(u'+'))
        number = number.mid(1);
    std::string ascii;
    ascii.reserve(size_t(number.size()));
    for (const QChar c : number)
        ascii.push_back(char(c.unicode()));
    double value = 0;
    const auto result = std::from_chars(ascii.data(), ascii.data() + ascii.size(), value);
    if (result.ec != std::errc())
        return std::nullopt;
    return value;
}

// A value's shortest decimal digits d1 d2 d3 ... with the value 0.d1d2d3... times 10 to the power `point`.
struct Decimal {
    std::string digits;
    int point = 0;
};

Decimal shortestDecimal(double magnitude)
{
    std::array<char, 32> buffer;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude, std::chars_format::scientific);
    const std::string text(buffer.data(), end.ptr);
    const size_t e = text.find('e');
    Decimal decimal;
    for (const char c : text.substr(0, e)) {
        if (c != '.')
            decimal.digits.push_back(c);
    }
    decimal.point = std::stoi(text.substr(e + 1)) + 1;
    return decimal;
}

// The whole part without leading zeros and `places` decimals, halves away from zero.
std::string roundedDigits(const Decimal &decimal, int places)
{
    std::string digits = decimal.digits;
    int point = decimal.point;
    if (point < 0) {
        // Zeros between the point and the first digit; more than can matter are not needed.
        const int zeros = std::min(-point, places + 1);
        digits.insert(0, size_t(zeros), '0');
        point = 0;
    }
    const size_t kept = size_t(point + places);
    const bool up = kept < digits.size() && digits[kept] >= '5';
    digits.resize(kept, '0');
    if (!up)
        return digits;
    for (size_t i = kept; i > 0; --i) {
        if (digits[i - 1] != '9') {
            ++digits[i - 1];
            return digits;
        }
        digits[i - 1] = '0';
    }
    return '1' + digits;
}

} // namespace

double leadingNumber(QStringView text)
{
    qsizetype at = 0;
    while (at < text.size() && isBlank(text[at]))
        ++at;
    const qsizetype length = numberLength(text, at);
    if (length == 0)
        return 0;
    return readNumber(text.mid(at, length)).value_or(0);
}

std::optional<double> numberFromText(QStringView text)
{
    while (!text.isEmpty() && isBlank(text.first()))
        text = text.mid(1);
    while (!text.isEmpty() && isBlank(text.last()))
        text.chop(1);
    const qsizetype length = numberLength(text, 0);
    if (length == 0 || length != text.size())
        return std::nullopt;
    return readNumber(text);
}

double roundHalfToEven(double value)
{
    return std::nearbyint(value);
}

std::optional<qint32> toLong(double value)
{
    const double rounded = roundHalfToEven(value);
    if (!(rounded >= std::numeric_limits<qint32>::min() && rounded <= std::numeric_limits<qint32>::max()))
        return std::nullopt;
    return qint32(rounded);
}

std::optional<qint16> toInteger(double value)
{
    const double rounded = roundHalfToEven(value);
    if (!(rounded >= std::numeric_limits<qint16>::min() && rounded <= std::numeric_limits<qint16>::max()))
        return std::nullopt;
    return qint16(rounded);
}

QString formatNumber(double value, QStringView pattern)
{
    if (!std::isfinite(value))
        return {};
    qsizetype first = 0;
    while (first < pattern.size() && pattern[first] != u'0')
        ++first;
    qsizetype whole = first;
    while (whole < pattern.size() && pattern[whole] == u'0')
        ++whole;
    if (whole == first)
        return pattern.toString();
    qsizetype last = whole;
    if (whole < pattern.size() && pattern[whole] == u'.') {
        ++last;
        while (last < pattern.size() && pattern[last] == u'0')
            ++last;
    }
    const int places = last > whole ? int(last - whole - 1) : 0;

    Decimal decimal = value == 0 ? Decimal() : shortestDecimal(std::abs(value));
    if (pattern.contains(u'%'))
        decimal.point += 2;
    std::string digits = roundedDigits(decimal, places);
    const size_t wanted = size_t(whole - first) + size_t(places);
    if (digits.size() < wanted)
        digits.insert(0, wanted - digits.size(), '0');
    if (places > 0)
        digits.insert(digits.size() - size_t(places), 1, '.');
    else if (last > whole)
        digits.push_back('.');
    const bool negative = value < 0 && digits.find_first_of("123456789") != std::string::npos;

    QString text;
    if (negative)
        text += u'-';
    text += pattern.first(first);
    text += QLatin1String(digits.data(), qsizetype(digits.size()));
    text += pattern.mid(last);
    return text;
}

QString numberText(double value)
{
    if (!std::isfinite(value))
        return {};
    if (value == 0)
        return QStringLiteral("0");
    const Decimal decimal = shortestDecimal(std::abs(value));
    std::string digits = decimal.digits;
    while (digits.size() > 1 && digits.back() == '0')
        digits.pop_back();
    const int size = int(digits.size());
    std::string text = value < 0 ? "-" : "";
    if (decimal.point > 15 || decimal.point < -5) {
        text += digits.substr(0, 1);
        if (size > 1)
            text += '.' + digits.substr(1);
        const int exponent = decimal.point - 1;
        text += exponent < 0 ? "E-" : "E+";
        if (std::abs(exponent) < 10)
            text += '0';
        text += std::to_string(std::abs(exponent));
    } else if (decimal.point <= 0) {
        text += "0." + std::string(size_t(-decimal.point), '0') + digits;
    } else if (size <= decimal.point) {
        text += digits + std::string(size_t(decimal.point - size), '0');
    } else {
        text += digits.substr(0, size_t(decimal.point)) + '.' + digits.substr(size_t(decimal.point));
    }
    return QString::fromStdString(text);
}

} // namespace clivara::jet
