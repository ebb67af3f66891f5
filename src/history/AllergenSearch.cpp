// SPDX-License-Identifier: Apache-2.0
#include "history/AllergenSearch.h"

#include "support/Allergies.h"

#include <algorithm>

namespace clivara {

namespace {

QStringList wordsOf(const QString &text)
{
    return plainWords(text).split(u' ', Qt::SkipEmptyParts);
}

} // namespace

AllergenSearch::AllergenSearch(const QString &typed)
    : m_words(wordsOf(typed))
{
}

bool AllergenSearch::finds(const QString &text) const
{
    const QStringList words = wordsOf(text);
    return !m_words.isEmpty() && std::all_of(m_words.begin(), m_words.end(), [&](const QString &typed) {
        return std::any_of(words.begin(), words.end(),
                           [&](const QString &word) { return word.contains(typed); });
    });
}

} // namespace clivara
