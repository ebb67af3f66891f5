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

SaveEnd trySave(WorkingState &state, WrittenRecord &record)
{
    if (!record.mayWrite())
        return SaveEnd::NotSaved;
    for (int refusals = 0;;) {
        switch (writeWaiting(record)) {
        case WriteResult::Done:
            return SaveEnd::Saved;
        case WriteResult::Failed:
            record.tellNotSaved(state);
            return SaveEnd::NotSaved;
        case WriteResult::Changed:
            switch (askAboutConflict(state, record.conflict())) {
            case ConflictChoice::BackToEditing:
                return SaveEnd::NotSaved;
            case ConflictChoice::Theirs:
                return SaveEnd::TheirsKept;
            case ConflictChoice::Mine:
                record.keepMine();
            }
            break;
        case WriteResult::Refused:
            // Another workstation has been quicker: the check sees now what the write has seen.
            if (!record.mayWrite())
                return SaveEnd::NotSaved;
            if (++refusals < maximumRefusals)
                break;
            record.tellNotSaved(state);
            return SaveEnd::NotSaved;
        case WriteResult::Vanished:
            if (state.prompts.ask({QStringLiteral("Attenzione!"),
                                   record.vanishedQuestion(),
                                   PromptIcon::Warning,
                                   {PromptButton::Yes, PromptButton::No},
                                   PromptButton::Yes})
                != PromptButton::Yes)
                return SaveEnd::NotSaved;
            record.becomeNew();
            if (!record.mayWrite())
                return SaveEnd::NotSaved;
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

SaveEnd saveRecord(WorkingState &state, const QString &form, WrittenRecord &record)
{
    try {
        return trySave(state, record);
    } catch (const dao::Error &error) {
        state.failure = error.number();
        state.unreachableTold = true; // in the words of a save
        logError(state, form + QStringLiteral(".Salva"), error);
        record.tellNotSaved(state);
        return SaveEnd::NotSaved;
    }
}

} // namespace clivara
