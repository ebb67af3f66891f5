// SPDX-License-Identifier: Apache-2.0
#include "jetfile/wire/RowCoding.h"

#include <QDateTime>

namespace jetfile::wire {

namespace {

template <typename Unit>
void putCounted(Writer &writer, Tag tag, const Unit *units, qsizetype count)
{
    writer.put(tag);
    writer.put(quint32(count));
    writer.put(units, count * qsizetype(sizeof(Unit)));
}

qsizetype takeSize(Reader &reader, qsizetype unit)
{
    const qsizetype count = reader.take<quint32>();
    if (count > longestValue / unit)
        throw Error("value too long");
    return count;
}

// {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}: the first three groups are numbers, the rest are bytes.
QString guidText(const uchar *guid)
{
    static constexpr int order[] = {3, 2, 1, 0, -1, 5, 4, -1, 7, 6, -1, 8, 9, -1, 10, 11, 12, 13, 14, 15};
    static constexpr char digits[] = "0123456789ABCDEF";
    QString text(38, Qt::Uninitialized);
    QChar *out = text.data();
    *out++ = u'{';
    for (const int byte : order) {
        if (byte < 0) {
            *out++ = u'-';
        } else {
            *out++ = QLatin1Char(digits[guid[byte] >> 4]);
            *out++ = QLatin1Char(digits[guid[byte] & 15]);
        }
    }
    *out = u'}';
    return text;
}

bool fits(Tag tag, dao::FieldType type)
{
    using dao::FieldType;
    switch (type) {
    case FieldType::Boolean:
        return tag == Tag::False || tag == Tag::True;
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::AutoNumber:
        return tag == Tag::Integer;
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
        return tag == Tag::Double;
    case FieldType::Date:
        return tag == Tag::Date || tag == Tag::Double;
    case FieldType::Text:
    case FieldType::Memo:
        return tag == Tag::Latin || tag == Tag::Wide;
    case FieldType::Guid:
        return tag == Tag::Guid;
    case FieldType::Binary:
        return tag == Tag::Bytes;
    case FieldType::Null:
    case FieldType::Unknown:
        break;
    }
    return false;
}

QVariant takeValue(Reader &reader, dao::FieldType type)
{
    const auto tag = reader.take<Tag>();
    if (tag == Tag::Null)
        return {};
    if (!fits(tag, type))
        throw Error("value of another type");
    switch (tag) {
    case Tag::Null:
        break;
    case Tag::Integer:
        return int(reader.take<qint32>());
    case Tag::Double:
        return reader.take<double>();
    case Tag::False:
        return false;
    case Tag::True:
        return true;
    case Tag::Date: {
        const auto seconds = reader.take<qint64>();
        if (seconds < firstSecond || seconds > lastSecond)
            throw Error("date out of range");
        return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
    }
    case Tag::Latin: {
        const qsizetype count = takeSize(reader, sizeof(char16_t));
        return QString::fromLatin1(reader.take(count), count);
    }
    case Tag::Wide: {
        const qsizetype count = takeSize(reader, sizeof(char16_t));
        QString text(count, Qt::Uninitialized);
        std::memcpy(text.data(), reader.take(count * qsizetype(sizeof(char16_t))), count * sizeof(char16_t));
        return text;
    }
    case Tag::Bytes: {
        const qsizetype count = takeSize(reader, 1);
        return QByteArray(reader.take(count), count);
    }
    case Tag::Guid:
        return guidText(reinterpret_cast<const uchar *>(reader.take(16)));
    }
    throw Error("unknown tag");
}

} // namespace

void putValue(Writer &writer, Tag tag)
{
    writer.put(tag);
}

void putInteger(Writer &writer, qint32 number)
{
    writer.put(Tag::Integer);
    writer.put(number);
}

void putDouble(Writer &writer, double number)
{
    writer.put(Tag::Double);
    writer.put(number);
}

void putDate(Writer &writer, qint64 seconds)
{
    writer.put(Tag::Date);
    writer.put(seconds);
}

void putCharacters(Writer &writer, QStringView text)
{
    putCounted(writer, Tag::Wide, text.utf16(), text.size());
}

void putLatin(Writer &writer, std::span<const uchar> text)
{
    putCounted(writer, Tag::Latin, text.data(), qsizetype(text.size()));
}

void putBytes(Writer &writer, std::span<const uchar> bytes)
{
    putCounted(writer, Tag::Bytes, bytes.data(), qsizetype(bytes.size()));
}

void putGuid(Writer &writer, std::span<const uchar, 16> guid)
{
    writer.put(Tag::Guid);
    writer.put(guid.data(), 16);
}

void takeRow(Reader &reader, const QList<dao::ColumnInfo> &columns, JetRow &row)
{
    row.values.resize(columns.size());
    QVariant *value = row.values.data();
    for (const dao::ColumnInfo &column : columns)
        *value++ = takeValue(reader, column.type);
    row.problem = reader.takeText(longestProblem);
}

} // namespace jetfile::wire
