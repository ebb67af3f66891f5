// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringView>

// The pairs of characters that a questionnaire's code string (ESAME_OB.dati_paz) is made of: "99" for an item
// that was not selected, else a number of two digits. Positions count from 0.
namespace clivara {

constexpr int pairLength = 2;

// The number must be 0 to 98.
QString codePair(bool selected, int number);

// Any pair but "99" is a selected item, whatever its characters are. So is a pair that is cut off or missing:
// an answer too many is seen and unticked, a lost one is not missed.
bool isSelectedPair(QStringView code, qsizetype position);

// True for two digits; false for anything else, a missing pair included.
bool isIntactPair(QStringView code, qsizetype position);

// Without the blanks at both ends; other white space stays. Empty for Null.
QString withoutOuterBlanks(const QString &text);

} // namespace clivara
