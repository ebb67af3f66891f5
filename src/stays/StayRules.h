// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>

namespace clivara {

// A stay without discharge that lasts longer has ended without anybody noting it.
constexpr int longestOpenStay = 60; // days

// How a hospital stay stands on a day.
enum class StayState {
    Open, // the patient is in hospital
    Unended, // no discharge is noted, and nothing says that the patient is still there
    Planned, // not yet admitted
    Closed,
    Contradictory // discharged before the admission
};
// What is known of a stay. Only the newest one of a patient can be open.
struct StayDates {
    QDate admitted, discharged; // null: not noted
    bool isNewest = true;
};
StayState stayState(const StayDates &stay, QDate today);

// Its length in days, from midnight to midnight: "Durata: 5 giorni.", "Ancora in ospedale, da 3 giorni."...
// or which of its dates is missing. Never empty.
QString stayLengthText(const StayDates &stay, QDate today);

} // namespace clivara
