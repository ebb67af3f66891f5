// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/ExclusiveUse.h"
#include "dao/postgres/PostgresChannel.h"

namespace dao {

// A connection of its own that holds the lock which all others share.
class PostgresExclusiveUse final : public ExclusiveUse {
public:
    explicit PostgresExclusiveUse(const QString &address); // Locked
    void aboutToMove() override { }

    // What every connection that has the practice open says: it shares the lock. Somebody who has the
    // practice for himself alone is waited for as shortly as for any lock.
    static QString sharing();

private:
    std::unique_ptr<PostgresChannel> m_channel;
};

} // namespace dao
