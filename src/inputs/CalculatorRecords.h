// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>
#include <functional>
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
    QString unit; // of the result as the laboratory wrote it, trimmed; empty when it did not
    QDate performed; // when the exam was made, where that is noted
};

// A value that was seen and not proposed.
struct Sighting {
    QString stored, unit;
    QDate date;
    QString code; // of the exam
};

// What the records hold for an input field.
struct Finding {
    std::optional<Proposal> proposal;
    // Both are newer than the proposed value or, where none is proposed, recent.
    std::optional<Sighting> skipped; // the form does not take it
    std::optional<Sighting> otherCode; // the same exam under another spelling of its code
    QDate since; // what is older is too old to be proposed; null when there is no limit
};

// A measurement inside the fixed-layout text of an objective examination: the characters that the layout table names
// for its description ("peso"), unchanged. Empty when the layout table does not say where.
std::optional<QString> cutMeasurement(dao::Database &clinical, const QString &description,
                                      const QString &examination);

// The weight of the newest objective examination: the characters of its fixed-layout text that the layout
// table names, unchanged. Empty without an examination, without a text and without a layout.
Finding readWeight(dao::Database &clinical, qint32 patientCode);

// The newest laboratory result of an exam (outpatient nomenclature code such as "90.14.3") that is less than
// 366 days old on `today` and not blank, as the number that it begins with ("<0.5" and "1,10" begin with 0
// and 1).
Finding readNewestResult(dao::Database &clinical, qint32 patientCode, const QString &examCode, QDate today);

// What a scan of results does with the one it has come to.
enum class Scan { Take, Skip, Stop };
using ResultJudge = std::function<Scan(QDate date, const QString &stored)>;

// The laboratory results of an exam, newest first, until the judge takes one (as the number that it begins
// with) or stops. What the judge skips is noted when it is not blank, and so is the exam under another
// spelling of its code. `since` is the first day that counts as recent; the results before it are not even
// asked for when `onlySince`.
Finding scanResults(dao::Database &clinical, qint32 patientCode, const QString &examCode, QDate since,
                    bool onlySince, const ResultJudge &judge);

} // namespace clivara
