// SPDX-License-Identifier: Apache-2.0
#include "app/import/RefusedRows.h"

#include "values/JetValues.h"

#include <cmath>

namespace orvale {

namespace {

using dao::FieldType;

const QString tableName = QStringLiteral("orvale_refused_rows");

// QJsonDocument would replace what is no whole character; here every unit of a damaged text stays legible.
QString jsonText(const QString &text)
{
    QString json = QStringLiteral("\"");
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool isPair = c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair) {
            json += c;
            json += text[++i];
        } else if (c.unicode() < 0x20 || c.isSurrogate()) {
            json += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QChar(u'0'));
        } else {
            if (c == u'"' || c == u'\\')
                json += u'\\';
            json += c;
        }
    }
    return json + u'"';
}

QString jsonValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return QStringLiteral("null");
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::Int:
        return QString::number(value.toInt());
    case QMetaType::Double: {
        const QString text = QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
        return std::isfinite(value.toDouble()) ? text : jsonText(text);
    }
    case QMetaType::QDateTime:
        return jsonText(clivara::jet::storedDate(value.toDateTime()));
    case QMetaType::QByteArray:
        return jsonText(QString::fromLatin1(value.toByteArray().toBase64()));
    default:
        return jsonText(value.toString());
    }
}

} // namespace

QString rowAsJson(const jetfile::JetTable &table, const jetfile::JetRow &row)
{
    QStringList members;
    for (qsizetype i = 0; i < row.values.size(); ++i)
        members.append(jsonText(table.columns[i].name) + u':' + jsonValue(row.values[i]));
    return u'{' + members.join(u',') + u'}';
}

RefusedRows::RefusedRows(dao::Database &clinical, dao::BulkLoad &load)
{
    const QString key = QStringLiteral("id");
    const QList<dao::ColumnInfo> columns{
        {key, FieldType::AutoNumber},
        {QStringLiteral("database"), FieldType::Text, 20},
        {QStringLiteral("table"), FieldType::Memo},
        {QStringLiteral("row"), FieldType::Double},
        {QStringLiteral("reason"), FieldType::Memo},
        {QStringLiteral("content"), FieldType::Memo},
    };
    load.createTable(tableName, columns, {{QStringLiteral("id"), {key}, true, true}});
    QStringList fields;
    for (const dao::ColumnInfo &column : columns.mid(1))
        fields.append(column.name);
    m_insert = std::make_unique<dao::BulkInsert>(clinical, tableName, fields);
}

void RefusedRows::add(const QString &database, const jetfile::JetTable &table, qint64 number,
                      const QString &reason, const jetfile::JetRow &row)
{
    m_insert->add({database, table.name, double(number), reason, rowAsJson(table, row)});
}

} // namespace orvale
