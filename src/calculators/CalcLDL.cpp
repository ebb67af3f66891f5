// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalcLDL.h"

#include "ui_LdlInputs.h"
#include "values/JetValues.h"

namespace clivara {

CalcLDL::CalcLDL(WorkingState &state)
    : CalculatorForm(QStringLiteral("calcLDL"), QStringLiteral("Calcolo colesterolo LDL"), state)
    , m_inputs(std::make_unique<Ui::LdlInputs>())
{
    m_inputs->setupUi(inputArea());
    addInput(m_inputs->me_col, m_inputs->me_colSource);
    addInput(m_inputs->me_hdl, m_inputs->me_hdlSource);
    addInput(m_inputs->me_trigl, m_inputs->me_triglSource);
    inputsComplete();
}

CalcLDL::~CalcLDL() = default;

void CalcLDL::propose()
{
    proposeResult(m_inputs->me_trigl, QStringLiteral("90.43.2"));
    proposeResult(m_inputs->me_hdl, QStringLiteral("90.14.1"));
    proposeResult(m_inputs->me_col, QStringLiteral("90.14.3"));
}

void CalcLDL::compute()
{
    const auto totalMgDl =
        required(m_inputs->me_col, QStringLiteral("Inserire il valore del colesterolo totale!"));
    if (!totalMgDl)
        return;
    const auto hdlMgDl =
        required(m_inputs->me_hdl, QStringLiteral("Inserire il valore della HDL-colesterolemia!"));
    if (!hdlMgDl)
        return;
    const auto triglyceridesMgDl =
        required(m_inputs->me_trigl, QStringLiteral("Inserire il valore dei trigliceridi!"));
    if (!triglyceridesMgDl)
        return;
    if (const auto ldl = ldlMgDl(*totalMgDl, *hdlMgDl, *triglyceridesMgDl))
        showResult(*ldl, QStringLiteral("Colesterolo LDL: ") + jet::formatNumber(*ldl, u"0.0 mg/dl"));
    if (const auto ratio = riskRatio(*totalMgDl, *hdlMgDl)) {
        showNote(QStringLiteral("Indice rischio: ") + jet::formatNumber(*ratio, u"0.0"),
                 isRatioHigh(sex(), *ratio) ? Note::Warning : Note::Plain);
    }
}

} // namespace clivara
