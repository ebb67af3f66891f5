// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/postgres/PostgresHandle.h"

namespace dao {

// Why a connection cannot be opened, in a few Italian words. It is found out by asking the server, not by
// reading its answer, which comes in the language of the server or of the workstation.
struct PostgresFailure {
    enum class Reason { NoAnswer, WrongAccount, NoSuchDatabase, NoRight, Other };
    Reason reason = Reason::Other;
    QString text;

    // After the connection with these options did not open; `answer` is what the library said of it.
    static PostgresFailure find(const PostgresOptions &options, const QString &answer);
};

} // namespace dao
