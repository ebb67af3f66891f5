// SPDX-License-Identifier: Apache-2.0
#include "jetfile/reader/RowLayout.h"

#include <algorithm>

namespace jetreader {

bool RowLayout::begin(Bytes row)
{
    const std::size_t countSize = m_jet3 ? 1 : 2;
    if (row.size() <= countSize)
        return false;
    m_row = row;
    m_columns = m_jet3 ? row[0] : number16(row, 0);
    const std::size_t bitmapSize = std::size_t(m_columns + 7) / 8;
    if (m_columns == 0 || countSize + bitmapSize > row.size())
        return false;
    m_bitmap = row.size() - bitmapSize;
    m_searched = false;
    return true;
}

std::optional<Bytes> RowLayout::value(const Column &column)
{
    if (!column.fixed)
        return variableValue(column.variableIndex);
    const std::size_t start = column.offset + (m_jet3 ? 1 : 2);
    if (start + column.size > m_bitmap)
        return {};
    return m_row.subspan(start, column.size);
}

std::optional<Bytes> RowLayout::variableValue(std::size_t index)
{
    // Rows of tables without variable columns do not say where these begin: only asked for, they can be
    // searched.
    if (!m_searched) {
        m_searched = true;
        m_found = findVariableValues();
    }
    if (!m_found || index + 1 >= m_starts.size())
        return {};
    return m_row.subspan(m_starts[index], m_starts[index + 1] - m_starts[index]);
}

bool RowLayout::findVariableValues()
{
    m_starts.clear();
    if (!(m_jet3 ? findVariableValues3() : findVariableValues4()))
        return false;
    return std::is_sorted(m_starts.begin(), m_starts.end()) && m_starts.back() <= m_bitmap;
}

bool RowLayout::findVariableValues4()
{
    if (m_bitmap < 2)
        return false;
    const std::size_t count = number16(m_row, m_bitmap - 2);
    const std::size_t tableSize = 2 * (count + 1);
    if (m_bitmap - 2 < tableSize)
        return false;
    for (std::size_t i = 0; i <= count; ++i)
        m_starts.push_back(number16(m_row, m_bitmap - 2 - 2 * (i + 1)));
    return true;
}

// Places are single bytes here. For each 256 bytes of the row, a jump says from which value on the places lie
// one more times 256 bytes further.
bool RowLayout::findVariableValues3()
{
    std::size_t jumps = (m_row.size() - 1) / 256;
    if (m_bitmap < 1 + jumps + 1)
        return false;
    const std::size_t count = m_row[m_bitmap - 1];
    const std::size_t last = m_bitmap - 1 - jumps - 1; // of the table of places, which runs backwards
    if (last < count)
        return false;
    // The row's end, not that of its values, gives the number of jumps: the last one may be there for
    // nothing.
    if ((last - count) / 256 < jumps)
        --jumps;
    std::size_t used = 0;
    for (std::size_t i = 0; i <= count; ++i) {
        while (used < jumps && m_row[m_bitmap - 2 - used] == i)
            ++used;
        m_starts.push_back(m_row[last - i] + 256 * used);
    }
    return true;
}

} // namespace jetreader
