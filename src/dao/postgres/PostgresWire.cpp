// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresWire.h"

#include "dao/postgres/PostgresStatement.h"
#include "jetsql/NameLookup.h"

#include <QElapsedTimer>
#include <algorithm>
#include <cerrno>
#include <libpq-fe.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>

namespace dao {
namespace {

// The server ends a statement at its limit; its answer has this long to arrive.
constexpr int answerDelayMs = 2000;
// An attempt to connect that takes this long was to a server that does not answer; the next one comes after a
// rest.
constexpr qint64 slowAttemptMs = 1000;
constexpr qint64 restMs = 1000;

// Most answers come so soon that to sleep and be woken for them would take as long again.
constexpr qint64 quickAnswerNs = 1'000'000;

} // namespace

PostgresWire::PostgresWire(PostgresHandle connection, int answerTimeout)
    : m_handle(std::move(connection))
    , m_connection(m_handle.get())
    , m_statementLimitMs(answerTimeout * 1000)
{
}

bool PostgresWire::isOpen() const
{
    return PQstatus(m_connection) == CONNECTION_OK;
}

bool PostgresWire::isInTransaction() const
{
    const PGTransactionStatusType status = PQtransactionStatus(m_connection);
    return status == PQTRANS_INTRANS || status == PQTRANS_INERROR;
}

bool PostgresWire::open()
{
    if (!m_rest.hasExpired())
        return false;
    m_longWork = LongWork::None;
    m_wasSilent = false;
    QElapsedTimer time;
    time.start();
    // The library looks the name up for as long as that takes, and connects for as long as connect_timeout
    // allows.
    if (isNameAnswered(PQhost(m_connection)))
        PQreset(m_connection);
    if (isOpen())
        return true;
    if (time.hasExpired(slowAttemptMs))
        m_rest = QDeadlineTimer(restMs);
    return false;
}

void PostgresWire::giveUp()
{
    // The library reads the end at once then, wherever it is, and says no good-bye for which it would have to
    // wait.
    ::shutdown(PQsocket(m_connection), SHUT_RDWR);
    PQconsumeInput(m_connection);
}

QDeadlineTimer PostgresWire::patience() const
{
    if (m_longWork != LongWork::None)
        return QDeadlineTimer(QDeadlineTimer::Forever);
    return QDeadlineTimer(m_statementLimitMs + answerDelayMs);
}

// Until the server has sent something, which is taken in, or takes more of what is sent to it. False when
// there is nothing to wait for any more.
bool PostgresWire::waitForServer(bool mayWrite)
{
    pollfd socket{PQsocket(m_connection), POLLIN, 0};
    if (mayWrite)
        socket.events |= POLLOUT;
    const QDeadlineTimer limit = patience();
    int ready = 0;
    QElapsedTimer time;
    for (time.start(); ready == 0 && time.nsecsElapsed() < quickAnswerNs; std::this_thread::yield())
        ready = ::poll(&socket, 1, 0);
    if (ready <= 0) {
        do {
            ready = ::poll(&socket, 1, int(limit.remainingTime())); // -1: for ever
        } while (ready < 0 && errno == EINTR);
    }
    if (ready == 0) {
        m_wasSilent = true;
        giveUp();
        return false;
    }
    // The second time for what is decrypted already, which cannot be waited for: a record of TLS has up to 16
    // KB, and the library makes room for 8.
    return PQconsumeInput(m_connection) == 1 && PQconsumeInput(m_connection) == 1;
}

void PostgresWire::prepareToSend()
{
    // The limit of a transaction ends with it.
    if (m_longWork == LongWork::Transaction && !isInTransaction())
        m_longWork = LongWork::None;
    // A server that does not read must not keep the library from coming back.
    PQsetnonblocking(m_connection, 1);
}

void PostgresWire::send(const QByteArray &sql)
{
    prepareToSend();
    PQsendQuery(m_connection, sql.constData());
}

void PostgresWire::sendOne(const PostgresStatement &statement)
{
    PQsendQueryParams(m_connection, statement.sql().constData(), statement.count(), statement.types(),
                      statement.values(), statement.lengths(), statement.formats(), 0);
}

void PostgresWire::send(const PostgresStatement &statement)
{
    prepareToSend();
    sendOne(statement);
}

void PostgresWire::sendTogether(const PostgresStatement &statement, const QList<QByteArray> &further)
{
    prepareToSend();
    PQenterPipelineMode(m_connection);
    sendOne(statement);
    for (const QByteArray &each : further)
        PQsendQueryParams(m_connection, each.constData(), 0, nullptr, nullptr, nullptr, nullptr, 0);
    PQpipelineSync(m_connection);
}

void PostgresWire::endTogether()
{
    PQexitPipelineMode(m_connection);
}

PostgresResult PostgresWire::result()
{
    while (isOpen()) {
        const bool isMoreToSend = PQflush(m_connection) == 1;
        if ((!isMoreToSend && PQisBusy(m_connection) == 0) || !waitForServer(isMoreToSend))
            break;
    }
    return PostgresResult(PQgetResult(m_connection));
}

void PostgresWire::sendCopy(const QByteArray &rows)
{
    // The library takes no more than a whole number of bytes at once.
    constexpr qsizetype most = 1 << 20;
    for (qsizetype at = 0; at < rows.size(); at += most) {
        PQputCopyData(m_connection, rows.constData() + at, int(std::min(most, rows.size() - at)));
        while (isOpen() && PQflush(m_connection) == 1 && waitForServer(true)) { }
    }
    PQputCopyEnd(m_connection, nullptr);
}

} // namespace dao
