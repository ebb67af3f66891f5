// SPDX-License-Identifier: Apache-2.0
#include "general_info/AllergyCode.h"

#include "general_info/CodePairs.h"

namespace clivara {

QString encodeAllergies(const AllergenSelection &selection)
{
    QString code;
    code.reserve(allergyCodeLength);
    std::size_t allergen = 0;
    for (const AllergenGroup &group : allergenGroups) {
        for (int item = 0; item < group.items; ++item)
            code += codePair(selection[allergen++], item);
    }
    return code;
}

AllergenSelection decodeAllergies(const QString &code)
{
    AllergenSelection selection;
    if (withoutOuterBlanks(code).isEmpty())
        return selection;
    for (int allergen = 0; allergen < allergenCount; ++allergen)
        selection[std::size_t(allergen)] = isSelectedPair(code, qsizetype(allergen) * pairLength);
    return selection;
}

bool isIntactAllergyCode(const QString &code)
{
    bool intact = code.size() == allergyCodeLength;
    for (int allergen = 0; intact && allergen < allergenCount; ++allergen)
        intact = isIntactPair(code, qsizetype(allergen) * pairLength);
    return intact;
}

} // namespace clivara
