// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Account.h"
#include "dao/native/ExclusiveUse.h"
#include "dao/native/Storage.h"

// The one place that knows which engines there are.
namespace dao {

// Where the database, or the practice, of that name is kept: it is a path, or a server's address.
StorageKind storageKind(const QString &name);

// The full name of a database, as it is kept in links and shown: a path, or an address without its password.
// Throws Error (CannotFindFile) for an address that is none.
QString fullName(const QString &name);

// Whether two names lead to the same database; false when neither file is there.
bool isSameDatabase(const QString &one, const QString &other);

// A connection that is to reach the database of that name. Throws Error.
std::unique_ptr<Storage> openStorage(const QString &name, const Account &account);

// Throws Error: Locked when somebody has the database of that name open.
std::unique_ptr<ExclusiveUse> useExclusively(const QString &name);

} // namespace dao
