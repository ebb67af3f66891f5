// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/postgres/PostgresHandle.h"

#include <QByteArray>
#include <QDeadlineTimer>

namespace dao {

class PostgresStatement;

// A native connection as something that may fall silent: whoever waits for the server waits with a limit. The
// server itself cuts a statement that takes too long, so one that has not answered some time after that will
// not answer any more; the connection is given up then, which takes no time and needs no answer.
class PostgresWire {
public:
    // A connection that is open; the server works on a statement for so many seconds.
    PostgresWire(PostgresHandle connection, int answerTimeout);

    PGconn *connection() const { return m_connection; }
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
    // Opens the connection again, without the greeting. After an attempt that took long it is false for a
    // while without another one: a form asks many things one after the other.
    bool open();
    void giveUp();

    // Statements without values, as PQsendQuery() takes them, or one with values. Their results follow.
    void send(const QByteArray &sql);
    void send(const PostgresStatement &statement);
    // One with values and further ones without, in one message, each with results of its own; the last result
    // is PGRES_PIPELINE_SYNC. Then endTogether().
    void sendTogether(const PostgresStatement &statement, const QList<QByteArray> &further);
    void endTogether();
    // Waits for the next result, as PQgetResult() gives it: null after the last one of a statement.
    PostgresResult result();
    // The rows of a COPY, after which its result can be asked for.
    void sendCopy(const QByteArray &rows);

private:
    void prepareToSend();
    void sendOne(const PostgresStatement &statement);
    QDeadlineTimer patience() const;
    bool waitForServer(bool mayWrite);

    PostgresHandle m_handle;
    PGconn *m_connection;
    QByteArray m_greeting;
    int m_statementLimitMs;
    LongWork m_longWork = LongWork::None;
    bool m_wasSilent = false;
    QDeadlineTimer m_rest; // no attempt to open the connection before
};

} // namespace dao
