// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetTable.h"
#include "jetfile/wire/Wire.h"

namespace jetfile::wire {

void putTables(Writer &writer, const QList<JetTable> &tables);

// Throws Error on anything that no Jet file can hold: too many columns, an unknown type, an index without
// fields...
QList<JetTable> takeTables(Reader &reader);

} // namespace jetfile::wire
