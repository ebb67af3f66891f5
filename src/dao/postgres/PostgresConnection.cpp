// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresConnection.h"

#include "dao/postgres/PostgresDialect.h"
#include "dao/postgres/PostgresFirstRows.h"
#include "dao/postgres/PostgresInsert.h"

namespace dao {
namespace {

// A lock of the whole practice, by a number that nothing else uses there, which each transaction holds.
const QString writeLock = QStringLiteral("pg_advisory_xact_lock(1869769079, 1)");

} // namespace

PostgresConnection::PostgresConnection(std::unique_ptr<PostgresChannel> channel)
    : m_channel(std::move(channel))
{
}

std::unique_ptr<NativeCursor> PostgresConnection::select(const QString &sql, const QVariantList &values)
{
    return std::make_unique<PostgresCursor>(m_channel->run(sql, values));
}

std::unique_ptr<NativeCursor> PostgresConnection::selectFirst(int rows, const QString &sql,
                                                              const QVariantList &values)
{
    return std::make_unique<PostgresFirstRows>(*m_channel, sql, values, rows);
}

std::unique_ptr<NativeCursor> PostgresConnection::stream(const QString &sql)
{
    return std::make_unique<PostgresStream>(m_channel->wire(), sql);
}

void PostgresConnection::write(const std::function<void()> &write)
{
    if (inTransaction()) {
        write();
        return;
    }
    try {
        m_channel->control(QStringLiteral("BEGIN; SELECT ") + m_commit.lock());
        write();
        m_commit.commit(*m_channel);
    } catch (const Error &) {
        if (inTransaction())
            m_channel->control(QStringLiteral("ROLLBACK"));
        throw;
    }
}

int PostgresConnection::execute(const QString &sql, const QVariantList &values)
{
    int affected = 0;
    write([&] { affected = PostgresChannel::affected(m_channel->run(sql, values).get()); });
    return affected;
}

qint64 PostgresConnection::insertRow(const QString &sql, const QVariantList &values,
                                     const QString &autoNumber)
{
    if (autoNumber.isEmpty()) {
        execute(sql, values);
        return 0;
    }
    qint64 number = 0;
    write([&] {
        PostgresCursor row(m_channel->run(
            sql + QStringLiteral(" RETURNING ") + PostgresDialect().identifier(autoNumber), values));
        number = row.next() ? row.value(0).toLongLong() : 0;
    });
    return number;
}

std::unique_ptr<NativeInsert> PostgresConnection::openInsert(const QString &nativeTable,
                                                             const QList<ColumnInfo> &columns)
{
    return std::make_unique<PostgresInsert>(*m_channel, nativeTable, columns);
}

void PostgresConnection::begin()
{
    // Takes the practice's write lock at once: a number that is the highest plus one stays the next one until
    // the transaction has written it.
    try {
        m_channel->control(QStringLiteral("BEGIN; SELECT %1, %2").arg(writeLock, m_commit.lock()));
        m_isWriting = true;
    } catch (const Error &) {
        if (inTransaction())
            m_channel->control(QStringLiteral("ROLLBACK"));
        throw;
    }
}

void PostgresConnection::beginReading()
{
    m_isWriting = false;
    m_channel->control(QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"));
    m_channel->beginLongWork(PostgresWire::LongWork::Transaction);
}

void PostgresConnection::commit()
{
    if (std::exchange(m_isWriting, false))
        m_commit.commit(*m_channel);
    else
        control(QStringLiteral("COMMIT"));
}

void PostgresConnection::control(const QString &sql)
{
    m_channel->control(sql);
}

bool PostgresConnection::inTransaction() const
{
    return m_channel->inTransaction();
}

Error PostgresConnection::goneTransaction() const
{
    // A statement that fails is undone alone: only the end of the connection takes the transaction with it.
    return Error(TransactionLost, connectionLost().text());
}

} // namespace dao
