// SPDX-License-Identifier: Apache-2.0
#include "calculators/Forms.h"

#include "calculators/CalcCockCroft.h"
#include "calculators/CalcFiltGlom.h"
#include "calculators/CalcLDL.h"

namespace clivara {

std::vector<FormRow> calculatorForms()
{
    return {
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
