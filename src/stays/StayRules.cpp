// SPDX-License-Identifier: Apache-2.0
#include "stays/StayRules.h"

namespace clivara {

namespace {

QString daysText(qint64 days)
{
    return days == 1 ? QStringLiteral("1 giorno") : QStringLiteral("%1 giorni").arg(days);
}

} // namespace

StayState stayState(QDate admitted, QDate discharged, QDate today)
{
    if (discharged.isValid())
        return admitted.isValid() && discharged < admitted ? StayState::Contradictory : StayState::Closed;
    return admitted.isValid() && admitted > today ? StayState::Planned : StayState::Open;
}

QString stayLengthText(QDate admitted, QDate discharged, QDate today)
{
    if (!admitted.isValid())
        return {};
    switch (stayState(admitted, discharged, today)) {
    case StayState::Contradictory:
        return QStringLiteral("La fine del ricovero precede l'accesso.");
    case StayState::Planned:
        return QStringLiteral("Ricovero previsto fra %1.").arg(daysText(today.daysTo(admitted)));
    case StayState::Open:
        return admitted == today
                   ? QStringLiteral("Ancora in ospedale, da oggi.")
                   : QStringLiteral("Ancora in ospedale, da %1.").arg(daysText(admitted.daysTo(today)));
    case StayState::Closed:
        break;
    }
    return admitted == discharged ? QStringLiteral("Durata: 0 giorni, uscita il giorno stesso.")
                                  : QStringLiteral("Durata: %1.").arg(daysText(admitted.daysTo(discharged)));
}

} // namespace clivara
