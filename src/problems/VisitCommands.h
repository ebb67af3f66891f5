// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace clivara {

struct ItemRow;
struct WorkingState;

// What the lists of visits let the doctor do. Nothing is raised.

// Opens the visit dialog for a new visit of the problem that WorkingState names.
void newVisit(WorkingState &state);
void editVisit(WorkingState &state, qint32 id);
// Asks, deletes, and tells the doctor when the visit could not be deleted. False when the answer was no: then
// nothing has changed, else the list has to be read again.
bool askAndDeleteVisit(WorkingState &state, const ItemRow &visit);

// Opens the record-identifier form for a row of a table; an item's table is told by "103" for a visit, and by
// itemKindLetter() for the others.
void openIdentifier(WorkingState &state, qint32 key, const QString &table);
void openItemIdentifier(WorkingState &state, const ItemRow &item);

} // namespace clivara
