// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QDeadlineTimer;

namespace dao {

class PostgresChannel;

// The commits of one connection, numbered in a row of the server that is written with each of them. So a
// commit whose answer was lost with the connection can be told from one that was not done: what is repeated
// then is not saved twice.
class PostgresCommit {
public:
    PostgresCommit();

    // What follows BEGIN in a transaction that writes: holds a lock until the server has done with it.
    QString lock() const;
    // Commits. When the connection is lost meanwhile, finds out what became of it: throws ConnectionLost when
    // nothing was saved and CommitInDoubt when the server does not come back in time to tell.
    void commit(PostgresChannel &channel);

private:
    bool isDone(PostgresChannel &channel, const QDeadlineTimer &end) const;

    const qint64 m_session; // this connection's number among all
    qint64 m_number = 0; // of its last commit
};

} // namespace dao
