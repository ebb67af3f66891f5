// SPDX-License-Identifier: Apache-2.0
#include "chart/SectionForm.h"

#include "chart/ErrorLog.h"
#include "chart/WorkingState.h"

namespace clivara {

SectionForm::SectionForm(const QString &name, WorkingState &state)
    : ChartForm(name, state.header, state.clock)
    , m_state(state)
{
}

bool SectionForm::guarded(const QString &routine, const std::function<void()> &run)
{
    try {
        run();
        return true;
    } catch (const dao::Error &error) {
        logError(m_state, routine.isEmpty() ? objectName() : objectName() + u'.' + routine, error);
        return false;
    }
}

bool SectionForm::guarded(const std::function<void()> &run)
{
    return guarded(QString(), run);
}

} // namespace clivara
