// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoPatient.h"
#include "app/demo/DemoWriter.h"
#include "evaluations/CardiovascularRules.h"
#include "evaluations/MetabolicRules.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace orvale {

namespace {

// Distinct days of evaluations, oldest first.
std::set<QDate> evaluationDays(DemoWriter &writer, const DemoPatient &patient, double probability)
{
    std::set<QDate> days;
    if (!patient.rich && !writer.random.chance(probability))
        return days;
    const int count = writer.random.between(1, patient.rich ? 12 : 4);
    for (int i = 0; i < count; ++i)
        days.insert(writer.random.day(patient.since, writer.today));
    return days;
}

void writeCardiovascularRisk(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    const int ageToday = patient.ageOn(writer.today);
    for (const QDate day : evaluationDays(writer, patient, ageToday >= 35 && ageToday < 72 ? 0.3 : 0.02)) {
        const int age = patient.ageOn(day);
        const int systolic = std::clamp(int(std::round(random.normal(systolicOn(patient, day), 8))), 90, 200);
        const int cholesterol =
            std::clamp(int(std::round(random.normal(cholesterolOn(patient, day), 10))), 130, 320);
        const int hdl = std::clamp(int(std::round(random.normal(patient.hdl, 3))), 20, 100);
        const bool diabetic = patient.has(Disease::Diabetes, day);
        const bool treated = patient.has(Disease::Hypertension, day);
        writer.add("clinical", "Rischio_Cardio",
                   {patient.code, DemoWriter::midnight(day), age,
                    clivara::CalcolaRCV(patient.female ? 1 : 0, age, patient.smoker, systolic, cholesterol,
                                        hdl, diabetic, treated),
                    systolic, cholesterol, hdl, patient.smoker, diabetic, treated});
    }
}

void writeMetabolicSyndrome(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    for (const QDate day : evaluationDays(writer, patient, patient.has(Disease::Diabetes) ? 0.35 : 0.1)) {
        const double waist = std::round(random.normal(waistOn(patient, day), 2));
        const double systolic = std::round(random.normal(systolicOn(patient, day), 8));
        const double diastolic = std::round(random.normal(52 + 0.22 * systolic, 6));
        const double glucose = std::round(random.normal(glucoseOn(patient, day), 8));
        const double triglycerides =
            std::round(std::max(35.0, random.normal(triglyceridesOn(patient, day), 22)));
        const int verdict = clivara::CalcolaSM(patient.female ? u"F" : u"M", patient.ageOn(day),
                                               {int(waist), int(systolic), int(diastolic), int(glucose),
                                                clivara::wholeNumber(patient.hdl), int(triglycerides)},
                                               {});
        writer.add("clinical", "SindrMetabolica",
                   {patient.code, DemoWriter::midnight(day), verdict, waist, systolic, diastolic, glucose,
                    triglycerides});
    }
}

} // namespace

void writeEvaluations(DemoWriter &writer, const DemoPatient &patient)
{
    writeCardiovascularRisk(writer, patient);
    writeMetabolicSyndrome(writer, patient);
}

} // namespace orvale
