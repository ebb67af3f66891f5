// SPDX-License-Identifier: Apache-2.0
#include "host/AllForms.h"

#include "calculators/Forms.h"
#include "chart/Conflitto.h"
#include "evaluations/Forms.h"
#include "history/Forms.h"
#include "problems/Forms.h"
#include "regional/Forms.h"
#include "stays/Forms.h"

namespace clivara {

FormRegistry allForms()
{
    std::vector<FormRow> rows;
    for (const auto section :
         {problemForms, historyForms, evaluationForms, calculatorForms, stayForms, regionalForms}) {
        for (FormRow &row : section())
            rows.push_back(std::move(row));
    }
    rows.push_back({.name = QStringLiteral("Conflitto"), .create = createForm<Conflitto>});
    return FormRegistry(std::move(rows));
}

} // namespace clivara
