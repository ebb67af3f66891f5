// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoPatient.h"
#include "app/demo/DemoWriter.h"

#include <set>

namespace orvale {

namespace {

// Visit types that carry no clinical texts: services of home care and vaccinations.
bool isService(int type)
{
    return type >= 7 && type <= 13;
}

int visitType(DemoRandom &random, bool elderly)
{
    if (random.chance(elderly ? 0.12 : 0.04))
        return random.between(7, 13);
    const int draw = random.below(100);
    if (draw < 66)
        return 1;
    if (draw < (elderly ? 84 : 70))
        return 2;
    if (draw < 89)
        return 3;
    return draw < 93 ? 4 : draw < 96 ? 5 : draw < 98 ? 6 : 14;
}

// The problem that a visit is filed under: one already begun; some visits are filed under none, in the ways
// that the years have left behind (0, -1, Null).
QVariant problemOf(DemoRandom &random, const DemoPatient &patient, QDate day)
{
    QList<int> candidates;
    for (const DemoProblem &problem : patient.problems) {
        if (problem.start <= day)
            candidates.append(problem.key);
    }
    if (candidates.isEmpty() || random.chance(0.3)) {
        const int draw = random.below(10);
        return draw < 5 ? QVariant() : draw < 8 ? QVariant(0) : QVariant(-1);
    }
    return random.pick(candidates);
}

} // namespace

void writeVisits(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    const double years = double(patient.since.daysTo(writer.today)) / 365.25;
    const double rate = patient.rich ? 26 : 0.5 + 0.7 * double(patient.diseases.size());
    const int count = int(years * rate * (0.6 + 0.8 * random.fraction()));
    std::set<QDate> days; // one visit a day
    for (int i = 0; i < count; ++i)
        days.insert(random.day(patient.since, writer.today));
    if (patient.rich || random.chance(0.01))
        days.insert(writer.today);
    const bool elderly = patient.ageOn(writer.today) >= 75;
    const auto symptoms = writer.lists.rows(QStringLiteral("sintomi"));
    for (const QDate day : days) {
        const int type = visitType(random, elderly);
        const bool service = isService(type);
        QVariant validity;
        if (random.chance(service ? 0.5 : 0.05))
            validity = DemoWriter::midnight(day.addDays(-random.below(30)));
        QVariantList values{++writer.visit,
                            patient.code,
                            service ? QVariant(0) : problemOf(random, patient, day),
                            DemoWriter::midnight(day),
                            validity,
                            type,
                            service || random.chance(0.35) ? QVariant()
                                                           : QVariant(random.pick(symptoms).at(0))};
        if (service) {
            values += QVariantList(5);
        } else {
            values += {writer.sentences(QStringLiteral("history"), 0.3),
                       writer.sentences(QStringLiteral("examination"), 0.35),
                       writer.sentences(QStringLiteral("conclusions"), 0.4, 2),
                       writer.sentences(QStringLiteral("plan"), 0.4, 2),
                       writer.sentences(QStringLiteral("notes"), 0.75, 2)};
        }
        values += writer.stamps(patient, QStringLiteral("DV"), day);
        writer.add("clinical", "VISITAPROBL", values);
    }
}

} // namespace orvale
