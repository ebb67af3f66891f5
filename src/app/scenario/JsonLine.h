// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonValue>
#include <QList>
#include <QString>

namespace orvale {

// Builds the text of a JSON object whose members stay in the order in which they were added (QJsonObject
// would sort them), without blanks.
class JsonLine {
public:
    JsonLine &add(const QString &name, const QJsonValue &value);
    JsonLine &add(const QString &name, const JsonLine &object);
    JsonLine &add(const QString &name, const QList<JsonLine> &objects);
    QString text() const { return u'{' + m_members + u'}'; }

private:
    JsonLine &addText(const QString &name, const QString &json);

    QString m_members;
};

} // namespace orvale
