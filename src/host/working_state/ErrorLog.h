// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace dao {
class Error;
}

namespace clivara {

struct WorkingState;

// The line in the log for an error that ended a routine ("Problemi.CaricaTab_Visite").
void logError(WorkingState &state, const QString &routine, const dao::Error &error);

} // namespace clivara
