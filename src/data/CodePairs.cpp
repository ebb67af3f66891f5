// SPDX-License-Identifier: Apache-2.0
#include "data/CodePairs.h"

namespace clivara {

namespace {

constexpr QStringView notSelected = u"99";

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

} // namespace

QString codePair(bool selected, int number)
{
    Q_ASSERT(number >= 0 && number < 99);
    return selected ? QStringLiteral("%1").arg(number, pairLength, 10, QLatin1Char('0'))
                    : notSelected.toString();
}

bool isSelectedPair(QStringView code, qsizetype position)
{
    return code.mid(position, pairLength) != notSelected;
}

bool isIntactPair(QStringView code, qsizetype position)
{
    const QStringView pair = code.mid(position, pairLength);
    return pair.size() == pairLength && isDigit(pair[0]) && isDigit(pair[1]);
}

QString withoutOuterBlanks(const QString &text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text[first] == u' ')
        ++first;
    while (last > first && text[last - 1] == u' ')
        --last;
    return text.mid(first, last - first);
}

} // namespace clivara
