// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/NativeCursor.h"
#include "dao/sqlite/SqliteStatement.h"

namespace dao {

// Reads through SQLite's own interface. Qt's driver describes every column of a result before the first row,
// which for the short results of the forms takes longer than the query.
class SqliteCursor final : public NativeCursor {
public:
    // Prepares the statement; throws Error.
    SqliteCursor(const Storage &storage, sqlite3 *connection, const QString &sql);
    bool next() override;
    QVariant value(int column) const override;

private:
    SqliteStatement m_statement;
};

} // namespace dao
