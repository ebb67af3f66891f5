// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"

#include <QList>
#include <QString>

namespace clivara {

// One diagnosis out of the tables icd9 and malattie.
struct Diagnosis {
    QString code;
    QString name;
};

// All diagnoses of a practice, read once and searched while the doctor types.
class DiagnosisSearch {
public:
    // Throws dao::Error. A code that both tables have is taken from icd9.
    explicit DiagnosisSearch(dao::Database &codes);

    // Those whose code begins with the text (with or without the points of the code), or whose name has, for every
    // word of the text, a word that begins with it; without regard to case and accents. Codes first, by code;
    // then names that begin with the text, then the others, both by name; an empty text finds all of them by
    // name. At most as many as `most`.
    QList<Diagnosis> find(const QString &text, int most = 200) const;

private:
    struct Entry {
        Diagnosis diagnosis;
        QString code; // folded
        QString plainCode; // without its points
        QString words; // of the name, folded, a blank before each and after the last
    };
    void add(const QString &code, const QString &name);

    QList<Entry> m_entries; // by name, then by code
};

} // namespace clivara
