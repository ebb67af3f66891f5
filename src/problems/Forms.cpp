// SPDX-License-Identifier: Apache-2.0
#include "problems/Forms.h"

#include "chart/WorkingState.h"
#include "problems/Probl1.h"
#include "problems/Problemi.h"
#include "problems/RicercaDiagnosi.h"
#include "problems/SelezProblema.h"
#include "problems/Visita2.h"
#include "problems/Visite2.h"

namespace clivara {

namespace {

constexpr qint16 calledFromZoom = 1;
constexpr double openProblems = 3;

void fromZoom(WorkingState &state, const QVariant &)
{
    state.callerMode = calledFromZoom;
}

void fromCaller(WorkingState &state, const QVariant &param)
{
    state.callerMode = shortParameter(param);
}

void selectNewProblem(WorkingState &state, const QVariant &)
{
    state.selected.id = noProblem;
}

void problemsFromCaller(WorkingState &state, const QVariant &param)
{
    fromCaller(state, param);
    selectNewProblem(state, param);
}

void selectProblem(WorkingState &state, const QVariant &param)
{
    state.selected.id = longParameter(param);
}

} // namespace

std::vector<FormRow> problemForms()
{
    constexpr auto kind = SectionKind::Record;
    return {
        {.name = QStringLiteral("Problemi"),
         .create = createForm<Problemi>,
         .actions = {{3, openProblems, problemsFromCaller},
                     {16, {}, selectNewProblem},
                     {21, {}, selectProblem},
                     {5}},
         .unloadOrder = 6,
         .kind = kind,
         .title = QStringLiteral("&Problemi"),
         .icon = QStringLiteral("problems"),
         .key = Qt::Key_F2},
        {.name = QStringLiteral("Visite2"),
         .create = createForm<Visite2>,
         .actions = {{3, {}, fromCaller}, {17}},
         .kind = kind,
         .title = QStringLiteral("&Visite"),
         .icon = QStringLiteral("visits"),
         .key = Qt::Key_F3},
        {.name = QStringLiteral("CRONIC"),
         .actions = {{6}},
         .unloadOrder = 8,
         .kind = kind,
         .title = QStringLiteral("Patologie cr&oniche")},
        {.name = QStringLiteral("Monitoraggio"),
         .actions = {{8}},
         .unloadOrder = 10,
         .kind = kind,
         .title = QStringLiteral("Moni&toraggio")},
        {.name = QStringLiteral("PrGraph"),
         .actions = {{4}},
         .unloadOrder = 5,
         .kind = kind,
         .title = QStringLiteral("Grafici")},
        {.name = QStringLiteral("Zoom"),
         .actions = {{2, {}, fromZoom}},
         .unloadOrder = 3,
         .kind = kind,
         .title = QStringLiteral("Zoo&m")},
        {.name = QStringLiteral("Probl1"), .create = createForm<Probl1>, .unloadOrder = 7},
        {.name = QStringLiteral("Visita2"), .create = createForm<Visita2>, .unloadOrder = 4},
        {.name = QStringLiteral("SelezProblema"), .create = createForm<SelezProblema>, .actions = {{24}}},
        {.name = QStringLiteral("RicercaDiagnosi"), .create = createForm<RicercaDiagnosi>},
    };
}

} // namespace clivara
