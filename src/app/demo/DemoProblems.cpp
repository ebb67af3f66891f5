// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoPatient.h"
#include "app/demo/DemoWriter.h"

#include <algorithm>

namespace orvale {

namespace {

// The states of a problem.
constexpr int unspecified = 0;
constexpr int open = 1;
constexpr int closed = 2;
constexpr int chronic = 3;

struct NewProblem {
    QString icd;
    QString description;
    QDate start;
    int state = open;
};

void writeProblem(DemoWriter &writer, DemoPatient &patient, const NewProblem &problem)
{
    DemoRandom &random = writer.random;
    const QDate opened =
        std::min(problem.start.addDays(random.chance(0.3) ? random.between(1, 90) : 0), writer.today);
    QVariant closing;
    if (problem.state == closed)
        closing = DemoWriter::midnight(std::min(opened.addDays(random.between(5, 120)), writer.today));
    QVariantList values{++writer.problem,
                        patient.code,
                        DemoWriter::midnight(opened),
                        DemoWriter::midnight(problem.start),
                        closing,
                        problem.icd.isEmpty() ? QVariant() : QVariant(problem.icd),
                        random.chance(0.06) && !problem.icd.isEmpty() ? QVariant(problem.icd) : QVariant(),
                        problem.description,
                        problem.state,
                        writer.sentences(QStringLiteral("history"), 0.65),
                        writer.sentences(QStringLiteral("examination"), 0.7),
                        writer.sentences(QStringLiteral("conclusions"), 0.7, 1),
                        writer.sentences(QStringLiteral("plan"), 0.7, 2)};
    if (random.chance(0.08)) // from before rows were exchanged between workstations
        values += QVariantList(9);
    else
        values += writer.stamps(patient, QStringLiteral("DP"), opened);
    writer.add("clinical", "PROBLEMS", values);
    patient.problems.append({writer.problem, problem.icd, problem.start, problem.state != closed});
}

// The lists that the prevention forms look diagnoses up in.
void writeDiagnosisLists(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    if (patient.has(Disease::Diabetes)) {
        if (random.chance(0.5))
            writer.add("clinical", "cronpat", {patient.code, random.chance(0.8) ? 32 : 167});
        if (random.chance(0.3))
            writer.add("clinical", "pat_rem2", {patient.code, 2, QStringLiteral("250.00")});
        if (random.chance(0.2))
            writer.add("clinical", "patopers", {patient.code, QStringLiteral("250.00")});
    }
    if (patient.has(Disease::Hypertension) && random.chance(0.5))
        writer.add("clinical", "cronpat", {patient.code, 31});
    if (random.chance(0.08))
        writer.add("clinical", "cronpat", {patient.code, random.between(40, 113)});
    if (random.chance(0.05)) // of the family: mother, father
        writer.add("clinical", "pat_rem2",
                   {patient.code, random.chance(0.5) ? 1 : 3,
                    random.chance(0.5) ? QStringLiteral("410.9") : QStringLiteral("250.00")});
    if (patient.has(Disease::Ischaemia) && random.chance(0.5))
        writer.add("clinical", "patopers", {patient.code, QStringLiteral("414.9")});
}

} // namespace

void writeProblems(DemoWriter &writer, DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    const auto codes = writer.lists.rows(QStringLiteral("icd9"));
    const auto describe = [&](const QString &icd) {
        const auto row =
            std::find_if(codes.begin(), codes.end(), [&](const QStringList &r) { return r.at(0) == icd; });
        QString description = row->at(1);
        if (random.chance(0.1))
            description += QStringLiteral(" (")
                           + random.pick(writer.lists.words(QStringLiteral("notes"))).chopped(1).toLower()
                           + u')';
        return description;
    };

    QList<NewProblem> problems;
    for (const DemoDisease &disease : patient.diseases) {
        const int draw = random.below(10);
        problems.append({disease.icd, describe(disease.icd), disease.start,
                         draw < 5   ? chronic
                         : draw < 9 ? open
                                    : unspecified});
    }
    const auto acute = writer.lists.rows(QStringLiteral("acute"));
    const int days = int(patient.since.daysTo(writer.today));
    const int illnesses = random.below(2 + days / 1200) + (patient.rich ? 12 : 0);
    QStringList used; // a patient has one problem of each code
    for (int i = 0; i < illnesses; ++i) {
        const QString icd = random.pick(acute).at(0);
        if (used.contains(icd))
            continue;
        used.append(icd);
        const QDate start = random.day(patient.since, writer.today);
        const bool recent = start.daysTo(writer.today) < 20;
        problems.append({icd, describe(icd), start, recent || random.chance(0.2) ? open : closed});
    }
    if (random.chance(0.08))
        problems.append({{},
                         QStringLiteral("Difficoltà familiari: c'è bisogno d'ascolto"),
                         random.day(patient.since, writer.today),
                         open});
    std::stable_sort(problems.begin(), problems.end(),
                     [](const NewProblem &a, const NewProblem &b) { return a.start < b.start; });
    for (const NewProblem &problem : problems)
        writeProblem(writer, patient, problem);
    writeDiagnosisLists(writer, patient);
}

} // namespace orvale
