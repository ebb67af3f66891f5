// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/postgres/PostgresConnection.h"

#include <QString>

namespace dao {

// What the parts of PostgresStorage write their SQL with.

inline PostgresResult runPostgres(const Storage &storage, const QSqlDatabase &connection, const QString &sql,
                                  const QVariantList &values = {})
{
    return PostgresConnection(storage, connection).run(sql, values);
}

inline QString quotedName(const QString &name)
{
    return u'"' + QString(name).replace(u'"', QStringLiteral("\"\"")) + u'"';
}

inline QString quotedText(const QString &text)
{
    return u'\'' + QString(text).replace(u'\'', QStringLiteral("''")) + u'\'';
}

inline QString qualifiedName(const QString &schema, const QString &name)
{
    return quotedName(schema) + u'.' + quotedName(name);
}

} // namespace dao
