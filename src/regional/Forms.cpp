// SPDX-License-Identifier: Apache-2.0
#include "regional/Forms.h"

#include "regional/AIR15_Gestione.h"
#include "regional/SheetForm.h"
#include "regional/SheetLayout.h"

namespace clivara {

std::vector<FormRow> regionalForms()
{
    std::vector<FormRow> rows{{.name = QStringLiteral("AIR15_Gestione"),
                               .create = createForm<AIR15_Gestione>,
                               .actions = {{25}},
                               .kind = SectionKind::Sheets,
                               .title = QStringLiteral("&Schede regionali"),
                               .icon = QStringLiteral("sheets"),
                               .key = Qt::SHIFT | Qt::Key_F4}};
    // All types of sheet are one form; the type is in its layout.
    for (const SheetLayout &layout : sheetLayouts())
        rows.push_back({.name = layout.form, .create = [&layout](WorkingState &state) {
                            return std::make_unique<SheetForm>(state, layout);
                        }});
    return rows;
}

} // namespace clivara
