// SPDX-License-Identifier: Apache-2.0
#include "problems/DiagnosisSearch.h"

#include <QSet>

namespace clivara {

namespace {

// Lower case, the accents off.
QString folded(const QString &text)
{
    QString plain;
    plain.reserve(text.size());
    for (const QChar c : text.normalized(QString::NormalizationForm_KD)) {
        if (c.category() != QChar::Mark_NonSpacing)
            plain.append(c.toLower());
    }
    return plain;
}

// " diabete mellito tipo 2 "; a single blank when there is no word.
QString wordsOf(const QString &text)
{
    QString words(u' ');
    for (const QChar c : folded(text)) {
        if (c.isLetterOrNumber())
            words.append(c);
        else if (words.back() != u' ')
            words.append(u' ');
    }
    if (words.back() != u' ')
        words.append(u' ');
    return words;
}

QString withoutPoints(QString code)
{
    return code.remove(u'.');
}

} // namespace

DiagnosisSearch::DiagnosisSearch(dao::Database &codes)
{
    QSet<QString> known;
    const auto read = [&](const QString &query, const QString &code, const QString &name) {
        const auto rows = codes.OpenRecordset(query, dao::RecordsetType::Snapshot);
        const dao::Field codeField = rows->Fields(code), nameField = rows->Fields(name);
        for (; !rows->Eof(); rows->MoveNext()) {
            const QString found = codeField.text().trimmed();
            const QString key = found.toLower();
            if (found.isEmpty() || known.contains(key))
                continue;
            known.insert(key);
            add(found, nameField.text().trimmed());
        }
    };
    read(QStringLiteral("select cod, des from icd9"), QStringLiteral("cod"), QStringLiteral("des"));
    read(QStringLiteral("select codice, descrizione from malattie"), QStringLiteral("codice"),
         QStringLiteral("descrizione"));
    std::sort(m_entries.begin(), m_entries.end(), [](const Entry &a, const Entry &b) {
        const int order = a.words.compare(b.words);
        return order != 0 ? order < 0 : a.code < b.code;
    });
}

void DiagnosisSearch::add(const QString &code, const QString &name)
{
    const QString plain = folded(code);
    m_entries.append({{code, name}, plain, withoutPoints(plain), wordsOf(name)});
}

QList<Diagnosis> DiagnosisSearch::find(const QString &text, int most) const
{
    const QString code = folded(text.trimmed());
    const QString plainCode = code.contains(u'.') ? QString() : code;
    const QString beginning = wordsOf(text).chopped(1); // also " diabete mel" of a word half typed
    QStringList words = beginning.split(u' ', Qt::SkipEmptyParts);
    for (QString &word : words)
        word.prepend(u' ');

    QList<const Entry *> byCode, byBeginning, byWords;
    for (const Entry &entry : m_entries) {
        if (!code.isEmpty()
            && (entry.code.startsWith(code)
                || (!plainCode.isEmpty() && entry.plainCode.startsWith(plainCode)))) {
            byCode.append(&entry);
            continue;
        }
        // Signs alone ("?") are no words: they find nothing, where an empty text finds all.
        if (words.isEmpty() && !code.isEmpty())
            continue;
        const bool matches = std::all_of(words.begin(), words.end(),
                                         [&](const QString &word) { return entry.words.contains(word); });
        if (matches)
            (entry.words.startsWith(beginning) ? byBeginning : byWords).append(&entry);
    }
    std::sort(byCode.begin(), byCode.end(), [](const Entry *a, const Entry *b) { return a->code < b->code; });

    QList<Diagnosis> found;
    for (const auto &group : {byCode, byBeginning, byWords}) {
        for (qsizetype i = 0; i < group.size() && found.size() < most; ++i)
            found.append(group[i]->diagnosis);
    }
    return found;
}

} // namespace clivara
