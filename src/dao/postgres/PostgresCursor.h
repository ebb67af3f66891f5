// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/NativeCursor.h"
#include "dao/postgres/PostgresChannel.h"

namespace dao {

// The rows of a result that has come whole.
class PostgresCursor final : public NativeCursor {
public:
    explicit PostgresCursor(PostgresResult result);
    bool next() override { return ++m_row < m_rows; }
    QVariant value(int column) const override;
    int rowCount() const { return m_rows; }
    int columnCount() const;
    void restart() { m_row = -1; } // before the first row

private:
    PostgresResult m_result;
    int m_row = -1;
    int m_rows;
};

// The rows of a statement as they come, for tables that are too large to be kept in memory. Until it goes
// away the connection can do nothing else.
class PostgresStream final : public NativeCursor {
public:
    PostgresStream(PostgresWire &wire, const QString &sql);
    ~PostgresStream() override;
    PostgresStream(const PostgresStream &) = delete;
    PostgresStream &operator=(const PostgresStream &) = delete;
    bool next() override;
    QVariant value(int column) const override { return m_row->value(column); }

private:
    void endSingleRows();

    PostgresWire &m_wire;
    QString m_sql;
    bool m_isOver = false;
    std::unique_ptr<PostgresCursor> m_row;
};

} // namespace dao
