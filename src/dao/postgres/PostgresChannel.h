// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/postgres/PostgresWire.h"

#include <QVariantList>
#include <functional>

namespace dao {

// Nothing of the transaction, or of the statement outside one, was saved.
Error connectionLost(const QString &sql = {});

// Statements on a native connection, each in one round trip. Inside a transaction a statement that fails is
// undone alone: the transaction goes on. A connection that was lost is opened again by the next statement
// that stands outside transactions; one that only reads is then sent again by itself.
class PostgresChannel {
public:
    PostgresChannel(PostgresHandle connection, int answerTimeout);

    PostgresWire &wire() { return m_wire; }
    const PostgresWire &wire() const { return m_wire; }

    // One statement whose values take the place of the marks '?', or several without values; the result is
    // the last one's that has rows or counts them. Throws Error.
    PostgresResult run(const QString &sql, const QVariantList &values = {});
    // BEGIN, COMMIT and the like: nothing around them.
    void control(const QString &sql);
    // COMMIT together with a statement before it that is left out when it fails. ConnectionLost leaves open
    // whether it was done.
    void commit(const QString &mark);
    bool inTransaction() const { return m_wire.isInTransaction(); }
    // Lets statements take as long as they need, until the transaction or the session ends.
    void beginLongWork(PostgresWire::LongWork work);
    // Ends what lasts as long as the session.
    void endLongWork();

    // COPY ... FROM STDIN with these rows as its text.
    void copyIn(const QString &sql, const QByteArray &rows);

    static int affected(const PGresult *result);

private:
    using Send = std::function<PostgresResult()>;
    PostgresResult send(const QByteArray &sql, const QString &shown);
    PostgresResult outside(const Send &send, bool changesNothing, const QString &shown);
    PostgresResult inside(const Send &send, const QString &shown);
    PostgresResult results(const QString &shown);
    PostgresResult resultsTogether(const QString &shown);
    void requireConnection(const QString &sql);

    PostgresWire m_wire;
};

} // namespace dao
