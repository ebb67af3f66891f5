// SPDX-License-Identifier: Apache-2.0
#include "jetfile/reader/RowDecoder.h"
#include "jetfile/wire/RowCoding.h"

#include <QUuid>

#include <cmath>

namespace jetreader {

using namespace jetfile;

namespace {

// Day 0 is 30/12/1899. Before it, the fraction still counts forward from midnight.
void writeDate(double date, wire::Writer &writer)
{
    constexpr double firstDay = -657434; // 1/1/100
    constexpr double afterLastDay = 2958466; // 1/1/10000
    constexpr qint64 secondsOfDay = 86400;
    constexpr qint64 dayZero = -25569 * secondsOfDay;
    if (!(date > firstDay - 1 && date < afterLastDay)) { // not a number, too
        writer << wire::Tag::Double << date;
        return;
    }
    const double day = std::trunc(date);
    const qint64 time = std::llround(std::abs(date - day) * secondsOfDay);
    const qint64 seconds = dayZero + qint64(day) * secondsOfDay + time;
    if (seconds < wire::firstSecond || seconds > wire::lastSecond)
        writer << wire::Tag::Double << date;
    else
        writer << wire::Tag::Date << seconds;
}

// Sign, then 16 bytes: four numbers of 32 bits, the highest first.
QByteArray fixedPointText(Bytes bytes, int scale)
{
    unsigned __int128 magnitude = 0;
    for (std::size_t at = 1; at < bytes.size(); at += 4)
        magnitude = magnitude << 32 | number32(bytes, at);
    QByteArray digits;
    for (; magnitude > 0; magnitude /= 10)
        digits.prepend(char('0' + int(magnitude % 10)));
    digits = digits.rightJustified(scale + 1, '0');
    if (scale > 0)
        digits.insert(digits.size() - scale, '.');
    return bytes[0] & 0x80 ? '-' + digits : digits;
}

QByteArray copyOf(Bytes bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), qsizetype(bytes.size()));
}

QString placeText(RowAddress place)
{
    return QStringLiteral("pagina %1, riga %2").arg(place.page).arg(place.row);
}

void writeFixedPoint(Bytes bytes, const Column &column, wire::Writer &writer)
{
    const QByteArray text = fixedPointText(bytes, column.scale);
    if (column.asText)
        writer << wire::Tag::Text << QString::fromLatin1(text);
    else
        writer << wire::Tag::Double << text.toDouble();
}

} // namespace

RowDecoder::RowDecoder(const PageFile &file, LongValues &longValues)
    : m_longValues(longValues)
    , m_layout(file.isJet3())
    , m_text(file)
{
}

void RowDecoder::writeUnreadable(const TableDefinition &table, const QString &problem, wire::Writer &writer)
{
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        writer << wire::Tag::Null;
    writer << problem;
}

void RowDecoder::write(const TableDefinition &table, Bytes row, RowAddress place, wire::Writer &writer)
{
    if (!m_layout.begin(row)) {
        writeUnreadable(table, QStringLiteral("%1: la riga è illeggibile").arg(placeText(place)), writer);
        return;
    }
    const qsizetype rowStart = writer.size();
    QStringList problems;
    for (const Column &column : table.columns) {
        if (column.type == MDB_BOOL) {
            writer << (m_layout.bit(column) ? wire::Tag::True : wire::Tag::False);
            continue;
        }
        if (!m_layout.bit(column)) {
            writer << wire::Tag::Null;
            continue;
        }
        const qsizetype valueStart = writer.size();
        QString problem = QStringLiteral("è fuori dalla riga");
        if (const auto bytes = m_layout.value(column))
            problem = writeValue(column, *bytes, writer);
        if (problem.isEmpty() && writer.size() - rowStart > wire::longestRow)
            problem = QStringLiteral("renderebbe troppo lunga la riga");
        if (!problem.isEmpty()) {
            writer.truncate(valueStart);
            writer << wire::Tag::Null;
            problems += QStringLiteral("il campo %1 %2").arg(column.name, problem);
        }
    }
    if (problems.isEmpty())
        writer << QString();
    else
        writer
            << QStringLiteral("%1: %2").arg(placeText(place), problems.join(QStringLiteral("; "))).left(400);
}

// Empty, or why the value cannot be read; then what was written is taken back.
QString RowDecoder::writeValue(const Column &column, Bytes bytes, wire::Writer &writer)
{
    if (bytes.size() < column.least)
        return QStringLiteral("è troppo corto");
    switch (column.type) {
    case MDB_BYTE:
        writer << wire::Tag::Integer << qint32(bytes[0]);
        return {};
    case MDB_INT:
        writer << wire::Tag::Integer << qint32(qint16(number16(bytes, 0)));
        return {};
    case MDB_LONGINT:
        writer << wire::Tag::Integer << qint32(number32(bytes, 0));
        return {};
    case MDB_MONEY:
        writer << wire::Tag::Double << double(qFromLittleEndian<qint64>(bytes.data())) / 10000.0;
        return {};
    case MDB_FLOAT:
        writer << wire::Tag::Double << double(qFromLittleEndian<float>(bytes.data()));
        return {};
    case MDB_DOUBLE:
        writer << wire::Tag::Double << qFromLittleEndian<double>(bytes.data());
        return {};
    case MDB_DATETIME:
        writeDate(qFromLittleEndian<double>(bytes.data()), writer);
        return {};
    case MDB_REPID:
        writer << wire::Tag::Guid
               << QUuid(number32(bytes, 0), number16(bytes, 4), number16(bytes, 6), bytes[8], bytes[9],
                        bytes[10], bytes[11], bytes[12], bytes[13], bytes[14], bytes[15]);
        return {};
    case MDB_NUMERIC:
        writeFixedPoint(bytes.first(17), column, writer);
        return {};
    case MDB_TEXT:
        return writeText(bytes, writer);
    case MDB_BINARY:
        writer << wire::Tag::Bytes << copyOf(bytes);
        return {};
    default:
        break;
    }
    try {
        const Bytes value = m_longValues.fetch(bytes);
        if (column.type == MDB_MEMO)
            return writeText(value, writer);
        writer << wire::Tag::Bytes << copyOf(value);
        return {};
    } catch (const LongValues::Unreadable &error) {
        return QString::fromStdString(error.what());
    }
}

QString RowDecoder::writeText(Bytes bytes, wire::Writer &writer)
{
    const std::optional<QString> text = m_text.decode(bytes);
    if (!text)
        return QStringLiteral("non è un testo");
    writer << wire::Tag::Text << *text;
    return {};
}

} // namespace jetreader
