// SPDX-License-Identifier: Apache-2.0
#include "chart/RecordSaving.h"

#include "chart/ErrorLog.h"
#include "chart/WorkingState.h"
#include "jetsql/Error.h"
#include "support/ui/WaitCursor.h"

namespace clivara {

namespace {

constexpr int maximumRefusals = 3; // of one save, when its check finds nothing wrong each time

WriteResult writeWaiting(WrittenRecord &record)
{
    const WaitCursor waiting; // for another workstation it takes some seconds
    return record.write();
}

WriteResult trySave(WorkingState &state, WrittenRecord &record)
{
    if (!record.mayWrite())
        return WriteResult::Refused;
    for (int refusals = 0;;) {
        const WriteResult result = writeWaiting(record);
        switch (result.outcome) {
        case WriteResult::Done:
        case WriteResult::TheirsKept:
            return result;
        case WriteResult::Failed:
            record.tellNotSaved(state, result.error);
            return result;
        case WriteResult::Changed:
            switch (askAboutConflict(state, record.conflict())) {
            case ConflictChoice::BackToEditing:
                return result;
            case ConflictChoice::Theirs:
                return WriteResult::TheirsKept;
            case ConflictChoice::Mine:
                record.keepMine();
            }
            break;
        case WriteResult::Refused:
            // Another workstation has been quicker: the check sees now what the write has seen.
            if (!record.mayWrite())
                return result;
            if (++refusals < maximumRefusals)
                break;
            record.tellNotSaved(state, result.error);
            return result;
        case WriteResult::Vanished:
            if (state.prompts.ask({QStringLiteral("Attenzione!"),
                                   record.vanishedQuestion(),
                                   PromptIcon::Warning,
                                   {PromptButton::Yes, PromptButton::No},
                                   PromptButton::Yes})
                != PromptButton::Yes)
                return result;
            record.becomeNew();
            if (!record.mayWrite())
                return WriteResult::Refused;
        }
    }
}

} // namespace

RecordConflict conflictOf(const QString &event, const QStringList &captions, const ShownVersions &shown,
                          const LastWrite &before, const LastWrite &there)
{
    RecordConflict conflict;
    conflict.event = event;
    conflict.before = before;
    conflict.there = there;
    for (qsizetype i = 0; i < captions.size(); ++i)
        conflict.fields.append({captions[i], shown.read[i], shown.mine[i], shown.stored[i]});
    return conflict;
}

WriteResult saveRecord(WorkingState &state, const QString &form, WrittenRecord &record)
{
    try {
        return trySave(state, record);
    } catch (const dao::Error &error) {
        state.unreachableTold = true; // in the words of a save
        logError(state, form + QStringLiteral(".Salva"), error);
        record.tellNotSaved(state, error.number());
        return {WriteResult::Failed, error.number()};
    }
}

} // namespace clivara
