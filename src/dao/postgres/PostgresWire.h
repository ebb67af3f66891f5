// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QSqlDatabase>

typedef struct pg_conn PGconn;
typedef struct pg_result PGresult;

namespace dao {

// The native connection that Qt's driver has opened, as something that may fall silent: whoever waits for the server
// waits with a limit. The server itself cuts a statement that takes too long, so one that has not answered some time
// after that will not answer any more; the connection is given up then, which takes no time and needs no answer.
class PostgresWire {
public:
    // The one of this open connection, which lives as long as Qt's driver.
    static PostgresWire &of(const QSqlDatabase &connection);

    // How long the server works on a statement. From now on nobody waits for a sign of it much longer.
    void setStatementLimit(int seconds);
    // What every new connection is told first.
    QByteArray greeting() const { return m_greeting; }
    void addToGreeting(const QByteArray &sql) { m_greeting += sql; }

    // While one lasts, the server may take its time: the caller lifts its limit as well.
    enum class LongWork { None, Transaction, Session };
    void setLongWork(LongWork work) { m_longWork = work; }

    bool isOpen() const;
    bool isInTransaction() const;
    // Whether the connection ended because the server gave no sign, not because it was closed.
    bool wasSilent() const { return m_wasSilent; }
    // Opens the connection again, without the greeting. After an attempt that took long it is false for a while
    // without another one: a form asks many things one after the other.
    bool open();
    void giveUp();

    // The statements as PQsendQuery takes them, and then their results as PQgetResult gives them.
    void send(const QByteArray &sql);
    PGresult *result();
    // The rows of a COPY, after which its result can be asked for.
    void sendCopy(const QByteArray &rows);

private:
    explicit PostgresWire(PGconn *connection)
        : m_connection(connection)
    {
    }
    QDeadlineTimer patience() const;
    bool waitForServer(bool mayWrite);

    PGconn *m_connection;
    QByteArray m_greeting;
    int m_statementLimitMs = 10000;
    LongWork m_longWork = LongWork::None;
    bool m_wasSilent = false;
    QDeadlineTimer m_rest; // no attempt to open the connection before
};

} // namespace dao
