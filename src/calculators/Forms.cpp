// SPDX-License-Identifier: Apache-2.0
#include "calculators/Forms.h"

#include "calculators/CalcCockCroft.h"
#include "calculators/CalcFiltGlom.h"
#include "calculators/CalcLDL.h"
#include "calculators/Rischio_Cardio.h"
#include "calculators/SindrMetabolica.h"

namespace clivara {

std::vector<FormRow> calculatorForms()
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
        {.name = QStringLiteral("calcLDL"),
         .create = createForm<CalcLDL>,
         .actions = {{80}},
         .kind = SectionKind::Calculators,
         .title = QStringLiteral("Colesterolo L&DL"),
         .icon = QStringLiteral("ldl"),
         .key = Qt::Key_F8},
        {.name = QStringLiteral("calcCockCroft"),
         .create = createForm<CalcCockCroft>,
         .actions = {{81}},
         .kind = SectionKind::Calculators,
         .title = QStringLiteral("&Clearance della creatinina"),
         .icon = QStringLiteral("clearance"),
         .key = Qt::Key_F9},
        {.name = QStringLiteral("calcFiltGlom"),
         .create = createForm<CalcFiltGlom>,
         .actions = {{82}},
         .kind = SectionKind::Calculators,
         .title = QStringLiteral("Filtrato glom&erulare"),
         .icon = QStringLiteral("filtration"),
         .key = Qt::Key_F11}, // F10 belongs to the menu bar
    };
}

} // namespace clivara
