// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/ExclusiveUse.h"
#include "dao/native/Storage.h"

// The one place that knows which engines there are.
namespace dao {

// The storage of the engine that has the database of that name: a file, or a server's address.
std::unique_ptr<Storage> makeStorage(const QString &name);

// Throws Error: Locked when somebody has the database of that name open.
std::unique_ptr<ExclusiveUse> useExclusively(const QString &name);

} // namespace dao
