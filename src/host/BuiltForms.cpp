// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalcCockCroft.h"
#include "calculators/CalcFiltGlom.h"
#include "calculators/CalcLDL.h"
#include "calculators/Rischio_Cardio.h"
#include "calculators/SindrMetabolica.h"
#include "chart/Conflitto.h"
#include "history/Allergie.h"
#include "history/InfGen.h"
#include "history/PregMalInf.h"
#include "host/FormShelf.h"
#include "problems/Probl1.h"
#include "problems/Problemi.h"
#include "problems/RicercaDiagnosi.h"
#include "problems/SelezProblema.h"
#include "problems/Visita2.h"
#include "problems/Visite2.h"
#include "regional/AIR15_Gestione.h"
#include "regional/SheetForm.h"
#include "regional/SheetLayout.h"
#include "stays/Domiciliari_Gestione.h"
#include "stays/Ricoveri_Gestione.h"
#include "stays/Ricoveri_Inserimento.h"

namespace clivara {

namespace {

template <typename Form>
std::unique_ptr<ChartForm> create(WorkingState &state)
{
    return std::make_unique<Form>(state);
}

std::unique_ptr<ChartForm> createLauncher(WorkingState &state)
{
    return std::make_unique<InfGen>(state, [](const QString &form) { return builtForms().contains(form); });
}

// All types of sheet are one form; the type is in its layout.
template <int type>
std::unique_ptr<ChartForm> createSheet(WorkingState &state)
{
    return std::make_unique<SheetForm>(state, *sheetLayout(type));
}

} // namespace

const FormFactories &builtForms()
{
    static const FormFactories forms{
        {QStringLiteral("calcLDL"), create<CalcLDL>},
        {QStringLiteral("calcCockCroft"), create<CalcCockCroft>},
        {QStringLiteral("calcFiltGlom"), create<CalcFiltGlom>},
        {QStringLiteral("Rischio_Cardio"), create<Rischio_Cardio>},
        {QStringLiteral("SindrMetabolica"), create<SindrMetabolica>},
        {QStringLiteral("Problemi"), create<Problemi>},
        {QStringLiteral("Visite2"), create<Visite2>},
        {QStringLiteral("Probl1"), create<Probl1>},
        {QStringLiteral("RicercaDiagnosi"), create<RicercaDiagnosi>},
        {QStringLiteral("SelezProblema"), create<SelezProblema>},
        {QStringLiteral("Visita2"), create<Visita2>},
        {QStringLiteral("Conflitto"), create<Conflitto>},
        {QStringLiteral("InfGen"), createLauncher},
        {QStringLiteral("Allergie"), create<Allergie>},
        {QStringLiteral("PregMalInf"), create<PregMalInf>},
        {QStringLiteral("Ricoveri_Gestione"), create<Ricoveri_Gestione>},
        {QStringLiteral("Ricoveri_Inserimento"), create<Ricoveri_Inserimento>},
        {QStringLiteral("Domiciliari_Gestione"), create<Domiciliari_Gestione>},
        {QStringLiteral("AIR15_Gestione"), create<AIR15_Gestione>},
        {QStringLiteral("AIR15_7_1"), createSheet<1>},
        {QStringLiteral("AIR15_7_2"), createSheet<2>},
        {QStringLiteral("AIR15_7_3"), createSheet<3>},
        {QStringLiteral("AIR15_7_4"), createSheet<4>},
        {QStringLiteral("AIR15_7_3_2"), createSheet<5>},
        {QStringLiteral("AIR15_7_6"), createSheet<6>},
        {QStringLiteral("AIR15_7_7"), createSheet<7>},
    };
    return forms;
}

} // namespace clivara
