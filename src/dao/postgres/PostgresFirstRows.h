// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/postgres/PostgresCursor.h"

namespace dao {

// The rows of a query of which most often only the first few are read: these come first and alone, the others
// with the whole query when somebody steps on. Should somebody else have written between the two, rows that
// were handed out already are left out of the second result wherever they stand there; none is missing and
// none comes twice.
class PostgresFirstRows final : public NativeCursor {
public:
    PostgresFirstRows(PostgresChannel &channel, const QString &sql, const QVariantList &values, int rows);
    bool next() override;
    QVariant value(int column) const override { return m_cursor->value(column); }

private:
    std::unique_ptr<PostgresCursor> query(const QString &sql) const;
    QVariantList row() const;
    void readAll();

    PostgresChannel &m_channel;
    QString m_sql;
    QVariantList m_values;
    bool m_isCut = false; // there may be more rows than came
    std::unique_ptr<PostgresCursor> m_cursor;
    QList<QVariantList> m_given; // rows that are not to be handed out again
};

} // namespace dao
