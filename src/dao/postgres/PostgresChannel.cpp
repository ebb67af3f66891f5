// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresChannel.h"

#include "dao/postgres/PostgresStatement.h"

#include <cstdlib>
#include <libpq-fe.h>

namespace dao {
namespace {

// Inside a transaction the state before the next statement is always kept, so that a statement that fails is
// undone alone: the server itself would give up the whole transaction.
const QByteArray keepState = QByteArrayLiteral("; SAVEPOINT statement");
const QByteArray keepNewState = QByteArrayLiteral("; RELEASE statement; SAVEPOINT statement");
const QByteArray returnToState = QByteArrayLiteral("ROLLBACK TO statement");

// That a connection is gone is often found out only by using it. What has certainly changed nothing is sent
// again.
bool doesChangeNothing(const QString &sql)
{
    return sql.startsWith(QLatin1String("SELECT ")) || sql.startsWith(QLatin1String("BEGIN"));
}

} // namespace

Error connectionLost(const QString &sql)
{
    return Error(ConnectionLost, QStringLiteral("Il collegamento con il server dei database si è interrotto"),
                 sql);
}

PostgresChannel::PostgresChannel(PostgresHandle connection, int answerTimeout)
    : m_wire(std::move(connection), answerTimeout)
{
}

void PostgresChannel::beginLongWork(PostgresWire::LongWork work)
{
    const QString scope = work == PostgresWire::LongWork::Transaction ? QStringLiteral("LOCAL") : QString();
    run(QStringLiteral("SET %1 statement_timeout = 0; SET %1 idle_in_transaction_session_timeout = 0")
            .arg(scope));
    m_wire.setLongWork(work);
}

void PostgresChannel::endLongWork()
{
    run(QString::fromUtf8(m_wire.greeting()));
    m_wire.setLongWork(PostgresWire::LongWork::None);
}

int PostgresChannel::affected(const PGresult *result)
{
    return std::atoi(PQcmdTuples(const_cast<PGresult *>(result)));
}

void PostgresChannel::requireConnection(const QString &sql)
{
    if (m_wire.isOpen())
        return;
    if (!m_wire.open())
        throw connectionLost(sql);
    try {
        send(m_wire.greeting(), sql);
    } catch (const Error &) {
        m_wire.giveUp(); // it is not to be used without
        throw;
    }
}

PostgresResult PostgresChannel::send(const QByteArray &sql, const QString &shown)
{
    m_wire.send(sql);
    return results(shown);
}

// Outside a transaction, where a connection that is gone is opened again, so that nobody hears of a server
// that is back already.
PostgresResult PostgresChannel::outside(const Send &send, bool changesNothing, const QString &shown)
{
    requireConnection(shown);
    try {
        return send();
    } catch (const Error &error) {
        // Whoever has waited for a silent server is not made to wait for it a second time.
        if (error.number() != ConnectionLost || !changesNothing || m_wire.wasSilent())
            throw;
    }
    requireConnection(shown);
    return send();
}

// Inside a transaction, where what fails is undone alone.
PostgresResult PostgresChannel::inside(const Send &send, const QString &shown)
{
    try {
        return send();
    } catch (const Error &) {
        if (PQtransactionStatus(m_wire.connection()) == PQTRANS_INERROR)
            this->send(returnToState, shown);
        throw;
    }
}

// Waits for what the server answers to what was sent.
PostgresResult PostgresChannel::results(const QString &shown)
{
    PostgresResult useful;
    PostgresResult failed;
    while (PostgresResult result = m_wire.result()) {
        const ExecStatusType status = PQresultStatus(result.get());
        if (status == PGRES_COPY_IN) {
            if (!m_wire.isOpen())
                break;
            return result; // the rows are to come
        }
        if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK && status != PGRES_EMPTY_QUERY)
            failed = std::move(result);
        else if (!useful || status == PGRES_TUPLES_OK || *PQcmdTuples(result.get()) != '\0')
            useful = std::move(result);
    }
    if (!m_wire.isOpen())
        throw connectionLost(shown);
    if (!failed && useful)
        return useful;
    throw postgresError(m_wire.connection(), failed.get(), shown);
}

// The same for statements that were sent together: the result of the first one.
PostgresResult PostgresChannel::resultsTogether(const QString &shown)
{
    PostgresResult first;
    PostgresResult failed;
    // A null result ends those of one statement; a second one would mean that nothing comes any more.
    for (int nulls = 0; nulls < 2 && m_wire.isOpen();) {
        PostgresResult result = m_wire.result();
        nulls = result ? 0 : nulls + 1;
        if (!result)
            continue;
        const ExecStatusType status = PQresultStatus(result.get());
        if (status == PGRES_PIPELINE_SYNC)
            break;
        if (status == PGRES_TUPLES_OK || status == PGRES_COMMAND_OK) {
            if (!first)
                first = std::move(result);
        } else if (status != PGRES_PIPELINE_ABORTED && !failed) {
            failed = std::move(result);
        }
    }
    m_wire.endTogether();
    if (!m_wire.isOpen())
        throw connectionLost(shown);
    if (!failed && first)
        return first;
    throw postgresError(m_wire.connection(), failed.get(), shown);
}

PostgresResult PostgresChannel::run(const QString &sql, const QVariantList &values)
{
    if (values.isEmpty()) {
        const QByteArray text = sql.toUtf8();
        return inTransaction() ? inside([&] { return send(text + keepNewState, sql); }, sql)
                               : outside([&] { return send(text, sql); }, doesChangeNothing(sql), sql);
    }
    const PostgresStatement statement(sql, values);
    if (!inTransaction())
        return outside(
            [&] {
                m_wire.send(statement);
                return results(sql);
            },
            doesChangeNothing(sql), sql);
    return inside(
        [&] {
            m_wire.sendTogether(statement, {QByteArrayLiteral("RELEASE statement"),
                                            QByteArrayLiteral("SAVEPOINT statement")});
            return resultsTogether(sql);
        },
        sql);
}

void PostgresChannel::copyIn(const QString &sql, const QByteArray &rows)
{
    const bool isInside = inTransaction();
    if (!isInside)
        requireConnection(sql);
    inside(
        [&] {
            send(sql.toUtf8(), sql);
            m_wire.sendCopy(rows);
            PostgresResult result = results(sql);
            return isInside ? send(keepNewState, sql) : std::move(result);
        },
        sql);
}

void PostgresChannel::control(const QString &sql)
{
    const bool opens = sql.startsWith(u"BEGIN") || sql.startsWith(u"SAVEPOINT ");
    const QByteArray text = sql.toUtf8()
                            + (opens                         ? keepState
                               : sql.startsWith(u"RELEASE ") ? keepNewState
                                                             : QByteArray());
    const PostgresResult result = inTransaction()
                                      ? send(text, sql)
                                      : outside([&] { return send(text, sql); }, doesChangeNothing(sql), sql);
    // A transaction that cannot be committed any more is rolled back without an error.
    if (sql == u"COMMIT" && qstrcmp(PQcmdStatus(result.get()), "COMMIT") != 0)
        throw Error(TransactionError,
                    QStringLiteral("La transazione è stata annullata da un errore precedente"));
}

void PostgresChannel::commit(const QString &mark)
{
    if (PQtransactionStatus(m_wire.connection()) == PQTRANS_INTRANS) {
        try {
            send(mark.toLatin1() + "; COMMIT", mark);
            return;
        } catch (const Error &) {
            if (PQtransactionStatus(m_wire.connection()) != PQTRANS_INERROR)
                throw; // not the mark: the commit was refused, or the connection is gone
            send(returnToState, mark);
        }
    }
    control(QStringLiteral("COMMIT"));
}

} // namespace dao
