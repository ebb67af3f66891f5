// SPDX-License-Identifier: Apache-2.0
#include "support/Allergies.h"

#include <gtest/gtest.h>

namespace clivara {
namespace {

using enum NoAllergyStatement;

TEST(Allergies, OnlyKnownWordsSayThatThereAreNone)
{
    const std::pair<const char *, NoAllergyStatement> cases[] = {
        {"nessuna", Whole},
        {"Nessuna allergia nota", Whole},
        {"NESSUNA ALLERGIA", Whole},
        {"nega allergie", Whole},
        {"Il paziente nega allergie e intolleranze.", Whole},
        {"Allergie: nessuna", Whole},
        {"Allergie note: nessuna.", Whole},
        {"Non riferisce allergie note; nessuna intolleranza", Whole},
        {"Non è allergico.", Whole},
        {"non allergica", Whole},
        {"Anamnesi allergologica negativa", Whole},
        {"Nessuna allergia nota a farmaci. Nessuna allergia.", Whole},
        {"Nessuna allergia nota a farmaci.", Limited},
        {"nessuna allergia a farmaci nota", Limited},
        {"Nega allergie a farmaci e alimenti", Limited},
        {"nessuna allergia farmacologica", Limited},
        {"Non allergico ai farmaci", Limited},
        {"", None},
        {" - ", None},
        {"Penicillina", None},
        {"Nessuna allergia nota, tranne penicillina", None},
        {"Nessuna allergia nota. Penicillina: orticaria.", None},
        {"Nessun'altra allergia nota", None},
        {"Nessuna altra allergia", None},
        {"Allergie non note", None}, // known that none, or not known
        {"Nessuna allergia nota?", None},
        {"allergie? no?", None},
        {"nessuna nota", None}, // no allergy that is known, or no note
        {"allergie no note", None},
        {"allergie: nessuna nota", Whole},
        {"non nega allergie", None},
        {"nega allergie a farmaci tranne FANS", None},
        {"Nega", Whole},
        {"no penicillina", None},
        {"No allergie a penicillina", None},
        {"Sì", None},
    };
    for (const auto &[text, statement] : cases)
        EXPECT_EQ(noAllergyStatement(text), statement) << text;
}

TEST(Allergies, EachStateHasItsSignAndItsWords)
{
    struct Case {
        QStringList ticked;
        bool isAnswered, isIntact;
        const char *text;
        AllergyState state;
        const char *line;
    };
    const Case cases[] = {
        {{}, false, true, "", AllergyState::NotRecorded, "? Allergie non registrate"},
        {{},
         true,
         true,
         "  -\r\n",
         AllergyState::NotRecorded,
         "? Allergie non registrate (nessun allergene è segnato)"},
        {{},
         true,
         true,
         "Nega allergie.",
         AllergyState::NoneKnown,
         "✓ Nessuna allergia nota: «Nega allergie.»"},
        {{},
         false,
         true,
         "Nessuna allergia nota a farmaci.",
         AllergyState::NoneKnown,
         "✓ Nessuna allergia nota, ma solo per quanto è scritto: «Nessuna allergia nota a farmaci.»"},
        {{}, false, true, "Penicillina\r\n(1998)", AllergyState::Known, "⚠ Allergie: Penicillina (1998)"},
        {{"Latte", "Uovo"},
         true,
         true,
         "Penicillina",
         AllergyState::Known,
         "⚠ Allergie: Penicillina  ·  2 allergeni segnati: Latte, Uovo"},
        {{"Arachide"},
         true,
         true,
         "Nessuna allergia nota",
         AllergyState::Known,
         "⚠ Allergie: 1 allergene segnato: Arachide  ·  in «Varie» è scritto «Nessuna allergia nota»"},
        {{}, true, false, "", AllergyState::Unread, "✕ Allergie non lette: possono essercene"},
        {{"Latte"},
         true,
         false,
         "Nega allergie",
         AllergyState::Unread,
         "✕ Allergie lette solo in parte: Nega allergie  ·  1 allergene segnato: Latte"},
    };
    for (const Case &each : cases) {
        const Allergies judged = judgedAllergies(each.ticked, each.isAnswered, each.isIntact, each.text);
        EXPECT_EQ(judged.state, each.state) << each.line;
        EXPECT_EQ(allergyLine(judged).toStdString(), each.line);
        EXPECT_EQ(allergyLine(judged).mid(2), allergyWords(judged));
    }
    EXPECT_EQ(allergyLine({}), "✕ Allergie non lette: possono essercene") << "nothing was read yet";
}

} // namespace
} // namespace clivara
