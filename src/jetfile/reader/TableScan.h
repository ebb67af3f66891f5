// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/reader/RowDecoder.h"

#include <array>
#include <functional>

namespace jetreader {

// Walks over the live rows of tables. A row that has outgrown its page lies on another one, and its old place
// only points there: it is read when the walk comes by the old place. What is deleted, or is only reached
// from elsewhere, is passed over.
class TableScan {
public:
    explicit TableScan(const QByteArray &path);
    PageFile &file() { return m_pages; }

    // Writes every row; `written` is called after each. Throws Damage, and whatever `written` throws.
    void run(const TableDefinition &table, jetfile::wire::Writer &writer,
             const std::function<void()> &written);

private:
    quint32 nextPage(const TableDefinition &table, quint32 page) const;
    void writeRow(const TableDefinition &table, RowAddress place, const RowSlot &slot,
                  jetfile::wire::Writer &writer);
    Bytes movedRow(const TableDefinition &table, RowAddress address);

    PageFile m_pages; // of the rows
    PageFile m_otherPages; // of what they point to
    LongValues m_longValues;
    RowDecoder m_decoder;
    QSet<quint32> m_moved; // packed addresses of the rows that a place has pointed to
    std::array<uchar, MDB_PGSIZE> m_movedRow;
};

} // namespace jetreader
