// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

namespace clivara {

// What the doctor types to find allergens: words that must all be part of a word of the allergen's name, its group's or the
// words that its group is looked for by. Neither case nor accents matter.
class AllergenSearch {
public:
    explicit AllergenSearch(const QString &typed);

    bool isEmpty() const { return m_words.isEmpty(); }
    // False for an empty search.
    bool finds(const QString &text) const;

private:
    QStringList m_words;
};

} // namespace clivara
