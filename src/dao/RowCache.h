// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"
#include "dao/Session.h"

#include <QList>
#include <QVariant>
#include <optional>

namespace dao {

// A native query and its values.
struct NativeQuery {
    QString sql;
    QVariantList values;
};

// The rows of one or more native queries, one after the other, read forward in steps as they are asked for
// and kept as native values: a value is converted when somebody looks at it.
class RowCache final : public Reader {
public:
    RowCache(std::shared_ptr<Session> session, int width)
        : m_session(std::move(session))
        , m_width(width)
    {
    }
    ~RowCache() override { stop(); }
    RowCache(const RowCache &) = delete;
    RowCache &operator=(const RowCache &) = delete;

    // Forgets all rows; the queries run when a row is asked for.
    void start(QList<NativeQuery> queries, RowsWanted wanted = RowsWanted::All);
    // Rows that follow those of the queries before.
    void append(const NativeQuery &query) { m_waiting.append(query); }
    // Reads as far as that row; false when there are fewer rows.
    bool has(int row);
    int readAll();
    void drain() override;
    void stop();

    // Of rows read so far.
    int size() const { return int(m_cells.size() / m_width); }
    const QVariant &cell(int row, int column) const { return m_cells[qsizetype(row) * m_width + column]; }
    void setCell(int row, int column, const QVariant &value)
    {
        m_cells[qsizetype(row) * m_width + column] = value;
    }
    void remove(int row) { m_cells.remove(qsizetype(row) * m_width, m_width); }

private:
    bool readRows(int count);
    void openNext();
    void closeCursor();

    std::shared_ptr<Session> m_session;
    int m_width;
    QList<NativeQuery> m_waiting;
    RowsWanted m_wanted = RowsWanted::All;
    std::unique_ptr<NativeCursor> m_cursor;
    QList<QVariant> m_cells;
    std::optional<Error> m_failure; // of reading: what was read stays, what follows is not there
};

} // namespace dao
