// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresFirstRows.h"

namespace dao {

PostgresFirstRows::PostgresFirstRows(PostgresChannel &channel, const QString &sql, const QVariantList &values,
                                     int rows)
    : m_channel(channel)
    , m_sql(sql)
    , m_values(values)
    , m_cursor(query(QStringLiteral("SELECT * FROM (%1) AS query LIMIT %2").arg(sql, QString::number(rows))))
{
    m_isCut = m_cursor->rowCount() == rows;
}

std::unique_ptr<PostgresCursor> PostgresFirstRows::query(const QString &sql) const
{
    return std::make_unique<PostgresCursor>(m_channel.run(sql, m_values));
}

QVariantList PostgresFirstRows::row() const
{
    QVariantList values;
    for (int column = 0, count = m_cursor->columnCount(); column < count; ++column)
        values.append(m_cursor->value(column));
    return values;
}

void PostgresFirstRows::readAll()
{
    auto all = query(m_sql);
    m_cursor->restart();
    while (m_cursor->next())
        m_given.append(row());
    m_cursor = std::move(all);
    m_isCut = false;
}

bool PostgresFirstRows::next()
{
    while (true) {
        if (m_cursor->next()) {
            if (m_given.isEmpty() || !m_given.removeOne(row()))
                return true;
        } else if (m_isCut) {
            readAll();
        } else {
            return false;
        }
    }
}

} // namespace dao
