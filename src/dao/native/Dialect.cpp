// SPDX-License-Identifier: Apache-2.0
#include "dao/native/Dialect.h"

#include "values/JetValues.h"

namespace dao {
namespace {

namespace jet = clivara::jet;

QString enclosed(const QString &text, QChar quote)
{
    QString result;
    result.reserve(text.size() + 2);
    result += quote;
    if (!text.contains(quote)) {
        result += text;
    } else {
        for (const QChar c : text) {
            if (c == quote)
                result += quote;
            result += c;
        }
    }
    result += quote;
    return result;
}

} // namespace

QString Dialect::identifier(const QString &name) const
{
    return enclosed(name, u'"');
}

QString Dialect::qualified(const QString &schema, const QString &name) const
{
    return identifier(schema) + u'.' + identifier(name);
}

QString Dialect::textLiteral(const QString &text) const
{
    return enclosed(text, u'\'');
}

QString Dialect::numberLiteral(double value) const
{
    QString number = QString::number(value, 'g', QLocale::FloatingPointShortest);
    if (!number.contains(u'.') && !number.contains(u'e'))
        number += QStringLiteral(".0");
    return number;
}

QString Dialect::limit(int rows) const
{
    return QStringLiteral("LIMIT %1").arg(rows);
}

QStringList Dialect::completeTable(const QString &, const QList<ColumnInfo> &) const
{
    return {};
}

QString Dialect::requireColumn(const QString &, const QString &) const
{
    return {};
}

QString Dialect::insertStatement(const QString &nativeTable, const QList<ColumnInfo> &columns) const
{
    QStringList names;
    for (const ColumnInfo &column : columns)
        names.append(identifier(column.name));
    return QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
        .arg(nativeTable, names.join(QStringLiteral(", ")),
             QStringList(columns.size(), QStringLiteral("?")).join(QStringLiteral(", ")));
}

QVariant Dialect::fromNative(const QVariant &value, FieldType type) const
{
    if (!value.isValid() || value.isNull())
        return {};
    switch (type) {
    case FieldType::Boolean:
        return value.typeId() == QMetaType::Bool ? value.toBool() : value.toDouble() != 0;
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::AutoNumber:
        return value.toInt();
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
        return value.toDouble();
    case FieldType::Date: {
        const QDateTime date = jet::dateFromStored(value.toString());
        return date.isValid() ? QVariant(date) : QVariant();
    }
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Guid:
        return value.toString();
    case FieldType::Binary:
        return value.toByteArray();
    case FieldType::Null:
    case FieldType::Unknown:
        break;
    }
    if (value.typeId() != QMetaType::LongLong)
        return value;
    const qint64 number = value.toLongLong();
    return number == qint32(number) ? QVariant(int(number)) : QVariant(double(number));
}

QVariant Dialect::toNative(const QVariant &value, FieldType type) const
{
    if (!value.isValid() || value.isNull())
        return {};
    switch (type) {
    case FieldType::Date:
        return jet::storedDate(value.toDateTime());
    case FieldType::Text:
    case FieldType::Memo:
    case FieldType::Guid: {
        const QString text = value.toString();
        return text.isNull() ? QStringLiteral("") : text;
    }
    default:
        return value;
    }
}

} // namespace dao
