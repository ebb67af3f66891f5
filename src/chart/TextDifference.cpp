// SPDX-License-Identifier: Apache-2.0
#include "chart/TextDifference.h"

#include <vector>

namespace clivara {

namespace {

using Words = std::vector<QStringView>;

// So many comparisons take a few hundredths of a second.
constexpr std::size_t mostComparisons = 4'000'000;

// Runs of letters and digits; every other sign stands alone.
Words wordsOf(QStringView text)
{
    Words words;
    for (qsizetype at = 0; at < text.size();) {
        qsizetype end = at;
        while (end < text.size()
               && (text[end].isLetterOrNumber() || text[end].isMark() || text[end].isSurrogate()))
            ++end;
        end = std::max(end, at + 1);
        words.push_back(text.mid(at, end - at));
        at = end;
    }
    return words;
}

// A part of both texts, in words.
struct Span {
    std::size_t first, firstEnd, second, secondEnd;
};

// The words from the beginning of a span on that both texts have there, for each pair of beginnings.
class CommonWords {
public:
    CommonWords(const Words &first, const Words &second, const Span &span)
        : m_span(span)
        , m_columns(span.secondEnd - span.second + 1)
        , m_lengths((span.firstEnd - span.first + 1) * m_columns)
    {
        for (std::size_t i = span.firstEnd; i-- > span.first;) {
            for (std::size_t k = span.secondEnd; k-- > span.second;)
                at(i, k) =
                    first[i] == second[k] ? at(i + 1, k + 1) + 1 : std::max(at(i + 1, k), at(i, k + 1));
        }
    }
    std::uint32_t &at(std::size_t i, std::size_t k)
    {
        return m_lengths[(i - m_span.first) * m_columns + (k - m_span.second)];
    }

private:
    Span m_span;
    std::size_t m_columns;
    std::vector<std::uint32_t> m_lengths;
};

bool isWord(QStringView text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar sign) { return sign.isLetterOrNumber() || sign.isSurrogate(); });
}

// Parts that have only blanks and the like between them are one: people read whole phrases.
QList<TextDifference> joined(const QList<TextDifference> &parts, QStringView first)
{
    QList<TextDifference> whole;
    for (const TextDifference &part : parts) {
        if (!whole.isEmpty()) {
            TextDifference &last = whole.last();
            const qsizetype end = last.firstAt + last.firstLength;
            if (!isWord(first.sliced(end, part.firstAt - end))) {
                last.firstLength = part.firstAt + part.firstLength - last.firstAt;
                last.secondLength = part.secondAt + part.secondLength - last.secondAt;
                continue;
            }
        }
        whole.append(part);
    }
    return whole;
}

qsizetype placeOf(const Words &words, std::size_t index, QStringView text)
{
    return index < words.size() ? words[index].data() - text.data() : text.size();
}

} // namespace

QList<TextDifference> textDifferences(QStringView first, QStringView second)
{
    const Words mine = wordsOf(first);
    const Words theirs = wordsOf(second);
    QList<TextDifference> differences;
    const auto add = [&](const Span &span) {
        const qsizetype firstAt = placeOf(mine, span.first, first);
        const qsizetype secondAt = placeOf(theirs, span.second, second);
        differences.append({firstAt, placeOf(mine, span.firstEnd, first) - firstAt, secondAt,
                            placeOf(theirs, span.secondEnd, second) - secondAt});
    };

    Span middle{0, mine.size(), 0, theirs.size()};
    while (middle.first < middle.firstEnd && middle.second < middle.secondEnd
           && mine[middle.first] == theirs[middle.second]) {
        ++middle.first;
        ++middle.second;
    }
    while (middle.first < middle.firstEnd && middle.second < middle.secondEnd
           && mine[middle.firstEnd - 1] == theirs[middle.secondEnd - 1]) {
        --middle.firstEnd;
        --middle.secondEnd;
    }
    if (middle.first == middle.firstEnd && middle.second == middle.secondEnd)
        return differences;
    if ((middle.firstEnd - middle.first) * (middle.secondEnd - middle.second) > mostComparisons) {
        add(middle);
        return differences;
    }

    CommonWords common(mine, theirs, middle);
    Span open{middle.first, middle.first, middle.second, middle.second};
    const auto close = [&] {
        if (open.first != open.firstEnd || open.second != open.secondEnd)
            add(open);
    };
    while (open.firstEnd < middle.firstEnd || open.secondEnd < middle.secondEnd) {
        const std::size_t i = open.firstEnd;
        const std::size_t k = open.secondEnd;
        if (i < middle.firstEnd && k < middle.secondEnd && mine[i] == theirs[k]) {
            close();
            open = {i + 1, i + 1, k + 1, k + 1};
        } else if (k == middle.secondEnd
                   || (i < middle.firstEnd && common.at(i + 1, k) >= common.at(i, k + 1))) {
            ++open.firstEnd;
        } else {
            ++open.secondEnd;
        }
    }
    close();
    return joined(differences, first);
}

} // namespace clivara
