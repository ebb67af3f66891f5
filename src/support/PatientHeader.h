// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Allergies.h"

#include <QDate>
#include <QString>

namespace clivara {

// Who the current patient is, as the patient's own rows say: empty where they say nothing, and never another
// patient's. What people read at the top of every form.
struct PatientIdentity {
    QString surname, name;
    QString sex; // upper case
    QString fiscalCode;
};

// The current patient's heading, reloaded before every action. Texts are fixed-width: filled with blanks to
// their width and cut at it; use trimmed() to show them. `age` is the difference of the calendar years.
struct PatientHeader {
    qint32 patientCode = -1; // -1: no patient
    QString fiscalCode = blank(16);
    QString telephone = blank(18);
    QString birthplace = blank(30);
    QString birthDate = blank(10);
    QString age = blank(3);
    QString address = blank(35);
    QString city = blank(30);
    QString province = blank(2);
    QString sex = blank(1);
    QString healthCard = blank(16);
    QString exemptionPathology = blank(1);
    QString exemptionInvalidity = blank(1);
    QString surname;
    QString name;
    QDate birthDay; // the birth date itself; null when unknown
    PatientIdentity identity;
    // True when patientCode is above 0 and its registry row was found and read. Otherwise other texts may be
    // the previous patient's, and nothing is stored.
    bool identified = false;
    Allergies allergies; // of patientCode; Unread unless they were read for this patient

    static QString blank(int width) { return QString(width, QLatin1Char(' ')); }
    // The text filled or cut to the width.
    static QString fixed(const QString &text, int width);
};

// Completed years of life on a day: the calendar-year difference, less one before this year's birthday.
// -1 when the birth date is unknown or later than the day.
int exactAge(QDate birth, QDate today);

} // namespace clivara
