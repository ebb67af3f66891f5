// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Error.h"
#include "jetsql/JetFunctions.h"
#include "values/JetValues.h"

#include <QUuid>

namespace dao::sql {
namespace {

namespace jet = clivara::jet;

// A count or position, rounded as the language does; `least` is the smallest that makes sense.
qsizetype count(const QVariant &value, qint32 least)
{
    const auto whole = jet::toLong(value.toDouble());
    if (!whole || *whole < least)
        throwInvalidCall();
    return *whole;
}

Qt::CaseSensitivity comparison(Arguments a, size_t position)
{
    return a.size() > position && a[position].toDouble() == 0 ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

QVariant mid(Arguments a)
{
    const QString text = a[0].toString();
    const qsizetype from = count(a[1], 1) - 1;
    const qsizetype length = a.size() > 2 ? count(a[2], 0) : text.size();
    return from >= text.size() ? QStringLiteral("") : text.mid(from, length);
}

QVariant left(Arguments a)
{
    return a[0].toString().left(count(a[1], 0));
}

QVariant right(Arguments a)
{
    return a[0].toString().right(count(a[1], 0));
}

QVariant len(Arguments a)
{
    return qlonglong(a[0].toString().size());
}

// Only blanks are trimmed, as the language does; not tabs or line ends.
QString trimmed(const QString &text, bool atLeft, bool atRight)
{
    qsizetype from = 0;
    qsizetype to = text.size();
    while (atLeft && from < to && text[from] == u' ')
        ++from;
    while (atRight && to > from && text[to - 1] == u' ')
        --to;
    return from == to ? QStringLiteral("") : text.mid(from, to - from);
}

QVariant trim(Arguments a)
{
    return trimmed(a[0].toString(), true, true);
}

QVariant ltrim(Arguments a)
{
    return trimmed(a[0].toString(), true, false);
}

QVariant rtrim(Arguments a)
{
    return trimmed(a[0].toString(), false, true);
}

QVariant ucase(Arguments a)
{
    // Letter by letter: "ß" stays one letter.
    QString text = a[0].toString();
    for (QChar &c : text)
        c = c.toUpper();
    return text;
}

QVariant lcase(Arguments a)
{
    QString text = a[0].toString();
    for (QChar &c : text)
        c = c.toLower();
    return text;
}

QVariant find(const QString &text, const QString &sought, qsizetype from, Qt::CaseSensitivity cs)
{
    if (from > text.size())
        return qlonglong(0);
    return qlonglong(text.indexOf(sought, from - 1, cs) + 1);
}

QVariant instr(Arguments a)
{
    return find(a[0].toString(), a[1].toString(), 1, Qt::CaseInsensitive);
}

QVariant instrFrom(Arguments a)
{
    return find(a[1].toString(), a[2].toString(), count(a[0], 1), comparison(a, 3));
}

QVariant replace(Arguments a)
{
    QString text = a[0].toString();
    const QString sought = a[1].toString();
    return sought.isEmpty() ? text : text.replace(sought, a[2].toString(), Qt::CaseInsensitive);
}

QVariant strcomp(Arguments a)
{
    const QString left = a[0].toString();
    const QString right = a[1].toString();
    const int order =
        comparison(a, 2) == Qt::CaseSensitive ? left.compare(right) : jet::compareText(left, right);
    return qlonglong((order > 0) - (order < 0));
}

// How often a character is repeated; no field holds more.
qsizetype repetitions(const QVariant &value)
{
    constexpr qsizetype most = 1 << 24;
    const qsizetype times = count(value, 0);
    if (times > most)
        throwInvalidCall();
    return times;
}

QVariant space(Arguments a)
{
    return QString(repetitions(a[0]), u' ');
}

QVariant string(Arguments a)
{
    const QString character = a[1].toString();
    if (character.isEmpty())
        throwInvalidCall();
    return QString(repetitions(a[0]), character.front());
}

QVariant asc(Arguments a)
{
    const QString text = a[0].toString();
    if (text.isEmpty())
        throwInvalidCall();
    return qlonglong(text.front().unicode());
}

QVariant chr(Arguments a)
{
    const qsizetype code = count(a[0], 0);
    if (code > 255)
        throwInvalidCall();
    return QString(QChar(ushort(code)));
}

// A text by a number's pattern, a date's pattern, or as it is, by what the text can be read as.
QVariant formatText(Arguments a)
{
    const QString text = a[0].toString();
    const QString pattern = a[1].toString();
    if (pattern.contains(u'0')) {
        if (const auto number = jet::numberFromText(text))
            return jet::formatNumber(*number, pattern);
    } else if (const auto date = jet::dateFromText(text)) {
        return jet::formatDate(*date, pattern);
    }
    return text;
}

// Assignments to text fields
QVariant assignText(Arguments a)
{
    QString text = a[0].toString();
    if (text.size() > a[1].toInt())
        throw FunctionError{FieldTooSmall, QStringLiteral("Il testo è troppo lungo per il campo")};
    return text;
}

QVariant assignGuid(Arguments a)
{
    const QString text = a[0].toString();
    if (text.trimmed().isEmpty())
        return {};
    const QUuid uid = QUuid::fromString(text.trimmed());
    if (uid.isNull() && !text.contains(QUuid().toString(QUuid::WithoutBraces)))
        throw FunctionError{ConversionError, QStringLiteral("Il testo non è un identificatore")};
    return uid.toString().toUpper();
}

constexpr Function functionTable[] = {
    {u"mid", "tn|n", FieldType::Text, mid},
    {u"left", "tn", FieldType::Text, left},
    {u"right", "tn", FieldType::Text, right},
    {u"len", "t", FieldType::Long, len},
    {u"trim", "t", FieldType::Text, trim},
    {u"ltrim", "t", FieldType::Text, ltrim},
    {u"rtrim", "t", FieldType::Text, rtrim},
    {u"ucase", "t", FieldType::Text, ucase},
    {u"lcase", "t", FieldType::Text, lcase},
    {u"instr", "tt", FieldType::Long, instr},
    {u"instrfrom", "ntt|n", FieldType::Long, instrFrom, Internal},
    {u"replace", "ttt", FieldType::Text, replace},
    {u"strcomp", "tt|n", FieldType::Long, strcomp},
    {u"space", "n", FieldType::Text, space},
    {u"string", "nt", FieldType::Text, string},
    {u"asc", "t", FieldType::Long, asc},
    {u"chr", "n", FieldType::Text, chr},
    {u"formattext", "tt", FieldType::Text, formatText, Internal},
    {u"assigntext", "tn", FieldType::Text, assignText, Internal},
    {u"assignguid", "t", FieldType::Guid, assignGuid, Internal},
};

} // namespace

const std::span<const Function> &textFunctions()
{
    static constexpr std::span<const Function> table(functionTable);
    return table;
}

} // namespace dao::sql
