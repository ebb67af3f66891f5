// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringView>
#include <optional>
#include <utility>

struct sqlite3;

namespace dao {

// Registers the collation JET_TEXT and Jet's functions (named jet_...) on a native connection; throws Error.
// Also for tools that open a practice's file through SQLite's own interface.
void registerSqliteFunctions(sqlite3 *connection);

// A function that does not accept its arguments fails with the message "JET:<number>:<text>", the engine's
// error number and text: "JET:6:Overflow". Reads them from the message of a native error; empty for any other
// message.
std::optional<std::pair<int, QString>> functionError(QStringView nativeMessage);

} // namespace dao
