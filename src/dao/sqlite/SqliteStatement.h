// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace dao {

class Storage;

// A prepared statement of SQLite's own interface. Errors are thrown as Error.
class SqliteStatement {
public:
    SqliteStatement(const Storage &storage, sqlite3 *connection, const QString &sql);

    sqlite3_stmt *get() const { return m_statement.get(); }
    // True when it stands on a row, false when it is done.
    bool step();
    // Ready to be done again, with the values bound so far.
    void reset();
    // Throws the connection's last error.
    [[noreturn]] void fail() const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt *statement) const;
    };

    const Storage &m_storage;
    sqlite3 *m_connection;
    QString m_sql;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

} // namespace dao
