// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace dao {

// The account of a database server, as the host names it; empty texts leave it to the environment.
struct Account {
    QString user;
    QString password;
};

} // namespace dao
