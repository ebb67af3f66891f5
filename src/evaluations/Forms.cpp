// SPDX-License-Identifier: Apache-2.0
#include "evaluations/Forms.h"

#include "evaluations/Rischio_Cardio.h"
#include "evaluations/SindrMetabolica.h"

namespace clivara {

std::vector<FormRow> evaluationForms()
{
    return {
        {.name = QStringLiteral("Rischio_Cardio"),
         .create = createForm<Rischio_Cardio>,
         .actions = {{13}},
         .unloadOrder = 15,
         .kind = SectionKind::Risk,
         .title = QStringLiteral("Risc&hio cardiovascolare"),
         .icon = QStringLiteral("heart"),
         .key = Qt::Key_F6},
        {.name = QStringLiteral("SindrMetabolica"),
         .create = createForm<SindrMetabolica>,
         .actions = {{20}},
         .kind = SectionKind::Risk,
         .title = QStringLiteral("Sindrome meta&bolica"),
         .icon = QStringLiteral("metabolic"),
         .key = Qt::Key_F7},
    };
}

} // namespace clivara
