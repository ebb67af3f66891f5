// SPDX-License-Identifier: Apache-2.0
#include "dao/Engines.h"

#include "dao/postgres/PostgresAddress.h"
#include "dao/postgres/PostgresDialect.h"
#include "dao/sqlite/SqliteDialect.h"

namespace dao {

std::unique_ptr<SqlDialect> makeDialect(const QString &name)
{
    if (isServerAddress(name))
        return std::make_unique<PostgresDialect>();
    return std::make_unique<SqliteDialect>();
}

std::unique_ptr<ExclusiveUse> useExclusively(const QString &name)
{
    return makeDialect(name)->useExclusively(name);
}

} // namespace dao
