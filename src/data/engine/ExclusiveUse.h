// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <memory>

namespace dao {

// Keeps a database for one's own as long as it lives: nobody has it open, and nobody can open it.
class ExclusiveUse {
public:
    virtual ~ExclusiveUse() = default;
    // The database is about to get another name: from now on nothing is done any more by the one that it has.
    virtual void aboutToMove() = 0;
};

// Throws Error: Locked when somebody has the database of that name open.
std::unique_ptr<ExclusiveUse> useExclusively(const QString &name);

} // namespace dao
