// SPDX-License-Identifier: Apache-2.0
#include "app/demo/Demo.h"

#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoPatient.h"
#include "app/demo/DemoWriter.h"

namespace orvale {

namespace {

// Patients written in one transaction.
constexpr int batch = 250;

void writePatient(DemoWriter &writer, DemoPatient &patient)
{
    writeProblems(writer, patient);
    writeVisits(writer, patient);
    writeMeasurements(writer, patient);
    QList<DemoOrder> orders = therapies(writer, patient);
    orders += laboratoryAndServices(writer, patient);
    writeOrders(writer, patient, orders);
    writeEvaluations(writer, patient);
    writeStaysAndSheets(writer, patient);
}

} // namespace

void createDemo(const QString &path, const DemoOptions &options, const DemoProgress &progress)
{
    Practice::build(path, [&](Practice &practice) {
        // The first doctor's region is one of those with a diabetes chart of their own.
        practice.setProperty(QStringLiteral("region"), QStringLiteral("03"));
        DemoWriter writer(practice, options.seed, options.today, options.years);
        dao::Workspace &workspace = practice.engine().DefaultWorkspace();
        {
            dao::Transaction transaction(workspace);
            writeCatalogues(writer);
            writer.commit(transaction);
        }
        // The patient with very many rows stands early in the practice, but is not the first one.
        const int rich = std::min(17, options.patients);
        QList<DemoPatient> patients;
        while (patients.size() < options.patients) {
            dao::Transaction transaction(workspace);
            const int last = std::min(int(patients.size()) + batch, options.patients);
            while (patients.size() < last) {
                const int code = int(patients.size()) + 1;
                DemoPatient patient = writePerson(writer, code, code == rich);
                writePatient(writer, patient);
                patients.append(patient);
                if (progress && code % 10 == 0)
                    progress(code, options.patients);
            }
            writer.commit(transaction);
        }
        dao::Transaction transaction(workspace);
        writeJournals(writer, patients);
        writer.commit(transaction);
        if (progress)
            progress(options.patients, options.patients);
    });
}

} // namespace orvale
