// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/NativeCursor.h"
#include "dao/postgres/PostgresAddress.h"
#include "dao/postgres/PostgresWire.h"
#include "jetsql/Error.h"

#include <QSqlDatabase>
#include <QVariantList>
#include <memory>

namespace dao {

class Storage;
struct Account;

struct ClearPostgresResult {
    void operator()(PGresult *result) const;
};
using PostgresResult = std::unique_ptr<PGresult, ClearPostgresResult>;

// Nothing of the transaction, or of the statement outside one, was saved.
Error connectionLost(const QString &sql = {});

// Statements on the native connection that Qt's driver has opened, each in one round trip. Inside a transaction
// a statement that fails is undone alone: the transaction goes on. A connection that was lost is opened again by
// the next statement that stands outside transactions; one that only reads is then sent again by itself.
class PostgresConnection {
public:
    PostgresConnection(const Storage &storage, const QSqlDatabase &connection);

    // One statement or several; the result is the last one's that has rows or counts them. The values take the
    // place of the marks '?', as literals. Throws Error.
    PostgresResult run(const QString &sql, const QVariantList &values = {});
    // BEGIN, COMMIT and the like: nothing around them.
    void control(const QString &sql);
    // COMMIT together with a statement before it that is left out when it fails. ConnectionLost leaves open whether it
    // was done.
    void commit(const QString &mark);
    bool inTransaction() const;
    // Lets statements take as long as they need, until the transaction or the session ends.
    void beginLongWork(PostgresWire::LongWork work);
    // Ends what lasts as long as the session.
    void endLongWork();

    // COPY ... FROM STDIN with these rows as its text.
    void copyIn(const QString &sql, const QByteArray &rows);

    static int affected(const PGresult *result);
    static int serverVersion(const QSqlDatabase &connection); // 150004 for 15.4

private:
    QByteArray withValues(const QString &sql, const QVariantList &values) const;
    QByteArray literal(const QVariant &value) const;
    PostgresResult send(const QByteArray &sql, const QString &shown);
    PostgresResult sendOutside(const QByteArray &sql, const QString &shown);
    PostgresResult results(const QString &shown);
    void requireConnection(const QString &sql);

    const Storage &m_storage;
    PGconn *m_connection;
    PostgresWire &m_wire;
};

// Opens a connection to a database of the address's server as the address, the account and the environment say.
// Throws Error; its SQL is missingDatabaseMark when the server has no such database.
void openPostgres(const Storage &storage, QSqlDatabase &connection, const PostgresAddress &address,
                  const Account &account, const QString &database);
inline const QString missingDatabaseMark = QStringLiteral("CREATE DATABASE");

// The rows of a result that has come whole.
class PostgresCursor final : public NativeCursor {
public:
    explicit PostgresCursor(PostgresResult result);
    bool next() override { return ++m_row < m_rows; }
    QVariant value(int column) const override;
    int rowCount() const { return m_rows; }
    int columnCount() const;
    void restart() { m_row = -1; } // before the first row

private:
    PostgresResult m_result;
    int m_row = -1;
    int m_rows;
};

// The rows of a statement as they come, for tables that are too large to be kept in memory. Until it goes away the
// connection can do nothing else.
class PostgresStream final : public NativeCursor {
public:
    PostgresStream(const Storage &storage, const QSqlDatabase &connection, const QString &sql);
    ~PostgresStream() override;
    PostgresStream(const PostgresStream &) = delete;
    PostgresStream &operator=(const PostgresStream &) = delete;
    bool next() override;
    QVariant value(int column) const override { return m_row->value(column); }

private:
    struct Private;
    std::unique_ptr<Private> d;
    std::unique_ptr<PostgresCursor> m_row;
};

} // namespace dao
