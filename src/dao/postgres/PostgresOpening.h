// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Account.h"
#include "dao/postgres/PostgresAddress.h"
#include "dao/postgres/PostgresChannel.h"

namespace dao {

// Opens a connection to a database of the address's server as the address, the account and the environment
// say. Throws Error; its SQL is missingDatabaseMark when the server has no such database.
std::unique_ptr<PostgresChannel> openPostgres(const PostgresAddress &address, const Account &account,
                                              const QString &database);
inline const QString missingDatabaseMark = QStringLiteral("CREATE DATABASE");

} // namespace dao
