// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <array>
#include <bitset>

// Which infectious diseases a patient has had, with notes for five of them, and the code string that says so.
namespace clivara {

inline constexpr int infectionCount = 20;
inline constexpr int notedInfections = 5; // the last ones
inline constexpr int plainInfections = infectionCount - notedInfections;
inline constexpr int infectionNoteLength = 30; // UTF-16 units, as the database counts characters
inline constexpr int infectionCodeLength = 190;

struct InfectionAnswers {
    std::bitset<std::size_t(infectionCount)> had;
    // Note k belongs to disease 15 + k. A note may stand beside a disease that the patient has not had; it is
    // kept, but not shown.
    std::array<QString, std::size_t(notedInfections)> notes;

    bool operator==(const InfectionAnswers &) const = default;
};

// 190 characters: fifteen pairs, then five blocks of a pair and a note of 30. Notes lose the blanks at their ends; accents
// written as signs of their own are joined with their letters, and what is longer than 30 is cut, so that no
// note moves the blocks after it.
QString encodeInfections(const InfectionAnswers &answers);

// A code of nothing but blanks says nothing. Never fails: what cannot be a code is read pair by pair as
// isSelectedPair() says.
InfectionAnswers decodeInfections(const QString &code);

// True when the pairs are where they belong and nothing stands after the last note. Blanks at the end may be
// missing.
bool isIntactInfectionCode(const QString &code);

// The captions of the boxes that stand together in a frame, each with its number in the code.
struct InfectionFrame {
    struct Item {
        int number;
        const char16_t *caption;
    };
    const char16_t *caption;
    std::array<Item, 7> items; // those without caption are none
};

inline constexpr std::array infectionFrames{
    InfectionFrame{u"Malattie Respiratorie",
                   {{{15, u"Pleurite"}, {16, u"Tbc"}, {17, u"Polmonite"}, {18, u"Bronchiolite"}}}},
    InfectionFrame{u"Altre Malattie",
                   {{{0, u"Pertosse"},
                     {1, u"Paratifo"},
                     {2, u"Tifo"},
                     {3, u"Parotite"},
                     {19, u"Lue e/o veneree"},
                     {4, u"Mononucleosi"},
                     {5, u"Herpes"}}}},
    InfectionFrame{u"Epatite Virale", {{{6, u"Epatite A"}, {7, u"Epatite B"}, {8, u"Epatite C"}}}},
    InfectionFrame{u"Esantemi Infantili",
                   {{{9, u"Morbillo"},
                     {10, u"Altri esantemi"},
                     {11, u"Varicella"},
                     {12, u"Rosolia"},
                     {13, u"Quinta malattia"},
                     {14, u"Sesta malattia"}}}},
};

} // namespace clivara
