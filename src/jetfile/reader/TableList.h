// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/reader/TableScan.h"

namespace jetreader {

// The definitions of all user tables that the file's catalogue lists, in its order. Throws Damage.
std::vector<TableDefinition> readTableList(TableScan &scan);

} // namespace jetreader
