// SPDX-License-Identifier: Apache-2.0
#include "chart/ErrorLog.h"

#include "chart/ChartServices.h"

namespace clivara {

void logLine(ChartServices &services, const QString &routine, const std::exception &error)
{
    const auto *const engines = dynamic_cast<const dao::Error *>(&error);
    services.log.write(QStringLiteral("%1.%2 - Error %3 - ")
                           .arg(services.componentName, routine)
                           .arg(engines ? engines->number() : 0)
                       + (engines ? engines->text() : QString::fromLocal8Bit(error.what())));
}

void logError(ChartServices &services, const QString &routine, const dao::Error &error)
{
    logLine(services, routine, error);
    if (dao::isConnectionLost(error.number()))
        tellUnreachable(services);
}

void tellUnreachable(ChartServices &services)
{
    if (std::exchange(services.unreachableTold, true))
        return;
    services.prompts.warn(
        QStringLiteral("Il server dell'archivio non è raggiungibile.\n"
                       "Quanto è mostrato può essere incompleto, e quanto è scritto non è salvato: "
                       "riprovare quando il server risponde."));
}

} // namespace clivara
