// SPDX-License-Identifier: Apache-2.0
#include "app/import/ImportTally.h"

#include "values/JetValues.h"

#include <bit>
#include <cmath>

namespace orvale {

namespace {

namespace jet = clivara::jet;

constexpr quint64 nullMark = 0x9ae16a3b2f90404fu;
constexpr qint64 currencyUnit = 10000;

qint64 secondsOf(const QDateTime &date)
{
    static const qint64 zero = jet::zeroDate().toSecsSinceEpoch();
    return date.toSecsSinceEpoch() - zero;
}

QString dateText(qint64 seconds)
{
    return jet::storedDate(jet::zeroDate().addSecs(seconds));
}

__extension__ using Wide = __int128;

QString wideText(Wide number)
{
    QString digits;
    const bool isNegative = number < 0;
    do {
        const int digit = int(number % 10);
        digits.prepend(QChar(u'0' + std::abs(digit)));
        number /= 10;
    } while (number != 0);
    return isNegative ? u'-' + digits : digits;
}

QString currencyText(Wide tenThousandths)
{
    QString digits = wideText(tenThousandths < 0 ? -tenThousandths : tenThousandths).rightJustified(5, u'0');
    digits.insert(digits.size() - 4, u'.');
    return tenThousandths < 0 ? u'-' + digits : digits;
}

} // namespace

// The finalizer of SplitMix64, which mixes every input bit into about half of the output bits.
quint64 TableTally::mixed(quint64 number)
{
    number ^= number >> 30;
    number *= 0xbf58476d1ce4e5b9u;
    number ^= number >> 27;
    number *= 0x94d049bb133111ebu;
    return number ^ (number >> 31);
}

TableTally::TableTally(const QList<dao::ColumnInfo> &columns)
{
    for (const dao::ColumnInfo &column : columns)
        m_columns.emplace_back(column.type);
}

quint64 ColumnTally::addText(QStringView text)
{
    quint64 hash = quint64(text.size()) + 1;
    qint64 sum = 0;
    for (const QChar unit : text) {
        sum += unit.unicode();
        hash = (hash ^ unit.unicode()) * 0x9e3779b97f4a7c15u;
    }
    m_sum += sum;
    m_units += text.size();
    return hash;
}

quint64 ColumnTally::addBytes(const QByteArray &bytes)
{
    quint64 hash = quint64(bytes.size()) + 1;
    for (const char byte : bytes) {
        m_sum += uchar(byte);
        hash = (hash ^ uchar(byte)) * 0x9e3779b97f4a7c15u;
    }
    m_units += bytes.size();
    return hash;
}

quint64 ColumnTally::addWhole(qint64 number)
{
    m_sum += number;
    return quint64(number) + 1;
}

quint64 ColumnTally::add(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return nullMark;
    ++m_values;
    quint64 hash = 0;
    switch (m_type) {
    case dao::FieldType::Boolean:
        hash = addWhole(value.toBool() ? 1 : 0);
        break;
    case dao::FieldType::Byte:
    case dao::FieldType::Integer:
    case dao::FieldType::Long:
    case dao::FieldType::AutoNumber:
        hash = addWhole(value.toInt());
        break;
    case dao::FieldType::Currency:
        hash = addWhole(std::llround(static_cast<long double>(value.toDouble()) * currencyUnit));
        break;
    case dao::FieldType::Single:
    case dao::FieldType::Double: {
        const double number = value.toDouble() + 0.0; // the negative zero is a zero
        m_floatingSum += number;
        hash = std::bit_cast<quint64>(number);
        break;
    }
    case dao::FieldType::Date: {
        const qint64 seconds = secondsOf(value.toDateTime());
        m_least = std::min(m_least.value_or(seconds), seconds);
        m_most = std::max(m_most.value_or(seconds), seconds);
        hash = addWhole(seconds);
        break;
    }
    case dao::FieldType::Binary:
        hash = addBytes(value.toByteArray());
        break;
    default:
        hash = addText(value.toString());
    }
    hash = TableTally::mixed(hash);
    m_checksum += hash;
    return hash;
}

QString ColumnTally::sum() const
{
    switch (m_type) {
    case dao::FieldType::Currency:
        return currencyText(m_sum);
    case dao::FieldType::Single:
    case dao::FieldType::Double:
        // Rows may come in another order on the other side, which shows in the last digits of a sum.
        return QString::number(double(m_floatingSum), 'g', 12);
    default:
        return wideText(m_sum);
    }
}

QList<QPair<QString, QString>> ColumnTally::figures() const
{
    QList<QPair<QString, QString>> figures{{QStringLiteral("valori"), QString::number(m_values)}};
    switch (m_type) {
    case dao::FieldType::Boolean:
        figures.append({QStringLiteral("veri"), sum()});
        break;
    case dao::FieldType::Date:
        figures.append({QStringLiteral("somma secondi"), sum()});
        figures.append({QStringLiteral("prima data"), m_least ? dateText(*m_least) : QString()});
        figures.append({QStringLiteral("ultima data"), m_most ? dateText(*m_most) : QString()});
        break;
    case dao::FieldType::Binary:
        figures.append({QStringLiteral("byte"), QString::number(m_units)});
        figures.append({QStringLiteral("somma byte"), sum()});
        break;
    case dao::FieldType::Text:
    case dao::FieldType::Memo:
    case dao::FieldType::Guid:
        figures.append({QStringLiteral("caratteri"), QString::number(m_units)});
        figures.append({QStringLiteral("somma caratteri"), sum()});
        break;
    default:
        figures.append({QStringLiteral("somma"), sum()});
    }
    figures.append({QStringLiteral("impronta"), QString::number(m_checksum, 16).rightJustified(16, u'0')});
    return figures;
}

bool ColumnTally::operator==(const ColumnTally &other) const
{
    // The sum of floating point numbers depends on the order of the rows; the checksum has their bits.
    return m_type == other.m_type && m_values == other.m_values && m_sum == other.m_sum
           && m_units == other.m_units && m_least == other.m_least && m_most == other.m_most
           && m_checksum == other.m_checksum;
}

void compareColumns(TableProof &proof, const QStringList &columns, const TableTally &source,
                    const TableTally &target)
{
    proof.sourceChecksum = QString::number(source.checksum(), 16);
    proof.targetChecksum = QString::number(target.checksum(), 16);
    proof.agrees &= source.rows() == target.rows() && source.checksum() == target.checksum();
    for (int i = 0; i < columns.size(); ++i) {
        const ColumnTally &from = source.column(i);
        const ColumnTally &to = target.column(i);
        ColumnProof column;
        column.name = columns[i];
        column.sourceValues = from.values();
        column.targetValues = to.values();
        column.sourceSum = from.sum();
        column.targetSum = to.sum();
        const auto sourceFigures = from.figures();
        const auto targetFigures = to.figures();
        for (int f = 0; f < sourceFigures.size(); ++f)
            column.figures.append({sourceFigures[f].first, sourceFigures[f].second, targetFigures[f].second});
        column.agrees = from == to;
        proof.agrees &= column.agrees;
        proof.columns.append(column);
    }
}

} // namespace orvale
