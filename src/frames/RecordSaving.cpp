// SPDX-License-Identifier: Apache-2.0
#include "frames/RecordSaving.h"

#include "data/engine/Error.h"
#include "host/working_state/ErrorLog.h"
#include "host/working_state/WorkingState.h"
#include "support/ui/WaitCursor.h"

namespace clivara {

namespace {

bool trySave(WorkingState &state, WrittenRecord &record)
{
    for (;;) {
        if (!record.mayWrite())
            return false;
        WriteResult result = WriteResult::Failed;
        {
            const WaitCursor waiting; // for another workstation it takes some seconds
            result = record.write();
        }
        switch (result) {
        case WriteResult::Done:
            return true;
        case WriteResult::Failed:
            state.prompts.warn(
                QStringLiteral("Salvataggio non riuscito: l'archivio è occupato o non si può scrivere.\n"
                               "Quanto scritto resta nella finestra: riprovare tra poco."));
            return false;
        case WriteResult::Vanished:
            if (state.prompts.ask({QStringLiteral("Attenzione!"),
                                   record.vanishedQuestion(),
                                   PromptIcon::Warning,
                                   {PromptButton::Yes, PromptButton::No},
                                   PromptButton::Yes})
                != PromptButton::Yes)
                return false;
            record.becomeNew();
        }
    }
}

} // namespace

bool saveRecord(WorkingState &state, const QString &form, WrittenRecord &record)
{
    try {
        return trySave(state, record);
    } catch (const dao::Error &error) {
        logError(state, form + QStringLiteral(".Salva"), error);
        state.prompts.warn(QStringLiteral("Salvataggio non riuscito: l'archivio non risponde.\n"
                                          "Quanto scritto resta nella finestra: riprovare tra poco."));
        return false;
    }
}

} // namespace clivara
