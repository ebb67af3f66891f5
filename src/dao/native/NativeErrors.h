// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Error.h"

#include <QStringView>
#include <optional>
#include <utility>

namespace dao {

// A function that does not accept its arguments fails with the message "JET:<number>:<text>", the engine's
// error number and text: "JET:6:Overflow". Reads them from the message of a native error; empty for any other
// message.
std::optional<std::pair<int, QString>> functionError(QStringView nativeMessage);

// The error of a native one whose number is known: in the engine's own words where people meet it, the native
// text beside them.
Error describedError(int number, const QString &nativeText, const QString &sql);

} // namespace dao
