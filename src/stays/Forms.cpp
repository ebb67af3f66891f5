// SPDX-License-Identifier: Apache-2.0
#include "stays/Forms.h"

#include "stays/Domiciliari_Gestione.h"
#include "stays/Ricoveri_Gestione.h"
#include "stays/Ricoveri_Inserimento.h"

namespace clivara {

std::vector<FormRow> stayForms()
{
    return {
        {.name = QStringLiteral("Ricoveri_Gestione"),
         .create = createForm<Ricoveri_Gestione>,
         .actions = {{19}},
         .kind = SectionKind::Stays,
         .title = QStringLiteral("&Ricoveri"),
         .icon = QStringLiteral("hospital"),
         .key = Qt::SHIFT | Qt::Key_F2},
        {.name = QStringLiteral("Domiciliari_Gestione"),
         .create = createForm<Domiciliari_Gestione>,
         .actions = {{18}},
         .unloadOrder = 16,
         .kind = SectionKind::Stays,
         .title = QStringLiteral("Assistenza domici&liare"),
         .icon = QStringLiteral("home"),
         .key = Qt::SHIFT | Qt::Key_F3},
        {.name = QStringLiteral("Ricoveri_Inserimento"), .create = createForm<Ricoveri_Inserimento>},
    };
}

} // namespace clivara
