// SPDX-License-Identifier: Apache-2.0
#include "jetfile/reader/TableScan.h"

#include <algorithm>

namespace jetreader {

namespace {

constexpr std::size_t addressSize = 4;

} // namespace

TableScan::TableScan(const QByteArray &path)
    : m_pages(path)
    , m_otherPages(path)
    , m_longValues(m_otherPages)
    , m_decoder(m_pages, m_longValues)
{
}

void TableScan::run(const TableDefinition &table, jetfile::wire::Writer &writer,
                    const std::function<void()> &written)
{
    m_moved.clear();
    for (quint32 number = nextPage(table, 0); number != 0; number = nextPage(table, number)) {
        const Bytes page = m_pages.page(number);
        if (PageFile::isDataPage(page) && PageFile::owner(page) == PageFile::LongValues)
            continue;
        const int rows = m_pages.rowCount(page);
        if (!PageFile::isDataPage(page) || PageFile::owner(page) != table.page
            || rows > jetfile::wire::mostRowsOfPage) {
            RowDecoder::writeUnreadable(
                table, QStringLiteral("pagina %1: dovrebbe contenere righe ed è illeggibile").arg(number),
                writer);
            written();
            continue;
        }
        for (int row = 0; row < rows; ++row) {
            const RowSlot slot = m_pages.slot(row);
            if (slot.deleted)
                continue;
            writeRow(table, {number, row}, slot, writer);
            written();
        }
    }
}

// The next page after that one which the file counts among the table's; 0 after the last.
quint32 TableScan::nextPage(const TableDefinition &table, quint32 page) const
{
    const MdbTableDef &native = *table.native;
    const qint32 next = mdb_map_find_next(m_pages.handle(), native.usage_map, unsigned(native.map_sz), page);
    if (next == 0)
        return 0;
    if (next < 0 || quint32(next) <= page)
        throw Damage(
            QStringLiteral("l'elenco delle pagine della tabella %1 è illeggibile").arg(table.table.name));
    m_pages.requirePage(quint32(next));
    return quint32(next);
}

void TableScan::writeRow(const TableDefinition &table, RowAddress place, const RowSlot &slot,
                         jetfile::wire::Writer &writer)
{
    Bytes bytes = slot.bytes;
    if (slot.moved)
        bytes =
            bytes.size() < addressSize ? Bytes() : movedRow(table, RowAddress::unpack(number32(bytes, 0)));
    m_decoder.write(table, bytes, place, writer);
}

// Empty when there is no such row.
Bytes TableScan::movedRow(const TableDefinition &table, RowAddress address)
{
    for (;;) {
        if (m_moved.contains(address.packed()))
            return {};
        m_moved.insert(address.packed());
        const Bytes page = m_otherPages.page(address.page);
        if (!PageFile::isDataPage(page) || PageFile::owner(page) != table.page
            || address.row >= m_otherPages.rowCount(page))
            return {};
        const RowSlot slot = m_otherPages.slot(address.row);
        if (!slot.deleted) // the scan comes across this row by itself; one that was moved is marked to be skipped
            return {};
        if (!slot.moved) {
            // Its memos are fetched through the same room.
            std::copy(slot.bytes.begin(), slot.bytes.end(), m_movedRow.begin());
            return Bytes(m_movedRow).first(slot.bytes.size());
        }
        if (slot.bytes.size() < addressSize)
            return {};
        address = RowAddress::unpack(number32(slot.bytes, 0));
    }
}

} // namespace jetreader
