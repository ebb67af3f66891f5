// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/reader/LongValues.h"
#include "jetfile/reader/RowLayout.h"
#include "jetfile/reader/TableDefinition.h"
#include "jetfile/reader/TextDecoder.h"
#include "jetfile/wire/Wire.h"

namespace jetreader {

// Decodes rows and writes their values to the pipe.
class RowDecoder {
public:
    // Memos and binary objects come from `longValues`, whose page the row's bytes must not lie on.
    RowDecoder(const PageFile &file, LongValues &longValues);

    // Writes the row; what cannot be read of it becomes Null and is told in the row's problem. `place` says
    // where the row lies.
    void write(const TableDefinition &table, Bytes row, RowAddress place, jetfile::wire::Writer &writer);
    // Writes a row of Nulls with that problem.
    static void writeUnreadable(const TableDefinition &table, const QString &problem,
                                jetfile::wire::Writer &writer);

private:
    QString writeValue(const Column &column, Bytes bytes, jetfile::wire::Writer &writer);
    QString writeText(Bytes bytes, jetfile::wire::Writer &writer);

    LongValues &m_longValues;
    RowLayout m_layout;
    TextDecoder m_text;
};

} // namespace jetreader
