// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>
#include <optional>

namespace dao {
class Database;
}

// What the calculators read from the clinical database; they write nothing. Every function throws dao::Error.
namespace clivara {

struct CalculatorPatient {
    QString sex; // as stored, trimmed
    QDate birth; // null when missing
};

// Empty when the registry has no such patient.
std::optional<CalculatorPatient> readCalculatorPatient(dao::Database &clinical, qint32 patientCode);

// A value found in the patient's records for an input field.
struct Proposal {
    QString text; // what goes into the field
    QDate date; // of the measurement or result; null when it has none
    QString stored; // the result as the laboratory wrote it, trimmed
};

// The weight of the newest objective examination: the characters of its fixed-layout text that the layout
// table names, unchanged. Empty without an examination, without a text and without a layout.
std::optional<Proposal> readWeight(dao::Database &clinical, qint32 patientCode);

// The newest laboratory result of an exam (outpatient nomenclature code such as "90.14.3") that is less than
// 366 days old on `today` and not blank, as the number that it begins with ("<0.5" and "1,10" begin with 0
// and 1).
std::optional<Proposal> readNewestResult(dao::Database &clinical, qint32 patientCode, const QString &examCode,
                                         QDate today);

} // namespace clivara
