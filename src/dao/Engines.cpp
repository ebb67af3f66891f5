// SPDX-License-Identifier: Apache-2.0
#include "dao/Engines.h"

#include "dao/postgres/PostgresAddress.h"
#include "dao/postgres/PostgresStorage.h"
#include "dao/sqlite/SqliteStorage.h"

namespace dao {

std::unique_ptr<Storage> makeStorage(const QString &name)
{
    if (isServerAddress(name))
        return std::make_unique<PostgresStorage>();
    return std::make_unique<SqliteStorage>();
}

std::unique_ptr<ExclusiveUse> useExclusively(const QString &name)
{
    return makeStorage(name)->useExclusively(name);
}

} // namespace dao
