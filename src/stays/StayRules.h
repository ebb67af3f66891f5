// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>

namespace clivara {

// How a hospital stay stands on a day.
enum class StayState {
    Open, // admitted, not discharged
    Planned, // not yet admitted
    Closed,
    Contradictory // discharged before the admission
};
// A stay without admission date is open until it is closed.
StayState stayState(QDate admitted, QDate discharged, QDate today);

// Its length in days, from midnight to midnight: "Durata: 5 giorni", "Ancora in ospedale, da 3 giorni"... Empty when
// there is no admission date.
QString stayLengthText(QDate admitted, QDate discharged, QDate today);

} // namespace clivara
