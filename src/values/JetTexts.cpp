// SPDX-License-Identifier: Apache-2.0
#include "values/JetValues.h"

#include <array>

namespace clivara::jet {
namespace {

constexpr char32_t replacement = 0xFFFD;

struct Utf16Reader {
    QStringView text;
    qsizetype at = 0;

    bool atEnd() const { return at >= text.size(); }
    char32_t next()
    {
        const QChar c = text[at++];
        if (c.isHighSurrogate() && at < text.size() && text[at].isLowSurrogate())
            return QChar::surrogateToUcs4(c, text[at++]);
        return c.unicode();
    }
};

struct Utf8Reader {
    QUtf8StringView text;
    qsizetype at = 0;

    bool atEnd() const { return at >= text.size(); }
    char32_t next()
    {
        const auto byte = [this](qsizetype i) { return static_cast<unsigned char>(text[i]); };
        const unsigned lead = byte(at++);
        if (lead < 0x80)
            return lead;
        const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
        if (more == 0)
            return replacement;
        char32_t code = lead & (0x3FU >> more);
        for (int i = 0; i < more; ++i) {
            if (at >= text.size() || (byte(at) & 0xC0U) != 0x80U)
                return replacement;
            code = (code << 6) | (byte(at++) & 0x3FU);
        }
        return code;
    }
};

char32_t folded(char32_t c)
{
    if (c < 0x80)
        return c >= U'A' && c <= U'Z' ? c + 32 : c;
    return QChar::toCaseFolded(c);
}

// The plain letter under the accents of western and central European letters (folded); other characters are
// their own. It only decides the order, never equality.
char32_t plainLetter(char32_t c)
{
    static const auto table = [] {
        std::array<char16_t, 0x180> letters;
        for (char16_t i = 0; i < letters.size(); ++i) {
            QString parts = QChar(i).decomposition();
            while (parts.size() > 1 && !QChar(parts[0]).decomposition().isEmpty())
                parts = QChar(parts[0]).decomposition();
            const bool accented =
                parts.size() > 1 && QChar::decompositionTag(char32_t(i)) == QChar::Canonical;
            letters[i] = accented ? parts[0].unicode() : i;
        }
        return letters;
    }();
    return c < table.size() ? table[c] : c;
}

// The first difference of plain letters decides, then the lengths, then the first difference of accents.
template <typename Reader>
int compareFolded(Reader a, Reader b)
{
    int accents = 0;
    while (!a.atEnd() && !b.atEnd()) {
        const char32_t left = folded(a.next());
        const char32_t right = folded(b.next());
        if (left == right)
            continue;
        const char32_t plainLeft = plainLetter(left);
        const char32_t plainRight = plainLetter(right);
        if (plainLeft != plainRight)
            return plainLeft < plainRight ? -1 : 1;
        if (accents == 0)
            accents = left < right ? -1 : 1;
    }
    if (!a.atEnd() || !b.atEnd())
        return a.atEnd() ? -1 : 1;
    return accents;
}

// What stands between [ and ]: single characters and ranges, after '!' negated.
bool inGroup(QStringView group, char32_t c)
{
    bool negated = false;
    if (group.size() > 1 && group.first() == u'!') {
        negated = true;
        group = group.mid(1);
    }
    bool found = false;
    Utf16Reader reader{group};
    while (!reader.atEnd()) {
        const char32_t from = folded(reader.next());
        char32_t to = from;
        if (reader.at + 1 < group.size() && group[reader.at] == u'-') {
            ++reader.at;
            to = folded(reader.next());
        }
        found = found || (c >= from && c <= to);
    }
    return found != negated;
}

bool bracketsClosed(QStringView pattern)
{
    for (qsizetype at = pattern.indexOf(u'['); at >= 0; at = pattern.indexOf(u'[', at)) {
        at = pattern.indexOf(u']', at);
        if (at < 0)
            return false;
    }
    return true;
}

} // namespace

int compareText(QStringView a, QStringView b)
{
    return compareFolded(Utf16Reader{a}, Utf16Reader{b});
}

int compareText(QUtf8StringView a, QUtf8StringView b)
{
    // Plain texts are the common case and sorting compares a lot: no decoding until a letter beyond ASCII
    // comes.
    const qsizetype common = std::min(a.size(), b.size());
    qsizetype at = 0;
    for (; at < common; ++at) {
        const auto left = static_cast<unsigned char>(a[at]);
        const auto right = static_cast<unsigned char>(b[at]);
        if ((left | right) & 0x80)
            return compareFolded(Utf8Reader{a, at}, Utf8Reader{b, at});
        if (left == right)
            continue;
        const char32_t foldedLeft = folded(left);
        const char32_t foldedRight = folded(right);
        if (foldedLeft != foldedRight)
            return foldedLeft < foldedRight ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

bool like(QStringView text, QStringView pattern)
{
    if (!bracketsClosed(pattern))
        return false;
    Utf16Reader subject{text};
    Utf16Reader rule{pattern};
    // Where to go on after the last '*' when what follows it does not match: one character further.
    std::optional<Utf16Reader> retrySubject;
    Utf16Reader retryRule{pattern};
    const auto step = [&] {
        if (rule.atEnd())
            return subject.atEnd();
        const char32_t sign = rule.next();
        if (sign == U'*') {
            retrySubject = subject;
            retryRule = rule;
            return true;
        }
        if (sign == U'[') {
            const qsizetype end = pattern.indexOf(u']', rule.at);
            const QStringView group = pattern.mid(rule.at, end - rule.at);
            rule.at = end + 1;
            // "[]" stands for no character.
            return group.isEmpty() || (!subject.atEnd() && inGroup(group, folded(subject.next())));
        }
        if (subject.atEnd())
            return false;
        const char32_t c = subject.next();
        if (sign == U'?')
            return true;
        if (sign == U'#')
            return c >= U'0' && c <= U'9';
        return folded(c) == folded(sign);
    };
    while (true) {
        if (step()) {
            if (rule.atEnd() && subject.atEnd())
                return true;
            continue;
        }
        if (!retrySubject || retrySubject->atEnd())
            return false;
        retrySubject->next();
        subject = *retrySubject;
        rule = retryRule;
    }
}

} // namespace clivara::jet
