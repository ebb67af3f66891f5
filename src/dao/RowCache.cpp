// SPDX-License-Identifier: Apache-2.0
#include "dao/RowCache.h"

#include <limits>

namespace dao {

// Enough for most queries of a form to be read, and their cursor closed, at once.
constexpr int rowsPerStep = 100;
// Where a row among the first few is looked for.
constexpr int firstRows = 5;
// Room taken at once for the rows of a query; most of the forms' queries need no more.
constexpr int rowsExpected = 32;

void RowCache::start(QList<NativeQuery> queries, RowsWanted wanted)
{
    stop();
    m_wanted = wanted;
    m_cells.clear();
    m_failure.reset();
    m_waiting = std::move(queries);
}

void RowCache::stop()
{
    closeCursor();
    m_waiting.clear();
}

void RowCache::closeCursor()
{
    if (m_cursor)
        m_session->removeReader(*this);
    m_cursor.reset();
}

bool RowCache::has(int row)
{
    while (row >= size()) {
        if (!readRows(m_wanted == RowsWanted::First ? firstRows : rowsPerStep))
            return false;
    }
    return true;
}

int RowCache::readAll()
{
    while (readRows(std::numeric_limits<int>::max())) { }
    return size();
}

void RowCache::drain()
{
    // Only what is being read: a query that has not run yet holds nothing. A failure is told to whom asks for
    // the rows, not to the writer.
    try {
        while (m_cursor)
            readRows(std::numeric_limits<int>::max());
    } catch (const Error &) {
        closeCursor();
    }
}

void RowCache::openNext()
{
    const NativeQuery query = m_waiting.takeFirst();
    m_cursor = m_wanted == RowsWanted::First ? m_session->selectFirst(firstRows, query.sql, query.values)
                                             : m_session->select(query.sql, query.values);
    m_cells.reserve(m_cells.size() + qsizetype(rowsExpected) * m_width);
    m_session->addReader(*this);
}

// False when there was nothing left to read.
bool RowCache::readRows(int count)
{
    if (m_failure)
        throw Error(*m_failure);
    if (!m_cursor) {
        if (m_waiting.isEmpty())
            return false;
        openNext();
    }
    try {
        for (int i = 0; i < count; ++i) {
            if (!m_cursor->next()) {
                closeCursor();
                return true;
            }
            for (int column = 0; column < m_width; ++column)
                m_cells.append(m_cursor->value(column));
        }
    } catch (const Error &error) {
        m_failure = error;
        closeCursor();
        throw;
    }
    return true;
}

} // namespace dao
