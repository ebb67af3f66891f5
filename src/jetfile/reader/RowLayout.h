// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/reader/TableDefinition.h"

#include <optional>
#include <vector>

namespace jetreader {

// Where the values lie within the bytes of one row:
//
//   number of columns, fixed values, variable values, where each of these begins, how many they are, bitmap
//
// The bitmap holds one bit a column: whether it is not Null, or the value itself of a Yes/No column. A row
// that was written before columns were added to the table counts only those that there were.
class RowLayout {
public:
    explicit RowLayout(bool jet3)
        : m_jet3(jet3)
    {
    }

    // False when the bytes cannot be a row. They must stay where they are while the layout is asked.
    bool begin(Bytes row);

    bool bit(const Column &column) const
    {
        return column.number < m_columns
               && (m_row[m_bitmap + std::size_t(column.number / 8)] >> column.number % 8 & 1);
    }
    // The bytes of a column that is not Null; nothing when they would not lie within the row.
    std::optional<Bytes> value(const Column &column);

private:
    std::optional<Bytes> variableValue(std::size_t index);
    bool findVariableValues();
    bool findVariableValues3();
    bool findVariableValues4();

    bool m_jet3;
    Bytes m_row;
    int m_columns = 0;
    std::size_t m_bitmap = 0; // where it begins
    bool m_searched = false; // for variable values
    bool m_found = false;
    std::vector<std::size_t> m_starts; // of the variable values, and the end of the last one
};

} // namespace jetreader
