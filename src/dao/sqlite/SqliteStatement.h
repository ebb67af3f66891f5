// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QCache>
#include <QString>
#include <QVariantList>
#include <memory>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace dao {

// A prepared statement of SQLite's own interface. Errors are thrown as Error.
class SqliteStatement {
public:
    // `flags` as sqlite3_prepare_v3() takes them.
    SqliteStatement(sqlite3 *connection, const QString &sql, unsigned flags = 0);

    const QString &sql() const { return m_sql; }
    // The values of the marks, in their order, of the types that a recordset's fields have. An invalid
    // variant is Null.
    void bind(const QVariantList &values);
    // True when it stands on a row, false when it is done.
    bool step();
    // Steps to the end.
    void run();
    // Ready to be done again, without values.
    void reset();
    // A column of the row as it is stored: whole number, double, QString or QByteArray; Null is an invalid
    // variant.
    QVariant value(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt *statement) const;
    };
    int bind(int position, const QVariant &value);
    [[noreturn]] void fail() const;

    sqlite3 *m_connection;
    QString m_sql;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
    std::vector<QByteArray> m_texts; // the bytes that the statement reads, by position
};

// The prepared statements of a connection that were used last, by their SQL: forms ask the same again each
// time that they are shown. Not for PRAGMA: some of them do their work while they are prepared.
class SqliteStatements {
public:
    explicit SqliteStatements(sqlite3 *connection);

    struct GiveBack {
        SqliteStatements *to = nullptr;
        void operator()(SqliteStatement *statement) const;
    };
    using Lease = std::unique_ptr<SqliteStatement, GiveBack>;
    // The statement is the caller's until it lets it go, which must be before this object does. Throws Error.
    Lease take(const QString &sql);

private:
    sqlite3 *m_connection;
    QCache<QString, SqliteStatement> m_kept;
};

} // namespace dao
