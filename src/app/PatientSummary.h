// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QList>
#include <QString>

namespace orvale {

// A problem that is still open.
struct ProblemLine {
    QString description;
    QString icd9; // empty when it was not coded
    QDate since; // null when unknown
};

struct VisitLine {
    QDate date; // null when unknown
    QString type;
    QString text; // the conclusions, or the first text that was written; on one line
};

// The newest result of an exam, with the one before it.
struct LaboratoryLine {
    QString exam;
    QString value;
    QString unit;
    QDate date;
    QString previousValue; // empty when there is none
    QDate previousDate;
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
    QString allergies; // free text; empty when nothing is noted
};

// What the host shows of a patient at a glance.
struct PatientSummary {
    PatientRegistry registry;
    QList<ProblemLine> problems; // newest first
    QList<VisitLine> visits; // newest first
    QList<LaboratoryLine> laboratory; // newest first
    BloodPressure pressure;
};

} // namespace orvale
