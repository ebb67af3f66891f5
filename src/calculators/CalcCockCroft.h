// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "calculators/CalculatorForm.h"

namespace Ui {
class CockcroftInputs;
}

namespace clivara {

// Creatinine clearance by the Cockcroft formula, from age, sex, weight and serum creatinine.
class CalcCockCroft final : public CalculatorForm {
    Q_OBJECT

public:
    explicit CalcCockCroft(WorkingState &state);
    ~CalcCockCroft() override;

protected:
    void propose() override;
    void compute() override;
    QString withoutSex() const override;
    QString withoutBirth() const override;
    QString ageBand(int age) const override;

private:
    std::unique_ptr<Ui::CockcroftInputs> m_inputs;
};

} // namespace clivara
