// SPDX-License-Identifier: Apache-2.0
#include "chart/WorkingState.h"

namespace clivara {

SharedRows WorkingState::sharedRows()
{
    return SharedRows({&clinical(), &doctors(), header.patientCode, settings, clock, guids, log, operations});
}

} // namespace clivara
