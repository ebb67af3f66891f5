// SPDX-License-Identifier: Apache-2.0
#include "chart/ChartServices.h"

namespace clivara {

ChartServices::ChartServices(const Services &services)
    : settings(services.settings)
    , clock(services.clock)
    , prompts(services.prompts)
    , pauses(services.pauses)
    , guids(services.guids)
    , middleware(services.middleware)
    , connector(services.connector ? *services.connector : m_absentConnector)
    , log(services.clock)
    , operations(log, services.pauses)
{
}

dao::Database &ChartServices::database(std::shared_ptr<dao::Database> HostEnvironment::*member) const
{
    if (!environment || !(environment->*member))
        throw dao::Error(dao::InvalidOperation, QStringLiteral("Archivio dell'ospite non disponibile"));
    return *(environment->*member);
}

ChangeJournal ChartServices::changeJournal()
{
    return {clinical(), events(), clock, log, operations};
}

} // namespace clivara
