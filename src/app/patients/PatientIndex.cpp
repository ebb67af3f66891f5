// SPDX-License-Identifier: Apache-2.0
#include "app/patients/PatientIndex.h"

#include <QStringList>
#include <algorithm>
#include <array>
#include <numeric>
#include <tuple>

namespace orvale {

namespace {

constexpr char unitSeparator = '\x1f';
constexpr char fiscalCodeMark = '\x01';
// Shorter letters are taken as a name only: a fiscal code begins with six letters of surname and name.
constexpr std::size_t fiscalCodeLetters = 6;

bool isApostrophe(QChar c)
{
    return c == u'\'' || c == u'\u2019' || c == u'\u2018' || c == u'`' || c == u'\u00b4';
}

// Lower case without accents; what is neither letter, digit nor apostrophe becomes a blank.
QString folded(const QString &text)
{
    QString result;
    result.reserve(text.size());
    const QString decomposed = text.normalized(QString::NormalizationForm_KD).toCaseFolded();
    for (const QChar c : decomposed) {
        if (c.isLetterOrNumber() || isApostrophe(c))
            result += isApostrophe(c) ? QChar(u'\'') : c;
        else if (!c.isMark())
            result += u' ';
    }
    return result;
}

// Every way in which the words of a surname or name may be begun: "de luca" also as "deluca", "d'ambrogio" as
// "dambrogio" and "ambrogio".
std::string searchableWords(const QString &text)
{
    const QStringList parts = folded(text).split(u' ', Qt::SkipEmptyParts);
    QString result;
    if (parts.size() > 1)
        result += u' ' + parts.join(QString()).remove(u'\'');
    for (const QString &part : parts) {
        result += u' ' + QString(part).remove(u'\'');
        for (qsizetype at = part.indexOf(u'\''); at >= 0; at = part.indexOf(u'\'', at + 1)) {
            const QString rest = part.mid(at + 1).remove(u'\'');
            if (at > 0 && !rest.isEmpty())
                result += u' ' + rest;
        }
    }
    return result.toStdString();
}

bool isDigits(QStringView text)
{
    return !text.isEmpty()
           && std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

bool isDateText(QStringView text)
{
    return !text.isEmpty() && text.front() >= u'0' && text.front() <= u'9'
           && std::all_of(text.begin(), text.end(), [](QChar c) {
                  return (c >= u'0' && c <= u'9') || c == u'/' || c == u'.' || c == u'-';
              });
}

} // namespace

// One number of a date as it was typed; `open` when more digits may still follow.
struct PatientIndex::DatePart {
    QString text;
    bool open;

    bool isDayOrMonth(int value) const
    {
        return text.isEmpty() || text.toInt() == value
               || (open && text.size() == 1 && value / 10 == text.toInt());
    }
    bool isYear(int value) const
    {
        if (text.size() == 2 && value % 100 == text.toInt())
            return true;
        const QString year = QString::number(value);
        return open ? year.startsWith(text) : year == text;
    }
};

struct PatientIndex::Word {
    std::string name; // a blank and the beginning of a word; empty: not a name
    std::string fiscalCode; // its mark and the beginning; empty: not a fiscal code
    qint32 code = -1;
    std::vector<DatePart> date; // empty: not a birth date
};

PatientIndex::Row PatientIndex::stored(const PatientEntry &patient)
{
    const std::string shown = QStringList{patient.surname, patient.name, patient.sex, patient.fiscalCode}
                                  .join(QLatin1Char(unitSeparator))
                                  .toStdString();
    const std::string surname = searchableWords(patient.surname);
    const std::string words = surname + searchableWords(patient.name) + fiscalCodeMark
                              + patient.fiscalCode.trimmed().toLower().toStdString();

    Row row{};
    row.code = patient.code;
    row.shown = static_cast<quint32>(m_shown.size());
    row.shownLength = static_cast<quint16>(shown.size());
    row.folded = static_cast<quint32>(m_folded.size());
    row.foldedLength = static_cast<quint16>(words.size());
    row.surnameLength = static_cast<quint16>(surname.size());
    if (patient.birthDate.isValid()) {
        row.year = static_cast<qint16>(patient.birthDate.year());
        row.month = static_cast<quint8>(patient.birthDate.month());
        row.day = static_cast<quint8>(patient.birthDate.day());
    }
    m_shown += shown;
    m_folded += words;
    return row;
}

void PatientIndex::add(const PatientEntry &patient)
{
    m_rows.push_back(stored(patient));
}

void PatientIndex::replace(const PatientEntry &patient)
{
    const int row = rowOf(patient.code);
    if (row < 0)
        add(patient);
    else
        m_rows[static_cast<std::size_t>(row)] = stored(patient);
}

void PatientIndex::sort()
{
    std::sort(m_rows.begin(), m_rows.end(), [this](const Row &a, const Row &b) {
        const int byName = nameOf(a).compare(nameOf(b));
        if (byName != 0)
            return byName < 0;
        return std::tie(a.year, a.month, a.day, a.code) < std::tie(b.year, b.month, b.day, b.code);
    });
}

bool PatientIndex::hasNamesake(int row) const
{
    const auto isSame = [&](int other) {
        if (other < 0 || other >= size())
            return false;
        const Row &a = m_rows[static_cast<std::size_t>(row)];
        const Row &b = m_rows[static_cast<std::size_t>(other)];
        return a.surnameLength == b.surnameLength && !nameOf(a).empty() && nameOf(a) == nameOf(b);
    };
    return isSame(row - 1) || isSame(row + 1);
}

PatientEntry PatientIndex::at(int row) const
{
    const Row &stored = m_rows.at(static_cast<std::size_t>(row));
    const QStringList texts = QString::fromUtf8(m_shown.data() + stored.shown, stored.shownLength)
                                  .split(QLatin1Char(unitSeparator));
    PatientEntry patient;
    patient.code = stored.code;
    patient.surname = texts.value(0);
    patient.name = texts.value(1);
    patient.sex = texts.value(2);
    patient.fiscalCode = texts.value(3);
    if (stored.year != 0)
        patient.birthDate = QDate(stored.year, stored.month, stored.day);
    return patient;
}

int PatientIndex::rowOf(qint32 code) const
{
    const auto found =
        std::find_if(m_rows.begin(), m_rows.end(), [code](const Row &row) { return row.code == code; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

std::vector<int> PatientIndex::find(const QString &query) const
{
    const std::vector<Word> words = wordsOf(query);
    if (words.empty()) {
        std::vector<int> all(m_rows.size());
        std::iota(all.begin(), all.end(), 0);
        return all;
    }
    std::array<std::vector<int>, 3> found; // by rank, the best last
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        Rank best = None;
        for (const Word &word : words) {
            const Rank current = rank(m_rows[i], word);
            if (current == None) {
                best = None;
                break;
            }
            best = std::max(best, current);
        }
        if (best != None)
            found[best - 1].push_back(static_cast<int>(i));
    }
    std::vector<int> rows = std::move(found[2]);
    rows.insert(rows.end(), found[1].begin(), found[1].end());
    rows.insert(rows.end(), found[0].begin(), found[0].end());
    return rows;
}

std::vector<PatientIndex::Word> PatientIndex::wordsOf(const QString &query)
{
    std::vector<Word> words;
    const QStringList typed = query.simplified().split(u' ', Qt::SkipEmptyParts);
    for (const QString &text : typed) {
        if (isDateText(text)) {
            Word word;
            word.date = datePartsOf(text);
            if (isDigits(text)) {
                bool isNumber = false;
                const qint32 code = text.toInt(&isNumber);
                word.code = isNumber ? code : -1;
            }
            words.push_back(word);
            continue;
        }
        const QStringList parts = folded(text).split(u' ', Qt::SkipEmptyParts);
        for (const QString &part : parts) {
            const std::string letters = QString(part).remove(u'\'').toStdString();
            if (letters.empty())
                continue;
            Word word;
            word.name = ' ' + letters;
            const bool hasDigit = std::any_of(part.begin(), part.end(), [](QChar c) { return c.isDigit(); });
            if (hasDigit || letters.size() >= fiscalCodeLetters)
                word.fiscalCode = fiscalCodeMark + letters;
            words.push_back(word);
        }
    }
    return words;
}

// The parts day, month, year; fewer when fewer were typed, an empty one for a part that was left out. Digits
// alone are a date when they are a year or a whole date, otherwise there are no parts.
std::vector<PatientIndex::DatePart> PatientIndex::datePartsOf(const QString &text)
{
    if (isDigits(text)) {
        if (text.size() == 4)
            return {{{}, false}, {{}, false}, {text, false}};
        if (text.size() == 8)
            return {{text.left(2), false}, {text.mid(2, 2), false}, {text.mid(4), false}};
        return {};
    }
    const QStringList numbers = QString(text).replace(u'.', u'/').replace(u'-', u'/').split(u'/');
    std::vector<DatePart> parts;
    for (const QString &number : numbers)
        parts.push_back({number, false});
    parts.back().open = true;
    if (parts.size() == 2 && parts[1].text.size() > 2)
        parts.insert(parts.begin(), {{}, false});
    return parts;
}

bool PatientIndex::isBornOn(const Row &row, const std::vector<DatePart> &parts)
{
    return row.year != 0 && !parts.empty() && parts.size() <= 3 && parts[0].isDayOrMonth(row.day)
           && (parts.size() < 2 || parts[1].isDayOrMonth(row.month))
           && (parts.size() < 3 || parts[2].isYear(row.year));
}

std::string_view PatientIndex::foldedOf(const Row &row) const
{
    return std::string_view(m_folded).substr(row.folded, row.foldedLength);
}

std::string_view PatientIndex::nameOf(const Row &row) const
{
    const std::string_view folded = foldedOf(row);
    return folded.substr(0, folded.find(fiscalCodeMark));
}

PatientIndex::Rank PatientIndex::rank(const Row &row, const Word &word) const
{
    if (word.code >= 0 && word.code == row.code)
        return Code;
    if (isBornOn(row, word.date))
        return Name;
    if (word.name.empty())
        return None;
    const std::string_view text = foldedOf(row);
    const std::size_t place = text.find(word.name);
    if (place != std::string_view::npos)
        return place < row.surnameLength ? Surname : Name;
    if (!word.fiscalCode.empty() && text.find(word.fiscalCode) != std::string_view::npos)
        return Name;
    return None;
}

} // namespace orvale
