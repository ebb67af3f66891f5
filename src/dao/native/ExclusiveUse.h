// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace dao {

// Keeps a database for one's own as long as it lives: nobody has it open, and nobody can open it.
class ExclusiveUse {
public:
    virtual ~ExclusiveUse() = default;
    // The database is about to get another name: from now on nothing is done any more by the one that it has.
    virtual void aboutToMove() = 0;
};

} // namespace dao
