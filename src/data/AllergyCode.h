// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <array>
#include <bitset>
#include <numeric>

// Which of the catalogue's allergens a patient is sensitive to, and the code string that says so.
namespace clivara {

// One of the fixed groups of allergens; the catalogue (table ALLERGIE) gives its items their names.
struct AllergenGroup {
    const char16_t *key; // ALLERGIE.Tipo, compared exactly
    const char16_t *caption; // with its mnemonic
    const char *control; // the array of its check boxes
    int items;
    const char16_t *searchWords; // what the group is also looked for by
};

// In the order in which they are packed.
inline constexpr std::array allergenGroups{
    AllergenGroup{u"GRAMINACEE", u"&Graminacee", "grami", 17, u"polline pollini"},
    AllergenGroup{u"DERMATOFAGOIDI", u"&Dermatofagoidi", "derma", 2, u"acaro acari"},
    AllergenGroup{u"POLVERI", u"&Polveri", "polv", 5, u""},
    AllergenGroup{u"ALIMENTI", u"A&limenti", "alim", 41, u"alimento cibo cibi"},
    AllergenGroup{u"MICOFITI", u"&Micofiti", "micof", 12, u"muffa muffe funghi"},
    AllergenGroup{u"COMPOSITE", u"&Composite", "compos", 9, u"polline pollini"},
    AllergenGroup{u"ALBERI", u"&Alberi", "alb", 15, u"polline pollini albero"},
    AllergenGroup{u"ERBE_PIANTE", u"E&rbe e Piante", "erbe", 10, u"polline pollini"},
    AllergenGroup{u"EPITELI", u"&Epiteli", "epit", 4, u"pelo peli animale animali"},
};

inline constexpr int allergenCount =
    std::accumulate(allergenGroups.begin(), allergenGroups.end(), 0,
                    [](int sum, const AllergenGroup &group) { return sum + group.items; });
inline constexpr int allergyCodeLength = 2 * allergenCount;
static_assert(allergenCount == 115 && allergyCodeLength == 230);

// By the allergen's number: groups in their order, items from 0 within each.
using AllergenSelection = std::bitset<std::size_t(allergenCount)>;

// The number of the first item of a group.
constexpr int firstAllergen(std::size_t group)
{
    int first = 0;
    for (std::size_t before = 0; before < group; ++before)
        first += allergenGroups[before].items;
    return first;
}

// What an allergen is called: its name in the catalogue or, when that is empty, "Alimenti n. 3".
QString allergenName(int allergen, const QString &catalogueName);

// 230 characters: a pair for each allergen, "99" or its position in its group.
QString encodeAllergies(const AllergenSelection &selection);

// A code of nothing but blanks selects nothing. Never fails: what cannot be a code is read pair by pair as
// isSelectedPair() says, and what comes after 230 characters is left out.
AllergenSelection decodeAllergies(const QString &code);

// Of a code that may be damaged only what its pairs surely say; of an intact one the same as
// decodeAllergies().
AllergenSelection legibleAllergies(const QString &code);

// True for 230 characters that are pairs of digits.
bool isIntactAllergyCode(const QString &code);

} // namespace clivara
