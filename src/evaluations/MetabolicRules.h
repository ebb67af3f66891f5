// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <QStringView>
#include <optional>

// The verdict on the metabolic syndrome, and a region's thresholds for the values that are proposed for it.
namespace clivara {

// The measurements, in the order in which the form asks for them.
enum class MetabolicItem { Waist, Systolic, Diastolic, Glucose, Hdl, Triglycerides };
constexpr std::size_t metabolicItemCount = 6;

// Whole numbers in cm, mmHg and mg/dl.
struct MetabolicMeasurements {
    int waistCm = 0;
    int systolicMmHg = 0;
    int diastolicMmHg = 0;
    int glucoseMgDl = 0;
    int hdlMgDl = 0;
    int triglyceridesMgDl = 0;
};

// In one region the syndrome is not diagnosed outside the ages of its programme.
bool isOutsideMetabolicProgramme(int ageYears, QStringView regionCode);

// The criteria that the measurements meet: waist from 102 cm on for men ("M"), from 88 for any other sex text;
// systolic pressure from 130, diastolic from 85 (each counts by itself), glucose from 110, HDL below 40 for men and
// below 50 otherwise, triglycerides above 150.
QList<MetabolicItem> metabolicCriteria(QStringView sex, const MetabolicMeasurements &measurements);

// 1 when the syndrome is present: three criteria or more, inside the region's programme; else 0.
int CalcolaSM(QStringView sex, int ageYears, const MetabolicMeasurements &measurements,
              QStringView regionCode);

// "Diagnosticata Sindrome Metabolica." for 1, its contrary for anything else.
QString metabolicVerdictText(int verdict);

// Thresholds of a region; a missing one is empty.
struct MetabolicThresholds {
    QDate since; // in force from that day on; null when unknown
    std::optional<double> waistWomenCm, waistMenCm;
    std::optional<double> systolicMmHg, diastolicMmHg, glucoseMgDl;
    std::optional<double> hdlWomenMgDl, hdlMenMgDl, triglyceridesMgDl;

    // What holds for a patient; empty where it goes by the sex and that is unknown.
    std::optional<double> of(MetabolicItem item, QStringView sex) const;
};

// True when the value lies at the threshold or beyond it: HDL at or below, everything else at or above.
bool isBeyondThreshold(MetabolicItem item, double value, double threshold);

} // namespace clivara
