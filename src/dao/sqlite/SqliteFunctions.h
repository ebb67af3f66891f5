// SPDX-License-Identifier: Apache-2.0
#pragma once

struct sqlite3;

namespace dao {

// Registers the collation JET_TEXT and Jet's functions (named jet_...) on a native connection; throws Error.
// Also for tools that open a practice's file through SQLite's own interface.
void registerSqliteFunctions(sqlite3 *connection);

} // namespace dao
