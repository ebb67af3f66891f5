// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/FormCall.h"
#include "chart/WorkingState.h"

#include <optional>

namespace clivara {

struct ItemRow;

// Of the form "Visita2".
struct VisitCall : FormCall {
    std::optional<qint32> visit; // to be edited; none: a new one
    SelectedProblem problem; // that a new one is filed against
    std::optional<qint32> saved; // the answer; none when nothing was saved
};

// What the lists of visits let the doctor do. Nothing is raised.

// Opens the visit dialog for a new visit; the result is the visit, none when it was not saved.
std::optional<qint32> newVisit(WorkingState &state, const SelectedProblem &problem);
void editVisit(WorkingState &state, qint32 id);
// Asks, deletes, and tells the doctor when the visit could not be deleted. False when the answer was no: then
// nothing has changed, else the list has to be read again.
bool askAndDeleteVisit(WorkingState &state, const ItemRow &visit);

// Of the form "RM_Identificativi".
struct IdentifierCall : FormCall {
    qint32 key = 0; // of the row
    QString table; // the code of its table
};

// Opens the record-identifier form for a row of a table; an item's table is told by "103" for a visit, and by
// itemKindLetter() for the others.
void openIdentifier(WorkingState &state, qint32 key, const QString &table);
void openItemIdentifier(WorkingState &state, const ItemRow &item);

} // namespace clivara
