// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Error.h"

#include <QString>
#include <memory>

struct sqlite3;

namespace dao {

// An open connection of SQLite's own interface.
class SqliteHandle {
public:
    // `name` is a file's path or, with the flag SQLITE_OPEN_URI, its address. Throws Error.
    SqliteHandle(const QString &name, int flags);

    // Reads a file as it stands, whoever has it open, and never writes; nobody may be writing to it. Throws
    // Error.
    static SqliteHandle asItStands(const QString &path);

    sqlite3 *get() const { return m_connection.get(); }

private:
    struct Close {
        void operator()(sqlite3 *connection) const;
    };
    std::unique_ptr<sqlite3, Close> m_connection;
};

// The last error of a connection; `sql` is what it failed on.
Error sqliteError(sqlite3 *connection, const QString &sql);

} // namespace dao
