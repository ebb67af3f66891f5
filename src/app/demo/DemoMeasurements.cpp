// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoPatient.h"
#include "app/demo/DemoWriter.h"

#include <algorithm>
#include <cmath>

namespace orvale {

namespace {

double yearsSince(QDate start, QDate day)
{
    return std::max(0.0, double(start.daysTo(day)) / 365.25);
}

const DemoDisease *find(const DemoPatient &patient, Disease disease, QDate day)
{
    for (const DemoDisease &d : patient.diseases) {
        if (d.disease == disease && d.start <= day)
            return &d;
    }
    return nullptr;
}

// A number of five characters as the anthropometry form packs it, or blanks.
QString packed(double value, bool missing)
{
    return missing ? QString(5, u' ') : QString::number(value, 'f', 1).rightJustified(5);
}

void writePressures(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    const double years = yearsSince(patient.since, writer.today);
    const double rate = patient.rich                                                           ? 30
                        : patient.has(Disease::Hypertension) || patient.has(Disease::Diabetes) ? 1.8
                                                                                               : 0.35;
    QList<QDate> days;
    const int count = int(years * rate + random.fraction());
    for (int i = 0; i < count; ++i)
        days.append(random.day(patient.since, writer.today));
    if (patient.rich)
        days.append(writer.today);
    std::sort(days.begin(), days.end());
    for (const QDate day : days) {
        // Read on a cuff by fives, mostly.
        const double systolic = random.normal(systolicOn(patient, day), 9);
        const double diastolic = std::min(random.normal(52 + 0.22 * systolic, 6), systolic - 20);
        const auto read = [&](double value) {
            return random.chance(0.85) ? int(std::round(value / 5)) * 5 : int(std::round(value));
        };
        writer.add("clinical", "esa_ob",
                   {patient.code, DemoWriter::midnight(day),
                    random.chance(0.005) ? QVariant() : QVariant(read(systolic)),
                    random.chance(0.008) ? QVariant() : QVariant(read(diastolic))});
    }
}

// Nothing is missing in the patient with very many rows, who is the one to look at.
// Height in characters 1-3, weight in 4-8, waist in 9-13.
void writeAnthropometry(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    const double years = yearsSince(patient.since, writer.today);
    const double rate = patient.rich ? 10 : patient.diseases.isEmpty() ? 0.18 : 0.75;
    QList<QDate> days;
    const int count = int(years * rate + random.fraction());
    for (int i = 0; i < count; ++i)
        days.append(random.day(patient.since, writer.today));
    if (patient.rich)
        days.append(writer.today.addDays(-random.between(0, 60)));
    std::sort(days.begin(), days.end());
    for (const QDate day : days) {
        const QString height = random.chance(0.08)
                                   ? (random.chance(0.5) ? QStringLiteral("000") : QStringLiteral("   "))
                                   : QString::number(int(patient.heightCm)).rightJustified(3);
        const QString text =
            height + packed(random.normal(patient.weightOn(day), 0.8), random.chance(0.04) && !patient.rich)
            + packed(random.normal(waistOn(patient, day), 1.5), random.chance(0.3) && !patient.rich);
        writer.add("clinical", "ESAME_OB",
                   {patient.code, QStringLiteral("A"), day.toString(QStringLiteral("yyyyMMdd")),
                    DemoWriter::midnight(day),
                    random.chance(0.01) && !patient.rich
                        ? QVariant()
                        : QVariant(text + QString(random.between(11, 19), u' '))});
    }
}

// The key of the patient's one row of a questionnaire: empty, not Null, so that the index finds it.
const auto noKey = QStringLiteral("");

// The lifestyle questionnaire: pairs of characters, the smoking code (1 never, 2 stopped, 3 smoker) in 96-97.
void writeLifestyle(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    if (!patient.rich && random.chance(0.35))
        return;
    static const QStringList codes{QStringLiteral("00"), QStringLiteral("01"), QStringLiteral("02"),
                                   QStringLiteral("99"), QStringLiteral("99"), QStringLiteral("  ")};
    QString text;
    for (int i = 0; i < 65; ++i)
        text += random.pick(codes);
    text.replace(95, 2,
                 patient.smoker       ? QStringLiteral("03")
                 : random.chance(0.7) ? QStringLiteral("01")
                                      : QStringLiteral("02"));
    writer.add("clinical", "ESAME_OB",
               {patient.code, QStringLiteral("H"), noKey,
                random.chance(0.15) ? QVariant()
                                    : QVariant(DemoWriter::midnight(random.day(patient.since, writer.today))),
                text});
}

// The allergies questionnaire: 115 pairs, "99" or the position in the group.
void writeAllergies(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    if (!random.chance(patient.has(Disease::Asthma) ? 0.7 : 0.25) && !patient.rich)
        return;
    QString text;
    for (const int items : {17, 2, 5, 41, 12, 9, 15, 10, 4}) {
        for (int i = 0; i < items; ++i)
            text += random.chance(patient.rich ? 0.08 : 0.04)
                        ? QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0'))
                        : QStringLiteral("99");
    }
    writer.add("clinical", "ESAME_OB",
               {patient.code, QStringLiteral("X"), noKey, QVariant(),
                random.chance(0.05) && !patient.rich ? QVariant() : QVariant(text)});
}

// Past infectious diseases: 15 pairs, then five blocks of a pair and a note of 30 characters.
void writeInfections(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    if (!random.chance(0.4) && !patient.rich)
        return;
    static const QStringList notes{QStringLiteral("nel 1987, ricovero"), QStringLiteral("recidiva più volte"),
                                   QStringLiteral("in età scolare"), QStringLiteral("profilassi eseguita")};
    QString text;
    for (int i = 0; i < 15; ++i)
        text += random.chance(patient.rich ? 0.4 : 0.15)
                    ? QStringLiteral("%1").arg(i, 2, 10, QLatin1Char('0'))
                    : QStringLiteral("99");
    for (int block = 0; block < 5; ++block) {
        const bool had = random.chance(patient.rich ? 0.5 : 0.12);
        text += had ? QStringLiteral("0%1").arg(block) : QStringLiteral("99");
        text += (random.chance(had ? 0.6 : 0.03) ? random.pick(notes) : QString()).leftJustified(30);
    }
    const QDate day = random.day(patient.since, writer.today);
    writer.add("clinical", "ESAME_OB", {patient.code, QStringLiteral("M"), noKey, writer.at(day), text});
}

} // namespace

double systolicOn(const DemoPatient &patient, QDate day)
{
    const double untreated = 108 + 0.32 * patient.ageOn(day);
    const DemoDisease *hypertension = find(patient, Disease::Hypertension, day);
    // Treatment takes two years to bring the pressure down.
    return hypertension ? untreated + 22 - 6 * std::min(2.0, yearsSince(hypertension->start, day))
                        : untreated;
}

double glucoseOn(const DemoPatient &patient, QDate day)
{
    const double base = 84 + 0.12 * patient.ageOn(day);
    const DemoDisease *diabetes = find(patient, Disease::Diabetes, day);
    return diabetes ? base + 42 + 1.6 * std::min(15.0, yearsSince(diabetes->start, day)) : base;
}

double cholesterolOn(const DemoPatient &patient, QDate day)
{
    const DemoDisease *high = find(patient, Disease::Cholesterol, day);
    return high ? patient.cholesterol - 24 * std::min(2.0, yearsSince(high->start, day))
                : patient.cholesterol;
}

double creatinineOn(const DemoPatient &patient, QDate day)
{
    const double aging = 0.006 * yearsSince(patient.since, day);
    const DemoDisease *failure = find(patient, Disease::KidneyFailure, day);
    return patient.creatinine + aging + (failure ? 0.5 + 0.09 * yearsSince(failure->start, day) : 0);
}

double triglyceridesOn(const DemoPatient &patient, QDate day)
{
    const double excess = std::max(0.0, patient.weightOn(day) / std::pow(patient.heightCm / 100, 2) - 24);
    return 98 + 5 * excess + (find(patient, Disease::Diabetes, day) ? 28 : 0);
}

double waistOn(const DemoPatient &patient, QDate day)
{
    return (patient.female ? 28 : 34) + 2.25 * patient.weightOn(day) / std::pow(patient.heightCm / 100, 2);
}

void writeMeasurements(DemoWriter &writer, const DemoPatient &patient)
{
    writePressures(writer, patient);
    writeAnthropometry(writer, patient);
    writeLifestyle(writer, patient);
    writeAllergies(writer, patient);
    writeInfections(writer, patient);
}

} // namespace orvale
