// SPDX-License-Identifier: Apache-2.0
#include "stays/StayRules.h"

#include "stays/StayRecords.h"

#include <gtest/gtest.h>

namespace clivara {
namespace {

TEST(StayRules, AStayHasAStateAndALengthInDays)
{
    const QDate today(2026, 11, 21);
    const struct {
        QDate admitted, discharged;
        StayState state;
        const char *text;
    } cases[] = {
        {{2026, 11, 1}, {2026, 11, 6}, StayState::Closed, "Durata: 5 giorni."},
        {{2026, 11, 1}, {2026, 11, 2}, StayState::Closed, "Durata: 1 giorno."},
        {{2024, 2, 28}, {2024, 3, 1}, StayState::Closed, "Durata: 2 giorni."}, // a leap year
        {{2026, 11, 1}, {2026, 11, 1}, StayState::Closed, "Durata: 0 giorni, uscita il giorno stesso."},
        {{2026, 11, 2}, {2026, 11, 1}, StayState::Contradictory, "La fine del ricovero precede l'accesso."},
        {{2026, 11, 20}, {}, StayState::Open, "Ancora in ospedale, da 1 giorno."},
        {today, {}, StayState::Open, "Ancora in ospedale, da oggi."},
        {{2026, 12, 1}, {}, StayState::Planned, "Ricovero previsto fra 10 giorni."},
        {{}, {2026, 11, 1}, StayState::Closed, ""},
        {{}, {}, StayState::Open, ""},
    };
    for (const auto &each : cases) {
        EXPECT_EQ(stayState(each.admitted, each.discharged, today), each.state) << each.text;
        EXPECT_EQ(stayLengthText(each.admitted, each.discharged, today), each.text);
    }
}

TEST(StayRules, AHospitalIsFoundInWhateverCase)
{
    const QStringList list{"Ospedale Sant'Anna", "Clinica Nicolò"};
    for (const char *typed : {"Ospedale Sant'Anna", "OSPEDALE SANT'ANNA", "  ospedale sant'anna "})
        EXPECT_EQ(nameInList(list, typed), "Ospedale Sant'Anna") << typed;
    EXPECT_EQ(nameInList(list, "CLINICA NICOLÒ"), "Clinica Nicolò");
    for (const char *typed : {"Sant'Anna", "Clinica Nicolo", "", " "})
        EXPECT_EQ(nameInList(list, typed), "") << typed;
}

} // namespace
} // namespace clivara
