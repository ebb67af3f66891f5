// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>

namespace clivara {

class MyDateControl;

// Days in the date fields of the forms.

// Shows a day, or nothing for a null one.
void showDay(MyDateControl &control, QDate day);
// What the control shows; null when that is no date, or none that a record may have (on or before 30/12/1899).
QDate shownDay(const MyDateControl &control);
// Something stands there that is no date.
bool holdsNoDay(const MyDateControl &control);

} // namespace clivara
