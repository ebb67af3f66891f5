// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalcCockCroft.h"

#include "ui_CockcroftInputs.h"
#include "values/JetValues.h"

namespace clivara {

CalcCockCroft::CalcCockCroft(WorkingState &state)
    : CalculatorForm(QStringLiteral("calcCockCroft"), QStringLiteral("Calcolo della formula di COCKCROFT"),
                     state)
    , m_inputs(std::make_unique<Ui::CockcroftInputs>())
{
    m_inputs->setupUi(inputArea());
    addInput(m_inputs->me_col, m_inputs->me_colSource, m_inputs->me_colUnit, plausibleWeightKg);
    addInput(m_inputs->me_hdl, m_inputs->me_hdlSource, m_inputs->me_hdlUnit, plausibleCreatinineMgDl);
    inputsComplete();
}

CalcCockCroft::~CalcCockCroft() = default;

void CalcCockCroft::propose()
{
    proposeWeight(m_inputs->me_col);
    proposeResult(m_inputs->me_hdl, QStringLiteral("90.16.04"));
}

QString CalcCockCroft::withoutSex() const
{
    return QStringLiteral("la clearance non viene calcolata");
}

QString CalcCockCroft::withoutBirth() const
{
    return QStringLiteral("il calcolo usa 0 anni e il risultato è troppo alto");
}

QString CalcCockCroft::ageBand(int age) const
{
    return age < expectedFunctionFromAge
               ? QStringLiteral("sotto i %1 della funzione attesa").arg(expectedFunctionFromAge)
               : QString();
}

void CalcCockCroft::compute()
{
    const auto weightKg = required(m_inputs->me_col, QStringLiteral("Inserire il peso!"));
    if (!weightKg)
        return;
    const auto creatinineMgDl =
        required(m_inputs->me_hdl, QStringLiteral("Inserire il valore della creatininemia!"));
    if (!creatinineMgDl)
        return;
    const auto expected = expectedClearanceMlMin(sex(), ageYears());
    if (expected) {
        showNote(QStringLiteral("Paziente di %1 anni: Funzione renale attesa = %2 ml")
                     .arg(jet::numberText(ageYears()), jet::numberText(*expected)),
                 Note::Emphasised);
    } else {
        showNote({});
    }
    // Without a sex there is nothing to compute, and the line shows the value of before (0 at first).
    const double clearance =
        cockcroftClearanceMlMin(sex(), ageYears(), *weightKg, *creatinineMgDl).value_or(result());
    showResult(clearance, QStringLiteral("Formula di Cockcroft: VFG = ")
                              + jet::formatNumber(clearance, u"0.00") + QStringLiteral(" ml/min"));
}

} // namespace clivara
