// SPDX-License-Identifier: Apache-2.0
#include "data/AllergyCode.h"

#include "data/CodePairs.h"
#include "support/Mnemonic.h"

namespace clivara {

QString allergenName(int allergen, const QString &catalogueName)
{
    if (!catalogueName.isEmpty())
        return catalogueName;
    std::size_t group = 0;
    while (group + 1 < allergenGroups.size() && firstAllergen(group + 1) <= allergen)
        ++group;
    return QStringLiteral("%1 n. %2")
        .arg(withoutMnemonic(QString::fromUtf16(allergenGroups[group].caption)))
        .arg(allergen - firstAllergen(group) + 1);
}

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

AllergenSelection legibleAllergies(const QString &code)
{
    AllergenSelection selection;
    for (int allergen = 0; allergen < allergenCount; ++allergen) {
        const qsizetype position = qsizetype(allergen) * pairLength;
        selection[std::size_t(allergen)] = isIntactPair(code, position) && isSelectedPair(code, position);
    }
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
