// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalcFiltGlom.h"

#include "ui_FiltGlomInputs.h"
#include "values/JetValues.h"

namespace clivara {

CalcFiltGlom::CalcFiltGlom(WorkingState &state)
    : CalculatorForm(QStringLiteral("calcFiltGlom"), QStringLiteral("Calcolo del Filtrato Glomerulare"),
                     state)
    , m_inputs(std::make_unique<Ui::FiltGlomInputs>())
{
    m_inputs->setupUi(inputArea());
    addInput(m_inputs->me_col, m_inputs->me_colSource, m_inputs->me_colUnit, plausibleWeightKg);
    addInput(m_inputs->me_hdl, m_inputs->me_hdlSource, m_inputs->me_hdlUnit, plausibleCreatinineMgDl);
    connect(m_inputs->Check1, &QCheckBox::toggled, this, [this] { inputsChanged(); });
    inputsComplete();
}

CalcFiltGlom::~CalcFiltGlom() = default;

void CalcFiltGlom::load()
{
    m_inputs->Check1->setChecked(false); // the patient's origin is not in the records
    CalculatorForm::load();
}

void CalcFiltGlom::propose()
{
    proposeWeight(m_inputs->me_col);
    proposeResult(m_inputs->me_hdl, QStringLiteral("90.16.4"));
}

QString CalcFiltGlom::withoutSex() const
{
    return QStringLiteral("il calcolo è quello di un uomo");
}

QString CalcFiltGlom::withoutBirth() const
{
    return QStringLiteral("il filtrato non viene calcolato");
}

void CalcFiltGlom::compute()
{
    const auto creatinineMgDl =
        required(m_inputs->me_hdl, QStringLiteral("Inserire il valore della creatininemia!"));
    if (!creatinineMgDl)
        return;
    showNote({});
    if (const auto gfr = mdrdGfrMlMin(sex(), ageYears(), *creatinineMgDl, m_inputs->Check1->isChecked())) {
        showResult(*gfr, QStringLiteral("sMDRD = ") + jet::formatNumber(*gfr, u"0.00")
                             + QStringLiteral(" ml/min per 1.73 m²"));
    }
}

} // namespace clivara
