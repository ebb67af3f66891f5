// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>
#include <string>
#include <string_view>
#include <vector>

namespace orvale {

// What the search list shows of a patient.
struct PatientEntry {
    qint32 code = -1; // -1: no patient
    QString surname;
    QString name;
    QString sex; // "M", "F" or as it was written; upper case
    QDate birthDate; // null when unknown
    QString fiscalCode; // empty when unknown
};

// All patients of a practice in memory, laid out so that one pass over 100,000 of them takes a few
// milliseconds: the texts lie one behind the other in two buffers and nothing is allocated for each patient.
// Knows no database and no widget.
class PatientIndex {
public:
    // Adds a patient whose code is not here yet, at the end.
    void add(const PatientEntry &patient);
    // Puts new data in the place of the same code, or adds the patient.
    void replace(const PatientEntry &patient);
    // Orders the patients by surname, name and birth date. Rows change their numbers.
    void sort();

    int size() const { return static_cast<int>(m_rows.size()); }
    PatientEntry at(int row) const;
    // Whether another patient has the same surname and name, but for case, accents and apostrophes. Only
    // after sort().
    bool hasNamesake(int row) const;
    // The row of a patient's code; -1 when it is not here.
    int rowOf(qint32 code) const;

    // Rows that match every word of the query, those with a matching surname first and a patient with exactly
    // that code before all others; every row for a blank query. A word is one of
    // - letters: the beginning of a word of surname or name, in any order, without regard to case, accents
    //   and apostrophes ("amb" and "damb" both find D'Ambrogio); six or more may also begin the fiscal code;
    // - letters and digits: the beginning of the fiscal code;
    // - digits: the patient's code, a year of birth of four digits, or a birth date of eight (ddmmyyyy);
    // - digits with / . or -: a birth date, possibly unfinished ("12/", "12/03", "12/3/19"), with a year of
    //   two digits, or only month and year ("03/1956").
    std::vector<int> find(const QString &query) const;

private:
    struct Row {
        qint32 code;
        quint32 shown; // begin in m_shown: surname, name, sex, fiscal code, divided by unit separators
        quint32 folded; // begin in m_folded: a blank before each word, a mark before the fiscal code
        quint16 shownLength;
        quint16 foldedLength;
        quint16 surnameLength; // how much of the folded text is the surname
        qint16 year; // 0: unknown birth date
        quint8 month;
        quint8 day;
    };
    struct DatePart;
    struct Word;

    Row stored(const PatientEntry &patient);
    std::string_view foldedOf(const Row &row) const;
    std::string_view nameOf(const Row &row) const; // folded
    static std::vector<Word> wordsOf(const QString &query);
    static std::vector<DatePart> datePartsOf(const QString &text);
    static bool isBornOn(const Row &row, const std::vector<DatePart> &parts);
    enum Rank { None, Name, Surname, Code };
    Rank rank(const Row &row, const Word &word) const;

    std::vector<Row> m_rows;
    std::string m_shown;
    std::string m_folded;
};

} // namespace orvale
