// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "calculators/CalculatorForm.h"

namespace Ui {
class FiltGlomInputs;
}

namespace clivara {

// Glomerular filtration rate by the simplified MDRD equation, from serum creatinine, age, sex and African
// origin. The weight is shown, the equation does not need it.
class CalcFiltGlom final : public CalculatorForm {
    Q_OBJECT

public:
    explicit CalcFiltGlom(WorkingState &state);
    ~CalcFiltGlom() override;

protected:
    void load() override;
    void propose() override;
    void compute() override;
    QString withoutSex() const override;
    QString withoutBirth() const override;

private:
    std::unique_ptr<Ui::FiltGlomInputs> m_inputs;
};

} // namespace clivara
