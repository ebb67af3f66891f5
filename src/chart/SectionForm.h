// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/ui/ChartForm.h"

#include <functional>

namespace clivara {

struct WorkingState;

// A form of the chart's sections. An error of the engine ends what the doctor has asked for at one place, guarded(); one
// that ends the opening or the closing passes on to the component.
class SectionForm : public ChartForm {
    Q_OBJECT

protected:
    SectionForm(const QString &name, WorkingState &state);

    // Runs what loads or commands. False when a dao::Error has ended it: the log names form and routine, and a server that
    // cannot be reached is told to the doctor.
    bool guarded(const QString &routine, const std::function<void()> &run);
    bool guarded(const std::function<void()> &run); // the log names the form alone

    WorkingState &m_state;
};

} // namespace clivara
