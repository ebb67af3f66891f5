// SPDX-License-Identifier: Apache-2.0
#include "history/Forms.h"

#include "chart/WorkingState.h"
#include "history/Allergie.h"
#include "history/InfGen.h"
#include "history/PregMalInf.h"

namespace clivara {

namespace {

constexpr qint16 calledForExemptions = 9;

void fromExemptions(WorkingState &state, const QVariant &)
{
    state.callerMode = calledForExemptions;
}

} // namespace

std::vector<FormRow> historyForms()
{
    constexpr auto kind = SectionKind::History;
    // Of one component: a questionnaire whose row says nothing shows what another one has loaded.
    const auto loadedCode = std::make_shared<QString>();
    return {
        {.name = QStringLiteral("Anagrafica"),
         .actions = {{1}},
         .unloadOrder = 2,
         .kind = kind,
         .title = QStringLiteral("A&nagrafica")},
        {.name = QStringLiteral("Anamfis"),
         .actions = {{9}},
         .unloadOrder = 11,
         .kind = kind,
         .title = QStringLiteral("Anamnesi fisiolo&gica")},
        {.name = QStringLiteral("Family"),
         .actions = {{10}},
         .unloadOrder = 12,
         .kind = kind,
         .title = QStringLiteral("Anamnesi &familiare")},
        {.name = QStringLiteral("PregMalInf"),
         .create = [=](WorkingState &state) { return std::make_unique<PregMalInf>(state, loadedCode); },
         .kind = kind,
         .title = QStringLiteral("Malattie &infettive pregresse")},
        {.name = QStringLiteral("Allergie"),
         .create = [=](WorkingState &state) { return std::make_unique<Allergie>(state, loadedCode); },
         .actions = {{12}},
         .unloadOrder = 14,
         .kind = kind,
         .title = QStringLiteral("&Allergie"),
         .icon = QStringLiteral("allergies"),
         .key = Qt::Key_F4},
        {.name = QStringLiteral("RAF"),
         .actions = {{11}},
         .unloadOrder = 13,
         .kind = kind,
         .title = QStringLiteral("RAF")},
        {.name = QStringLiteral("Esenzioni"),
         .actions = {{7, {}, fromExemptions}},
         .unloadOrder = 9,
         .kind = kind,
         .title = QStringLiteral("Esen&zioni")},
        {.name = QStringLiteral("InfGen"),
         .create = createForm<InfGen>,
         .actions = {{0}},
         .unloadOrder = 1,
         .kind = kind,
         .title = QStringLiteral("Informazioni &generali"),
         .icon = QStringLiteral("general"),
         .key = Qt::Key_F5},
    };
}

} // namespace clivara
