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
        StayDates stay;
        StayState state;
        const char *text;
    } cases[] = {
        {{{2026, 11, 1}, {2026, 11, 6}}, StayState::Closed, "Durata: 5 giorni."},
        {{{2026, 11, 1}, {2026, 11, 2}}, StayState::Closed, "Durata: 1 giorno."},
        {{{2024, 2, 28}, {2024, 3, 1}}, StayState::Closed, "Durata: 2 giorni."}, // a leap year
        {{{2026, 11, 1}, {2026, 11, 1}}, StayState::Closed, "Durata: 0 giorni, uscita il giorno stesso."},
        {{{2026, 11, 2}, {2026, 11, 1}}, StayState::Contradictory, "La fine del ricovero precede l'accesso."},
        {{{2026, 11, 20}, {}}, StayState::Open, "Ancora in ospedale, da 1 giorno."},
        {{{2026, 9, 22}, {}}, StayState::Open, "Ancora in ospedale, da 60 giorni."},
        {{{2026, 9, 21}, {}}, StayState::Unended, "Uscita non indicata, accesso 61 giorni fa."},
        {{{2026, 11, 20}, {}, false}, StayState::Unended, "Uscita non indicata, accesso 1 giorno fa."},
        {{today, {}}, StayState::Open, "Ancora in ospedale, da oggi."},
        {{today, {}, false}, StayState::Unended, "Uscita non indicata, accesso oggi."},
        {{{2026, 12, 1}, {}}, StayState::Planned, "Ricovero previsto fra 10 giorni."},
        {{{}, {2026, 11, 1}}, StayState::Closed, "Data di accesso non indicata."},
        {{{}, {}}, StayState::Unended, "Date di accesso e di uscita non indicate."},
    };
    for (const auto &each : cases) {
        EXPECT_EQ(stayState(each.stay, today), each.state) << each.text;
        EXPECT_EQ(stayLengthText(each.stay, today), each.text);
    }
}

TEST(StayRules, OneStayOfAPatientIsTheNewest)
{
    const auto stay = [](qint32 id, QDate admitted) {
        Stay made;
        made.id = id;
        made.admitted = admitted;
        return made;
    };
    const QDate first(2026, 11, 1), second(2026, 11, 10);
    const QList<Stay> stays{stay(9, {}), stay(1, first), stay(8, first), stay(2, second), stay(3, second)};
    const std::pair<Stay, bool> cases[]{
        {stays[0], false},
        {stays[1], false},
        {stays[2], false},
        {stays[3], false},
        {stays[4], true},
        {stay(0, second), true},
        {stay(0, first), false},
        {stay(1, second), false}, // while the doctor types another date
        {stay(8, {2026, 11, 11}), true},
    };
    for (const auto &[each, isNewest] : cases)
        EXPECT_EQ(isNewestStay(stays, each), isNewest) << each.id << each.admitted.toString().toStdString();
    EXPECT_TRUE(isNewestStay({stays[0]}, stays[0]));
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
