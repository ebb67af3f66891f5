// SPDX-License-Identifier: Apache-2.0
#include "jetfile/wire/RowCoding.h"

#include <QDateTime>
#include <QUuid>

namespace jetfile::wire {

namespace {

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
        return tag == Tag::Text;
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
    case Tag::Text: {
        const QString text = reader.takeText(longestValue / qsizetype(sizeof(QChar)));
        return text.isNull() ? QStringLiteral("") : text; // an invalid variant alone is Null
    }
    case Tag::Bytes: {
        const QByteArray bytes = reader.take<QByteArray>();
        if (bytes.size() > longestValue)
            throw Error("value too long");
        return bytes.isNull() ? QByteArrayLiteral("") : bytes;
    }
    case Tag::Guid:
        return reader.take<QUuid>().toString().toUpper();
    }
    throw Error("unknown tag");
}

} // namespace

void takeRow(Reader &reader, const QList<dao::ColumnInfo> &columns, JetRow &row)
{
    row.values.resize(columns.size());
    QVariant *value = row.values.data();
    for (const dao::ColumnInfo &column : columns)
        *value++ = takeValue(reader, column.type);
    row.problem = reader.takeText(longestProblem);
}

} // namespace jetfile::wire
