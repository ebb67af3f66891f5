// SPDX-License-Identifier: Apache-2.0
#include "problems/VisitCommands.h"

#include "chart/FormOpener.h"
#include "chart/WorkingState.h"
#include "problems/ProblemItems.h"
#include "problems/VisitRecords.h"

namespace clivara {

namespace {

const auto visitForm = QStringLiteral("Visita2");
const auto newMode = QStringLiteral("10");
const auto editMode = QStringLiteral("11");
const auto visitTable = QStringLiteral("103"); // for the record-identifier form

} // namespace

void newVisit(WorkingState &state)
{
    state.visitMode = newMode;
    state.visitId = 0;
    state.forms->showForm(visitForm);
}

void editVisit(WorkingState &state, qint32 id)
{
    state.visitMode = editMode;
    state.visitId = id;
    state.forms->showForm(visitForm);
}

bool askAndDeleteVisit(WorkingState &state, const ItemRow &visit)
{
    const qint32 id = visit.key;
    const LastWrite written = visit.written; // the list may be read again meanwhile
    if (!state.prompts.confirm(QStringLiteral("Cancellare la voce?")))
        return false;
    deleteListed(state, written, [&](LastWrite &seen) { return deleteShared<VisitDetail>(state, id, seen); },
                 {QString::fromUtf8(VisitDetail::table.saved),
                  QStringLiteral("La visita era già stata cancellata da un'altra postazione."),
                  QStringLiteral("Non è stato possibile cancellare la visita")});
    return true;
}

void openIdentifier(WorkingState &state, qint32 key, const QString &table)
{
    state.identifierKey = key;
    state.identifierTable = table;
    state.forms->showForm(QStringLiteral("RM_Identificativi"));
}

void openItemIdentifier(WorkingState &state, const ItemRow &item)
{
    openIdentifier(state, item.key,
                   item.kind == ItemRow::Kind::Visit ? visitTable : QString(itemKindLetter(item.kind)));
}

} // namespace clivara
