// SPDX-License-Identifier: Apache-2.0
#include "evaluations/MetabolicRules.h"

#include "inputs/CalculatorRules.h"

namespace clivara {

namespace {

constexpr int criteriaOfTheSyndrome = 3;

} // namespace

bool isOutsideMetabolicProgramme(int ageYears, QStringView regionCode)
{
    return regionCode == u"16" && (ageYears < 25 || ageYears >= 71);
}

QList<MetabolicItem> metabolicCriteria(QStringView sex, const MetabolicMeasurements &measurements)
{
    const bool man = sexFromText(sex) == Sex::Male;
    QList<MetabolicItem> met;
    const auto add = [&met](bool isMet, MetabolicItem item) {
        if (isMet)
            met.append(item);
    };
    add(measurements.waistCm >= (man ? 102 : 88), MetabolicItem::Waist);
    add(measurements.systolicMmHg >= 130, MetabolicItem::Systolic);
    add(measurements.diastolicMmHg >= 85, MetabolicItem::Diastolic);
    add(measurements.glucoseMgDl >= 110, MetabolicItem::Glucose);
    add(measurements.hdlMgDl < (man ? 40 : 50), MetabolicItem::Hdl);
    add(measurements.triglyceridesMgDl > 150, MetabolicItem::Triglycerides);
    return met;
}

int CalcolaSM(QStringView sex, int ageYears, const MetabolicMeasurements &measurements,
              QStringView regionCode)
{
    if (isOutsideMetabolicProgramme(ageYears, regionCode))
        return 0;
    return metabolicCriteria(sex, measurements).size() >= criteriaOfTheSyndrome ? 1 : 0;
}

QString metabolicVerdictText(int verdict)
{
    return verdict == 1 ? QStringLiteral("Diagnosticata Sindrome Metabolica.")
                        : QStringLiteral("Sindrome Metabolica NON diagnosticata.");
}

std::optional<double> MetabolicThresholds::of(MetabolicItem item, QStringView sex) const
{
    const auto bySex = [sex](const std::optional<double> &women, const std::optional<double> &men) {
        switch (sexFromText(sex)) {
        case Sex::Female:
            return women;
        case Sex::Male:
            return men;
        case Sex::Unknown:
            break;
        }
        return std::optional<double>();
    };
    switch (item) {
    case MetabolicItem::Waist:
        return bySex(waistWomenCm, waistMenCm);
    case MetabolicItem::Systolic:
        return systolicMmHg;
    case MetabolicItem::Diastolic:
        return diastolicMmHg;
    case MetabolicItem::Glucose:
        return glucoseMgDl;
    case MetabolicItem::Hdl:
        return bySex(hdlWomenMgDl, hdlMenMgDl);
    case MetabolicItem::Triglycerides:
        return triglyceridesMgDl;
    }
    return std::nullopt;
}

bool isBeyondThreshold(MetabolicItem item, double value, double threshold)
{
    return item == MetabolicItem::Hdl ? value <= threshold : value >= threshold;
}

} // namespace clivara
