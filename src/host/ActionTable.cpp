// SPDX-License-Identifier: Apache-2.0
#include "host/ActionTable.h"

#include "chart/WorkingState.h"
#include "jetsql/Error.h"
#include "values/JetValues.h"

#include <algorithm>
#include <array>

namespace clivara {

namespace {

constexpr qint16 calledFromZoom = 1;
constexpr qint16 calledFromExemptions = 9;
constexpr qint32 newProblem = 0;
constexpr double openProblems = 3;

// A parameter as a number: a text is read up to its first character that is no number, nothing is 0.
double numberOf(const QVariant &param)
{
    return param.typeId() == QMetaType::QString ? jet::leadingNumber(param.toString()) : param.toDouble();
}

template <typename Integer>
Integer checked(const std::optional<Integer> &value)
{
    if (!value)
        throw dao::Error(dao::Overflow, QStringLiteral("Parametro dell'azione fuori intervallo"));
    return *value;
}

bool asksForProblems(const QVariant &param)
{
    return numberOf(param) == openProblems;
}

void fromZoom(WorkingState &state, const QVariant &)
{
    state.callerMode = calledFromZoom;
}

void fromCaller(WorkingState &state, const QVariant &param)
{
    state.callerMode = checked(jet::toInteger(numberOf(param)));
}

void problemsFromCaller(WorkingState &state, const QVariant &param)
{
    fromCaller(state, param);
    state.problemSelector = newProblem;
}

void fromExemptions(WorkingState &state, const QVariant &)
{
    state.callerMode = calledFromExemptions;
}

void selectNewProblem(WorkingState &state, const QVariant &)
{
    state.problemSelector = newProblem;
}

void selectProblem(WorkingState &state, const QVariant &param)
{
    state.problemSelector = checked(jet::toLong(numberOf(param)));
}

constexpr std::array actions{
    ActionRow{0, u"InfGen", nullptr, nullptr},
    ActionRow{1, u"Anagrafica", nullptr, nullptr},
    ActionRow{2, u"Zoom", nullptr, fromZoom},
    ActionRow{3, u"Problemi", asksForProblems, problemsFromCaller},
    ActionRow{3, u"Visite2", nullptr, fromCaller},
    ActionRow{4, u"PrGraph", nullptr, nullptr},
    ActionRow{5, u"Problemi", nullptr, nullptr},
    ActionRow{6, u"CRONIC", nullptr, nullptr},
    ActionRow{7, u"Esenzioni", nullptr, fromExemptions},
    ActionRow{8, u"Monitoraggio", nullptr, nullptr},
    ActionRow{9, u"Anamfis", nullptr, nullptr},
    ActionRow{10, u"Family", nullptr, nullptr},
    ActionRow{11, u"RAF", nullptr, nullptr},
    ActionRow{12, u"Allergie", nullptr, nullptr},
    ActionRow{13, u"Rischio_Cardio", nullptr, nullptr},
    ActionRow{16, u"Problemi", nullptr, selectNewProblem},
    ActionRow{17, u"Visite2", nullptr, nullptr},
    ActionRow{18, u"Domiciliari_Gestione", nullptr, nullptr},
    ActionRow{19, u"Ricoveri_Gestione", nullptr, nullptr},
    ActionRow{20, u"SindrMetabolica", nullptr, nullptr},
    ActionRow{21, u"Problemi", nullptr, selectProblem},
    ActionRow{24, u"SelezProblema", nullptr, nullptr},
    ActionRow{25, u"AIR15_Gestione", nullptr, nullptr},
    ActionRow{80, u"calcLDL", nullptr, nullptr},
    ActionRow{81, u"calcCockCroft", nullptr, nullptr},
    ActionRow{82, u"calcFiltGlom", nullptr, nullptr},
};

} // namespace

std::span<const ActionRow> actionTable()
{
    return actions;
}

const ActionRow *findAction(qint16 code, const QVariant &param)
{
    const auto found = std::find_if(actions.begin(), actions.end(), [&](const ActionRow &row) {
        return row.code == code && (!row.applies || row.applies(param));
    });
    return found == actions.end() ? nullptr : &*found;
}

QStringList unloadOrder()
{
    return {QStringLiteral("InfGen"),
            QStringLiteral("Anagrafica"),
            QStringLiteral("Zoom"),
            QStringLiteral("Visita2"),
            QStringLiteral("PrGraph"),
            QStringLiteral("Problemi"),
            QStringLiteral("Probl1"),
            QStringLiteral("CRONIC"),
            QStringLiteral("Esenzioni"),
            QStringLiteral("Monitoraggio"),
            QStringLiteral("Anamfis"),
            QStringLiteral("Family"),
            QStringLiteral("RAF"),
            QStringLiteral("Allergie"),
            QStringLiteral("Rischio_Cardio"),
            QStringLiteral("Domiciliari_Gestione")};
}

} // namespace clivara
