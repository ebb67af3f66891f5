// SPDX-License-Identifier: Apache-2.0
#include "data/engine/SqlDialect.h"

namespace dao {
namespace {

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

QString SqlDialect::identifier(const QString &name) const
{
    return enclosed(name, u'"');
}

QString SqlDialect::textLiteral(const QString &text) const
{
    return enclosed(text, u'\'');
}

QString SqlDialect::limit(int rows) const
{
    return QStringLiteral("LIMIT %1").arg(rows);
}

} // namespace dao
