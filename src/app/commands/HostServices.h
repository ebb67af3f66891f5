// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/WorkingState.h"
#include "support/ui/WidgetPrompts.h"

#include <memory>

namespace orvale {

// The services of the workstation that the host and the chart share: the user's settings, the system's clock,
// message boxes.
class HostServices {
public:
    clivara::Services services()
    {
        return {*m_settings, m_clock, m_prompts, m_pauses, m_guids, m_middleware};
    }

private:
    std::unique_ptr<clivara::SettingsStore> m_settings = clivara::openUserSettings();
    clivara::SystemClock m_clock;
    clivara::WidgetPrompts m_prompts;
    clivara::SystemPauses m_pauses;
    clivara::SystemGuids m_guids;
    clivara::SystemMiddleware m_middleware;
};

} // namespace orvale
