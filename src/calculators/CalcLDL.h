// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "calculators/CalculatorForm.h"

namespace Ui {
class LdlInputs;
}

namespace clivara {

// LDL cholesterol by the Friedewald formula and the ratio of total to HDL cholesterol.
class CalcLDL final : public CalculatorForm {
    Q_OBJECT

public:
    explicit CalcLDL(WorkingState &state);
    ~CalcLDL() override;

protected:
    void propose() override;
    void compute() override;
    QString withoutSex() const override;
    QString withoutBirth() const override;
    QString inputRemark(const NumericEdit *edit) const override;

private:
    std::unique_ptr<Ui::LdlInputs> m_inputs;
};

} // namespace clivara
