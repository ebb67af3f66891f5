// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QStringView>

namespace clivara {

// A place where two texts differ: so many characters of either from there on; none where the other has more.
struct TextDifference {
    qsizetype firstAt = 0, firstLength = 0;
    qsizetype secondAt = 0, secondLength = 0;

    bool operator==(const TextDifference &) const = default;
};

// Where the texts differ, in their order, by whole words and the signs between them; different words that have only
// signs between them are one difference. Texts whose different parts are
// too long to be compared word by word (some thousand words each) differ from the first to the last different word.
QList<TextDifference> textDifferences(QStringView first, QStringView second);

} // namespace clivara
