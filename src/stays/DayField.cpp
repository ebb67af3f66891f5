// SPDX-License-Identifier: Apache-2.0
#include "stays/DayField.h"

#include "controls/MyDateControl.h"
#include "values/JetValues.h"

namespace clivara {

void showDay(MyDateControl &control, QDate day)
{
    control.SetEmptyValue();
    control.setValue(day);
}

QDate shownDay(const MyDateControl &control)
{
    const QDate day = control.Value();
    return day > jet::zeroDate().date() ? day : QDate();
}

bool holdsNoDay(const MyDateControl &control)
{
    return !control.isEmpty() && !shownDay(control).isValid();
}

} // namespace clivara
