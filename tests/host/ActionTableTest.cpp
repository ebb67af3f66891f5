// SPDX-License-Identifier: Apache-2.0
#include "host/ActionTable.h"

#include "host/HostFixture.h"
#include "jetsql/Error.h"

namespace {

using namespace clivara;

class ActionTable : public HostFixture {
protected:
    WorkingState state{services()};
};

TEST_F(ActionTable, OpensTheFormOfTheCodeInTheModeOfTheCaller)
{
    struct Case {
        qint16 code;
        QVariant param;
        const char *form;
        qint16 mode;
        qint32 selector;
    };
    constexpr qint16 m = 77; // values from before
    constexpr qint32 s = 88;
    const Case cases[]{
        {0, {}, "InfGen", m, s},
        {1, {}, "Anagrafica", m, s},
        {2, {}, "Zoom", 1, s},
        {2, 69, "Zoom", 1, s},
        {3, 3, "Problemi", 3, 0},
        {3, "3", "Problemi", 3, 0},
        {3, 1, "Visite2", 1, s},
        {3, {}, "Visite2", 0, s},
        {3, 2.5, "Visite2", 2, s},
        {4, {}, "PrGraph", m, s},
        {5, {}, "Problemi", m, s},
        {6, {}, "CRONIC", m, s},
        {7, {}, "Esenzioni", 9, s},
        {8, {}, "Monitoraggio", m, s},
        {9, "fumatore", "Anamfis", m, s},
        {10, {}, "Family", m, s},
        {11, {}, "RAF", m, s},
        {12, {}, "Allergie", m, s},
        {13, {}, "Rischio_Cardio", m, s},
        {16, {}, "Problemi", m, 0},
        {17, {}, "Visite2", m, s},
        {18, {}, "Domiciliari_Gestione", m, s},
        {19, {}, "Ricoveri_Gestione", m, s},
        {20, {}, "SindrMetabolica", m, s},
        {21, 70000, "Problemi", m, 70000},
        {21, "-1", "Problemi", m, -1},
        {21, {}, "Problemi", m, 0},
        {24, {}, "SelezProblema", m, s},
        {25, {}, "AIR15_Gestione", m, s},
        {80, {}, "calcLDL", m, s},
        {81, {}, "calcCockCroft", m, s},
        {82, {}, "calcFiltGlom", m, s},
    };
    for (const Case &c : cases) {
        state.callerMode = m;
        state.problemSelector = s;
        const ActionRow *action = findAction(c.code, c.param);
        ASSERT_NE(action, nullptr) << c.code;
        if (action->prepare)
            action->prepare(state, c.param);
        EXPECT_EQ(QString::fromUtf16(action->form), c.form) << c.code;
        EXPECT_EQ(state.callerMode, c.mode) << c.code;
        EXPECT_EQ(state.problemSelector, c.selector) << c.code;
    }
}

TEST_F(ActionTable, KnowsNoOtherCode)
{
    for (int code = -3; code <= 300; ++code) {
        const bool known = (code >= 0 && code <= 13) || (code >= 16 && code <= 21) || code == 24 || code == 25
                           || (code >= 80 && code <= 82);
        EXPECT_EQ(findAction(static_cast<qint16>(code), {}) != nullptr, known) << code;
    }
}

TEST_F(ActionTable, RefusesAParameterOutOfRange)
{
    EXPECT_THROW(findAction(3, 40000)->prepare(state, 40000), dao::Error);
    EXPECT_THROW(findAction(21, 3e9)->prepare(state, 3e9), dao::Error);
}

} // namespace
