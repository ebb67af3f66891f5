// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Allergies.h"

#include <QDate>
#include <QList>
#include <QString>

namespace orvale {

// A problem that is not closed.
struct ProblemLine {
    QString description; // what it is called, be it by the name of its code
    QString icd9; // empty when it was not coded
    QDate since; // null when unknown
    qint16 state = 0; // as stored
};

struct VisitLine {
    QDate date; // null when unknown
    QString type;
    QString text; // the conclusions, or the first text that was written; on one line
};

// What a result's own row says of its normal range.
enum class RangeMark {
    None, // that it is within, or nothing
    Above,
    Below,
    Beyond // it does not say on which side
};

// The newest result of an exam, with the one before it.
struct LaboratoryLine {
    QString exam;
    QString value;
    QString unit; // empty where the value is a text
    RangeMark mark = RangeMark::None;
    QString markedBy; // the words of the row that say so
    QDate date;
    QString previousValue = {}; // empty when there is none
    QDate previousDate = {};
};

struct BloodPressure {
    int systolic = 0; // mmHg; 0: never measured
    int diastolic = 0; // mmHg; 0: not written
    QDate date;
};

// Who the patient is.
struct PatientRegistry {
    qint32 code = -1;
    QString surname;
    QString name;
    QString sex; // "M", "F" or as it was written, upper case
    QDate birthDate; // null when unknown
    QString birthplace;
    QString fiscalCode;
    QString address;
    QString postalCode;
    QString city;
    QString province;
    QString telephone;
    QString exemptionPathology; // archivio.ESENZ_PAT, empty for none
    QString exemptionInvalidity; // archivio.ESENZ_INV, empty for none
    clivara::Allergies allergies;
};

// What the host shows of a patient at a glance.
struct PatientSummary {
    PatientRegistry registry;
    QList<ProblemLine> problems; // chronic ones first, each newest first
    QList<VisitLine> visits; // newest first
    QList<LaboratoryLine> laboratory; // newest first
    BloodPressure pressure;
};

// Whether a result's words say that it lies beyond its normal range. `report` is riepil2.risposta, `verdict`
// risposta_e; stars are how laboratories mark such a value. Words that are not known mark nothing.
RangeMark rangeMark(const QString &report, const QString &verdict);
// The same words, as they are quoted.
QString rangeWords(const QString &report, const QString &verdict);

// True for a number, also one with a bound ("<0.01") or a decimal comma: only behind these the unit says
// something.
bool isMeasured(const QString &value);

} // namespace orvale
