// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/JsonLine.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace orvale {

namespace {

// A document is an object or an array; the value is what stands between the brackets.
QString jsonText(const QJsonValue &value)
{
    const QByteArray json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.mid(1, json.size() - 2));
}

} // namespace

JsonLine &JsonLine::addText(const QString &name, const QString &json)
{
    if (!m_members.isEmpty())
        m_members += u',';
    m_members += jsonText(name) + u':' + json;
    return *this;
}

JsonLine &JsonLine::add(const QString &name, const QJsonValue &value)
{
    return addText(name, jsonText(value));
}

JsonLine &JsonLine::add(const QString &name, const JsonLine &object)
{
    return addText(name, object.text());
}

JsonLine &JsonLine::add(const QString &name, const QList<JsonLine> &objects)
{
    QStringList texts;
    for (const JsonLine &object : objects)
        texts.append(object.text());
    return addText(name, u'[' + texts.join(u',') + u']');
}

} // namespace orvale
