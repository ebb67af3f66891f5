// SPDX-License-Identifier: Apache-2.0
#include "chart/WorkingState.h"

namespace clivara {

dao::Database &WorkingState::database(std::shared_ptr<dao::Database> HostEnvironment::*member) const
{
    if (!environment || !(environment->*member))
        throw dao::Error(dao::InvalidOperation, QStringLiteral("Archivio dell'ospite non disponibile"));
    return *(environment->*member);
}

SharedRows WorkingState::sharedRows()
{
    return SharedRows({&clinical(), &doctors(), header.patientCode, settings, clock, guids, log, operations});
}

ChangeJournal WorkingState::changeJournal()
{
    return {clinical(), events(), clock, log, operations};
}

} // namespace clivara
