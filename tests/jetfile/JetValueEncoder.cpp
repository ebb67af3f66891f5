// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetValueEncoder.h"

#include <QDateTime>
#include <array>
#include <bit>
#include <cmath>
#include <stdexcept>

namespace jetfile {

namespace {

// Code page 1252 where it differs from Latin-1: 0x80 to 0x9F; 0 for the five codes without a character.
constexpr std::array<char16_t, 32> windowsCharacters{
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

QByteArray windowsText(const QString &text)
{
    QByteArray bytes;
    for (const QChar character : text) {
        const char16_t code = character.unicode();
        if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
            bytes.append(char(code));
            continue;
        }
        const auto found = std::find(windowsCharacters.begin(), windowsCharacters.end(), code);
        if (found == windowsCharacters.end())
            throw std::invalid_argument("a character that code page 1252 lacks");
        bytes.append(char(0x80 + (found - windowsCharacters.begin())));
    }
    return bytes;
}

QByteArray plainText(const QString &text)
{
    ByteSink sink;
    for (const QChar character : text)
        sink.u16(character.unicode());
    return sink.bytes();
}

// Empty when the text cannot be compressed: a character whose low byte is 0 would be taken for a switch.
QByteArray compressedText(const QString &text)
{
    ByteSink sink;
    sink.u8(0xFF).u8(0xFE);
    bool narrow = true;
    for (const QChar character : text) {
        const char16_t code = character.unicode();
        if ((code & 0xFF) == 0)
            return {};
        if (narrow != (code <= 0xFF)) {
            sink.u8(0);
            narrow = !narrow;
        }
        narrow ? sink.u8(code) : sink.u16(code);
    }
    return sink.bytes();
}

QByteArray guidBytes(const QVariant &value)
{
    if (value.typeId() == QMetaType::QByteArray)
        return value.toByteArray();
    const QByteArray digits = QByteArray::fromHex(value.toString().toLatin1()); // skips the punctuation
    if (digits.size() != 16)
        throw std::invalid_argument("no GUID");
    // The first three groups are stored as little-endian numbers.
    QByteArray bytes;
    for (const int index : {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15})
        bytes.append(digits[index]);
    return bytes;
}

// A sign byte, then a 128-bit number as four groups of 32 bits, the highest first, each little-endian.
QByteArray numericBytes(const QString &text, int scale)
{
    const bool negative = text.startsWith(QLatin1Char('-'));
    QString digits = negative ? text.mid(1) : text;
    const qsizetype point = digits.indexOf(QLatin1Char('.'));
    const qsizetype decimals = point < 0 ? 0 : digits.size() - point - 1;
    if (decimals > scale)
        throw std::invalid_argument("more decimals than the column takes");
    digits.remove(QLatin1Char('.')).append(QString(scale - decimals, QLatin1Char('0')));
    std::array<quint32, 4> groups{}; // the lowest first
    for (const QChar digit : std::as_const(digits)) {
        quint64 carry = quint64(digit.digitValue());
        for (quint32 &group : groups) {
            carry += quint64(group) * 10;
            group = quint32(carry);
            carry >>= 32;
        }
    }
    ByteSink sink;
    sink.u8(negative ? 0x80 : 0);
    for (auto group = groups.rbegin(); group != groups.rend(); ++group)
        sink.u32(*group);
    return sink.bytes();
}

} // namespace

int fixedSize(JetType type)
{
    switch (type) {
    case JetType::Byte:
        return 1;
    case JetType::Integer:
        return 2;
    case JetType::Long:
    case JetType::AutoNumber:
    case JetType::Single:
        return 4;
    case JetType::Currency:
    case JetType::Double:
    case JetType::Date:
        return 8;
    case JetType::Guid:
        return 16;
    case JetType::Numeric:
        return 17;
    default:
        return 0;
    }
}

int declaredSize(const JetColumn &column, JetVersion version)
{
    const int size = column.size == 0 ? 255 : column.size;
    switch (column.type) {
    case JetType::Boolean:
        return 1;
    case JetType::Text:
        return version == JetVersion::Jet3 ? size : 2 * size;
    case JetType::Binary:
        return size;
    default:
        return fixedSize(column.type);
    }
}

QByteArray encodeText(const QString &text, JetVersion version, bool compress)
{
    if (version == JetVersion::Jet3)
        return windowsText(text);
    const QByteArray plain = plainText(text);
    const QByteArray compressed = compress ? compressedText(text) : QByteArray();
    return !compressed.isEmpty() && compressed.size() < plain.size() ? compressed : plain;
}

double jetDate(const QDateTime &date)
{
    const double days = double(QDate(1899, 12, 30).daysTo(date.date()));
    const double fraction = double(date.time().msecsSinceStartOfDay()) / 86'400'000.0;
    return days < 0 ? days - fraction : days + fraction;
}

QByteArray encodeValue(const JetColumn &column, const QVariant &value, JetVersion version)
{
    ByteSink sink;
    switch (column.type) {
    case JetType::Byte:
        return sink.u8(value.toUInt()).bytes();
    case JetType::Integer:
        return sink.u16(quint32(value.toInt())).bytes();
    case JetType::Long:
    case JetType::AutoNumber:
        return sink.u32(quint32(value.toInt())).bytes();
    case JetType::Currency:
        return sink.u64(quint64(value.toLongLong())).bytes();
    case JetType::Single:
        return sink.u32(std::bit_cast<quint32>(value.toFloat())).bytes();
    case JetType::Date:
        if (value.typeId() == QMetaType::QDateTime)
            return sink.u64(std::bit_cast<quint64>(jetDate(value.toDateTime()))).bytes();
        [[fallthrough]];
    case JetType::Double:
        return sink.u64(std::bit_cast<quint64>(value.toDouble())).bytes();
    case JetType::Guid:
        return guidBytes(value);
    case JetType::Numeric:
        return numericBytes(value.toString(), column.scale);
    case JetType::Text:
    case JetType::Memo:
        return encodeText(value.toString(), version, column.compressed);
    default:
        return value.toByteArray();
    }
}

QByteArray assembleRow(const RowParts &parts, JetVersion version)
{
    const bool jet3 = version == JetVersion::Jet3;
    ByteSink row;
    jet3 ? row.u8(quint32(parts.columnCount)) : row.u16(quint32(parts.columnCount));
    row.raw(parts.fixed);
    if (!parts.hasVariable)
        return row.raw(parts.mask).bytes();

    QList<int> offsets; // of the variable values, then of the first byte behind them
    for (const QByteArray &value : parts.variable) {
        offsets.append(row.size());
        row.raw(value);
    }
    offsets.append(row.size());
    const int count = int(parts.variable.size());
    for (auto offset = offsets.crbegin(); offset != offsets.crend(); ++offset)
        jet3 ? row.u8(quint32(*offset)) : row.u16(quint32(*offset));
    if (!jet3)
        return row.u16(quint32(count)).raw(parts.mask).bytes();

    // An offset has one byte. Where it passes another 256 the jump table has the number of that entry; the
    // table has an entry for every whole 256 bytes of the row, FF where the last offset has not come so far.
    // The table is itself part of the row, so its length is found by trying.
    int jumps = 0;
    const auto length = [&] { return row.size() + jumps + 1 + int(parts.mask.size()); };
    while ((length() - 1) / 256 > jumps)
        ++jumps;
    for (int jump = jumps; jump > 0; --jump) {
        const auto entry =
            std::find_if(offsets.begin(), offsets.end(), [jump](int offset) { return offset >= 256 * jump; });
        row.u8(entry == offsets.end() ? 0xFF : quint32(entry - offsets.begin()));
    }
    return row.u8(quint32(count)).raw(parts.mask).bytes();
}

} // namespace jetfile
