// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ListFixture.h"
#include "TestConflicts.h"
#include "data/RefusedRows.h"

namespace clivara {

// Dialogs in which the doctor writes, driven by their controls.
class DialogFixture : public ListFixture {
protected:
    // Saves with the button while another workstation has changed the record; what the doctor is told.
    std::string conflictOf(const char *button, ConflictChoice choice)
    {
        std::string told;
        forms.act = [&] {
            auto &call = forms.call<ConflictCall>();
            told = toldOf(state, call.conflict);
            call.choice = choice;
        };
        click(button);
        settle();
        EXPECT_EQ(forms.take(), "Conflitto");
        forms.act = {};
        return told;
    }

    static constexpr auto save = "chameleonButton1_0";
    static constexpr auto leave = "chameleonButton1_1";
    inline static const std::string notSaved =
        "Attenzione!|Salvataggio non riuscito: l'archivio non si può scrivere (errore 3146).\n"
        "Niente è stato salvato. Quanto scritto resta nella finestra: riprovare tra poco.|warning";
};

} // namespace clivara
