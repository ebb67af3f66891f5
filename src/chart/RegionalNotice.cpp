// SPDX-License-Identifier: Apache-2.0
#include "chart/RegionalNotice.h"

#include "chart/WorkingState.h"
#include "values/JetValues.h"

namespace clivara {

void tellRegion(WorkingState &state, qint32 key)
{
    // The kind of network that is joined to the region's.
    if (jet::leadingNumber(state.settings.text(QStringLiteral("TIPORETE"))) != 1
        || !state.settings.isOn(QStringLiteral("MIR_ATTIVO")))
        return;
    const QString answer = state.connector.send(key, state.header.patientCode,
                                                state.settings.text(QStringLiteral("OSM_ASRIFT")));
    const bool done = answer.isEmpty();
    state.prompts.ask({QStringLiteral("OSM connector"),
                       done ? QStringLiteral("Operazione effettuata con successo.") : answer,
                       done ? PromptIcon::Information : PromptIcon::Warning});
}

} // namespace clivara
