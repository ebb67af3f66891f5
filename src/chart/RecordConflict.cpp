// SPDX-License-Identifier: Apache-2.0
#include "chart/RecordConflict.h"

#include "chart/FormOpener.h"
#include "chart/WorkingState.h"
#include "data/Identity.h"
#include "values/JetValues.h"

namespace clivara {

LastWrite lastWrite(dao::Recordset &row)
{
    return {normaliseUid(row.Fields(QStringLiteral("sAuthorUid")).text()),
            row.Fields(QStringLiteral("dLastModifiedDate")).date()};
}

QString conflictSentence(WorkingState &state, const RecordConflict &conflict)
{
    QString name;
    QDateTime when;
    if (conflict.there
        != conflict.before) { // a program that does not stamp leaves the stamp of an older write
        when = conflict.there.when;
        try {
            name = doctorName(conflict.there.author, state.doctors());
        } catch (const dao::Error &) {
            // The name is only not known.
        }
    }
    QString sentence = conflict.event;
    if (!name.isEmpty())
        sentence += QStringLiteral(" da ") + name;
    if (when.isValid())
        sentence += QStringLiteral(" il ") + jet::formatDate(when, u"dd/mm/yyyy");
    // A day without an hour is all that some programs and tables note.
    if (when.isValid() && when.time() != QTime(0, 0))
        sentence += QStringLiteral(" alle ") + jet::formatDate(when, u"hh:nn");
    sentence += name.isEmpty() && !when.isValid()
                    ? QStringLiteral(" da un'altra postazione mentre era in questa finestra.")
                    : QStringLiteral(", da un'altra postazione, mentre era in questa finestra.");
    if (name.isEmpty() && !when.isValid())
        sentence += QStringLiteral(" Chi e quando non è registrato.");
    else if (name.isEmpty())
        sentence += QStringLiteral(" Chi non è registrato.");
    return sentence;
}

ConflictChoice askAboutConflict(WorkingState &state, const RecordConflict &conflict)
{
    ConflictCall call;
    call.conflict = conflict;
    if (!state.forms || !state.forms->showForm(QStringLiteral("Conflitto"), &call))
        state.prompts.warn(conflictSentence(state, conflict) + QStringLiteral("\nNiente è stato salvato."));
    return call.choice;
}

} // namespace clivara
