// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QList>
#include <QString>

namespace orvale {

// The chronic diseases that the demo practice follows through the years.
enum class Disease {
    Hypertension,
    Diabetes,
    Cholesterol,
    Copd,
    Asthma,
    Hypothyroidism,
    Reflux,
    Ischaemia,
    Fibrillation,
    HeartFailure,
    KidneyFailure,
    Prostate,
    Osteoporosis,
    Depression,
    Anxiety,
    Gout,
    Arthrosis,
    Count
};

struct DemoProblem {
    int key = 0; // idProblems
    QString icd; // may be empty: described in words only
    QDate start;
    bool open = true;
};

struct DemoDisease {
    Disease disease = Disease::Count;
    QString icd;
    QDate start;
};

// What the generators know of one invented patient, so that pressures, results and therapies of the years
// agree.
struct DemoPatient {
    int code = 0;
    QString surname;
    QString name;
    bool female = false;
    QDate birth; // always known here, even where the registry lacks it
    QDate since; // first day of the chart
    QString uid; // plain row UID of the patient
    QString owner; // plain UID of the patient's doctor
    bool smoker = false;
    bool rich = false; // the patient with very many rows
    double heightCm = 170;
    double weightKg = 70; // at the start of the chart
    double weightTrend = 0; // kg a year
    double creatinine = 0.9; // mg/dl, at the start
    double cholesterol = 200; // mg/dl, untreated
    double hdl = 50; // mg/dl
    QList<DemoDisease> diseases;
    QList<DemoProblem> problems;

    bool has(Disease disease, QDate day) const
    {
        for (const DemoDisease &d : diseases) {
            if (d.disease == disease && d.start <= day)
                return true;
        }
        return false;
    }
    bool has(Disease disease) const { return has(disease, QDate(9999, 1, 1)); }
    int ageOn(QDate day) const // completed years
    {
        const bool before =
            day.month() < birth.month() || (day.month() == birth.month() && day.day() < birth.day());
        return day.year() - birth.year() - (before ? 1 : 0);
    }
    double weightOn(QDate day) const { return weightKg + weightTrend * double(since.daysTo(day)) / 365.25; }
};

} // namespace orvale
