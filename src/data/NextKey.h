// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace dao {
class Database;
}

namespace clivara {

// The highest key of a table plus 1; 1 for an empty table. It stays free only within the transaction that
// asks. Throws dao::Error.
qint32 nextKey(dao::Database &database, const QString &table, const QString &field);

} // namespace clivara
