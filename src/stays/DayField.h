// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>

namespace dao {
class Field;
}

namespace clivara {

class MyDateControl;

// Days in the fields of records and of forms.

// Sets a date field of the open edit buffer to a day; null is Null. A field that is of that day already is left with
// its hour, which other programs write.
void writeDay(dao::Field field, QDate day);

// Shows a day, or nothing for a null one.
void showDay(MyDateControl &control, QDate day);
// What the control shows; null when that is no date, or none that a record may have (on or before 30/12/1899).
QDate shownDay(const MyDateControl &control);
// Something stands there that is no date.
bool holdsNoDay(const MyDateControl &control);

} // namespace clivara
