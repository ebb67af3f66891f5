// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/ExclusiveUse.h"
#include "dao/sqlite/SqliteHandle.h"

namespace dao {

// A connection of its own whose lock nobody else's can stand beside.
class SqliteExclusiveUse final : public ExclusiveUse {
public:
    explicit SqliteExclusiveUse(const QString &path); // Locked
    void aboutToMove() override;

private:
    SqliteHandle m_handle;
};

} // namespace dao
