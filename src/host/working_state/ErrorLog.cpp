// SPDX-License-Identifier: Apache-2.0
#include "host/working_state/ErrorLog.h"

#include "host/working_state/WorkingState.h"

namespace clivara {

void logError(WorkingState &state, const QString &routine, const dao::Error &error)
{
    state.log.write(
        QStringLiteral("%1.%2 - Error %3 - ").arg(state.componentName, routine).arg(error.number())
        + error.text());
}

} // namespace clivara
