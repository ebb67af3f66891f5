// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteConnection.h"

#include "dao/sqlite/SqliteDialect.h"
#include "dao/sqlite/SqliteFunctions.h"

#include <QThread>
#include <sqlite3.h>

namespace dao {
namespace {

// Waits for another workstation's lock, some 250 ms in all. All who wait look equally often, so that whoever
// has come last is not served before the others again and again, as with SQLite's own growing pauses.
int waitForLock(void *, int attempts)
{
    constexpr int quickAttempts = 10;
    constexpr int mostAttempts = quickAttempts + 48;
    if (attempts >= mostAttempts)
        return 0;
    QThread::msleep(attempts < quickAttempts ? 1 : 5);
    return 1;
}

class SqliteCursor final : public NativeCursor {
public:
    explicit SqliteCursor(SqliteStatements::Lease statement)
        : m_statement(std::move(statement))
    {
    }
    bool next() override { return m_statement->step(); }
    QVariant value(int column) const override { return m_statement->value(column); }

private:
    SqliteStatements::Lease m_statement;
};

class SqliteInsert final : public NativeInsert {
public:
    explicit SqliteInsert(SqliteStatements::Lease statement)
        : m_statement(std::move(statement))
    {
    }
    void add(const QVariantList &values) override
    {
        m_statement->reset(); // the row before may have been refused
        m_statement->bind(values);
        m_statement->run();
        m_statement->reset();
    }

private:
    SqliteStatements::Lease m_statement;
};

} // namespace

// The wait is short: callers that want to try longer do so between attempts that the user can see.
SqliteConnection::SqliteConnection()
    : m_handle(QStringLiteral(":memory:"),
               SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX)
    , m_statements(m_handle.get())
{
    sqlite3_busy_handler(handle(), waitForLock, nullptr);
    registerSqliteFunctions(handle());
    for (const char *setting : {"PRAGMA foreign_keys = ON", "PRAGMA temp_store = MEMORY"})
        SqliteStatement(handle(), QString::fromLatin1(setting)).run();
}

std::unique_ptr<NativeCursor> SqliteConnection::select(const QString &sql, const QVariantList &values)
{
    SqliteStatements::Lease statement = m_statements.take(sql);
    statement->bind(values);
    return std::make_unique<SqliteCursor>(std::move(statement));
}

int SqliteConnection::execute(const QString &sql, const QVariantList &values)
{
    const SqliteStatements::Lease statement = m_statements.take(sql);
    statement->bind(values);
    statement->run();
    return sqlite3_changes(handle());
}

qint64 SqliteConnection::insertRow(const QString &sql, const QVariantList &values, const QString &autoNumber)
{
    execute(sql, values);
    return autoNumber.isEmpty() ? 0 : sqlite3_last_insert_rowid(handle());
}

std::unique_ptr<NativeInsert> SqliteConnection::openInsert(const QString &nativeTable,
                                                           const QList<ColumnInfo> &columns)
{
    return std::make_unique<SqliteInsert>(
        m_statements.take(SqliteDialect().insertStatement(nativeTable, columns)));
}

void SqliteConnection::begin()
{
    // Takes the write lock at once: a transaction that reads first could not get it any more after another
    // process has written.
    control(QStringLiteral("BEGIN IMMEDIATE"));
}

void SqliteConnection::commit()
{
    control(QStringLiteral("COMMIT"));
}

void SqliteConnection::control(const QString &sql)
{
    m_statements.take(sql)->run();
}

bool SqliteConnection::inTransaction() const
{
    return sqlite3_get_autocommit(handle()) == 0;
}

Error SqliteConnection::goneTransaction() const
{
    return Error(TransactionError,
                 QStringLiteral("La transazione è stata annullata da un errore precedente"));
}

} // namespace dao
