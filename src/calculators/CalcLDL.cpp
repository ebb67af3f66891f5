// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalcLDL.h"

#include "controls/NumericEdit.h"
#include "ui_LdlInputs.h"
#include "values/JetValues.h"

namespace clivara {

CalcLDL::CalcLDL(WorkingState &state)
    : CalculatorForm(QStringLiteral("calcLDL"), QStringLiteral("Calcolo colesterolo LDL"), state)
    , m_inputs(std::make_unique<Ui::LdlInputs>())
{
    m_inputs->setupUi(inputArea());
    addInput(m_inputs->me_col, m_inputs->me_colSource, m_inputs->me_colUnit, plausibleTotalCholesterolMgDl);
    addInput(m_inputs->me_hdl, m_inputs->me_hdlSource, m_inputs->me_hdlUnit, plausibleHdlMgDl);
    addInput(m_inputs->me_trigl, m_inputs->me_triglSource, m_inputs->me_triglUnit,
             plausibleTriglyceridesMgDl);
    inputsComplete();
}

CalcLDL::~CalcLDL() = default;

void CalcLDL::propose()
{
    proposeResult(m_inputs->me_trigl, QStringLiteral("90.43.2"));
    proposeResult(m_inputs->me_hdl, QStringLiteral("90.14.1"));
    proposeResult(m_inputs->me_col, QStringLiteral("90.14.3"));
}

QString CalcLDL::withoutSex() const
{
    return QStringLiteral("l'indice di rischio non ha una soglia");
}

QString CalcLDL::withoutBirth() const
{
    return {};
}

QString CalcLDL::inputRemark(const NumericEdit *edit) const
{
    if (edit == m_inputs->me_hdl)
        return hdlRemark(m_inputs->me_hdl->number(), m_inputs->me_col->number());
    return edit == m_inputs->me_trigl
               ? friedewaldRemark(m_inputs->me_col->number(), m_inputs->me_hdl->number(), edit->number())
               : QString();
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
