// SPDX-License-Identifier: Apache-2.0
#include "stays/StayRules.h"

namespace clivara {

namespace {

QString daysText(qint64 days)
{
    return days == 1 ? QStringLiteral("1 giorno") : QStringLiteral("%1 giorni").arg(days);
}

} // namespace

StayState stayState(const StayDates &stay, QDate today)
{
    if (stay.discharged.isValid())
        return stay.admitted.isValid() && stay.discharged < stay.admitted ? StayState::Contradictory
                                                                          : StayState::Closed;
    if (!stay.admitted.isValid())
        return StayState::Unended;
    if (stay.admitted > today)
        return StayState::Planned;
    return stay.isNewest && stay.admitted.daysTo(today) <= longestOpenStay ? StayState::Open
                                                                           : StayState::Unended;
}

QString stayLengthText(const StayDates &stay, QDate today)
{
    if (!stay.admitted.isValid())
        return stay.discharged.isValid() ? QStringLiteral("Data di accesso non indicata.")
                                         : QStringLiteral("Date di accesso e di uscita non indicate.");
    const QString since =
        stay.admitted == today ? QStringLiteral("oggi") : daysText(stay.admitted.daysTo(today));
    switch (stayState(stay, today)) {
    case StayState::Contradictory:
        return QStringLiteral("La fine del ricovero precede l'accesso.");
    case StayState::Planned:
        return QStringLiteral("Ricovero previsto fra %1.").arg(daysText(today.daysTo(stay.admitted)));
    case StayState::Open:
        return QStringLiteral("Ancora in ospedale, da %1.").arg(since);
    case StayState::Unended:
        return stay.admitted == today ? QStringLiteral("Uscita non indicata, accesso oggi.")
                                      : QStringLiteral("Uscita non indicata, accesso %1 fa.").arg(since);
    case StayState::Closed:
        break;
    }
    return stay.admitted == stay.discharged
               ? QStringLiteral("Durata: 0 giorni, uscita il giorno stesso.")
               : QStringLiteral("Durata: %1.").arg(daysText(stay.admitted.daysTo(stay.discharged)));
}

} // namespace clivara
