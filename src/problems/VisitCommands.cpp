// SPDX-License-Identifier: Apache-2.0
#include "problems/VisitCommands.h"

#include "chart/FormOpener.h"
#include "problems/ProblemItems.h"
#include "problems/VisitRecords.h"

namespace clivara {

namespace {

const auto visitForm = QStringLiteral("Visita2");
const auto newMode = QStringLiteral("10");
const auto editMode = QStringLiteral("11");
const auto visitTable = QStringLiteral("103"); // for the record-identifier form

std::optional<qint32> openVisit(WorkingState &state, VisitCall &call)
{
    state.visitMode = call.visit ? editMode : newMode;
    state.forms->showForm(visitForm, &call);
    return call.saved;
}

} // namespace

std::optional<qint32> newVisit(WorkingState &state, const SelectedProblem &problem)
{
    VisitCall call;
    call.problem = problem;
    return openVisit(state, call);
}

void editVisit(WorkingState &state, qint32 id)
{
    VisitCall call;
    call.visit = id;
    openVisit(state, call);
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
    IdentifierCall call;
    call.key = key;
    call.table = table;
    state.forms->showForm(QStringLiteral("RM_Identificativi"), &call);
}

void openItemIdentifier(WorkingState &state, const ItemRow &item)
{
    openIdentifier(state, item.key,
                   item.kind == ItemRow::Kind::Visit ? visitTable : QString(itemKindLetter(item.kind)));
}

} // namespace clivara
