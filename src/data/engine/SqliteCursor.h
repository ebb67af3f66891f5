// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "data/engine/NativeCursor.h"

#include <QString>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace dao {

class SqlDialect;

// Reads through SQLite's own interface. Qt's driver describes every column of a result before the first row,
// which for the short results of the forms takes longer than the query.
class SqliteCursor final : public NativeCursor {
public:
    // Prepares the statement; throws Error.
    SqliteCursor(const SqlDialect &dialect, sqlite3 *connection, const QString &sql);
    bool next() override;
    QVariant value(int column) const override;

private:
    struct Finalize {
        void operator()(sqlite3_stmt *statement) const;
    };

    [[noreturn]] void fail() const;

    const SqlDialect &m_dialect;
    sqlite3 *m_connection;
    QString m_sql;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

} // namespace dao
