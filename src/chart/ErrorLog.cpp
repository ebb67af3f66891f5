// SPDX-License-Identifier: Apache-2.0
#include "chart/ErrorLog.h"

#include "chart/WorkingState.h"

namespace clivara {

void logError(WorkingState &state, const QString &routine, const dao::Error &error)
{
    state.log.write(
        QStringLiteral("%1.%2 - Error %3 - ").arg(state.componentName, routine).arg(error.number())
        + error.text());
    if (dao::isConnectionLost(error.number()))
        tellUnreachable(state);
}

void tellUnreachable(WorkingState &state)
{
    if (std::exchange(state.unreachableTold, true))
        return;
    state.prompts.warn(
        QStringLiteral("Il server dell'archivio non è raggiungibile.\n"
                       "Quanto è mostrato può essere incompleto, e quanto è scritto non è salvato: "
                       "riprovare quando il server risponde."));
}

} // namespace clivara
