// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoPatient.h"
#include "app/demo/DemoWriter.h"

#include <algorithm>

namespace orvale {

namespace {

void writeStays(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    QList<QDate> days;
    const int count = patient.rich ? 6
                                   : random.below(patient.ageOn(writer.today) >= 65 ? 4 : 2)
                                         / (patient.diseases.isEmpty() ? 2 : 1);
    for (int i = 0; i < count; ++i)
        days.append(random.day(patient.since, writer.today));
    std::sort(days.begin(), days.end());
    const auto wards = writer.lists.rows(QStringLiteral("reparth"));
    for (const QDate day : days) {
        const QDate discharge = day.addDays(random.between(1, 18));
        writer.add("clinical", "ricoveri2",
                   QVariantList{
                       ++writer.stay, patient.code, DemoWriter::midnight(day),
                       discharge > writer.today || random.chance(0.05) || (patient.rich && day == days.last())
                           ? QVariant()
                           : QVariant(DemoWriter::midnight(discharge)),
                       random.chance(0.06) ? QStringLiteral("Ospedale fuori regione (non in elenco)")
                                           : random.pick(writer.lists.words(QStringLiteral("sedericov"))),
                       random.pick(wards).at(1)}
                       + writer.stamps(patient, QStringLiteral("DR"), day));
    }
}

} // namespace

void writeStaysAndSheets(DemoWriter &writer, const DemoPatient &patient)
{
    writeStays(writer, patient);
    writeSheets(writer, patient);
}

void writeJournals(DemoWriter &writer, const QList<DemoPatient> &patients)
{
    DemoRandom &random = writer.random;
    const int changes = int(patients.size()) * 2 / 3 + 1;
    QList<QDate> days;
    for (int i = 0; i < changes; ++i)
        days.append(random.day(writer.first, writer.today));
    std::sort(days.begin(), days.end());
    static const QStringList letters{QStringLiteral("A"), QStringLiteral("H"), QStringLiteral("M"),
                                     QStringLiteral("X")};
    for (int i = 0; i < changes; ++i) {
        const QDateTime day = DemoWriter::midnight(days.at(i));
        const int code = random.pick(patients).code;
        switch (random.below(4)) {
        case 0:
            writer.add("clinical", "Modifiche", {i + 1, 3, day, code, QVariant(), QVariant(), false});
            break;
        case 1:
            writer.add("clinical", "Modifiche",
                       {i + 1, 9, day, code, QStringLiteral("DIARIO-COMPLETO"), QVariant(), false});
            break;
        default:
            writer.add("clinical", "Modifiche",
                       {i + 1, 4, day, code, random.pick(letters), QVariant(), random.chance(0.05)});
        }
    }
    for (int i = 0; i < changes / 6; ++i) {
        const QDateTime time = writer.at(random.day(writer.first, writer.today));
        const QString owner = random.pick(writer.doctors).uid;
        writer.add("clinical", "DELETIONS",
                   {i + 1, random.uid(), random.chance(0.7) ? QStringLiteral("DV") : QStringLiteral("DP"),
                    DemoWriter::braced(random.uid()), owner, time, time, owner});
    }
    static const QStringList methods{
        QStringLiteral("InserimentoPaziente"), QStringLiteral("ModificaPaziente"),
        QStringLiteral("InserimentoEsenzioni"), QStringLiteral("ModificaEsenzioni")};
    for (int i = 0; i < changes / 2; ++i) {
        const QString &method = random.pick(methods);
        const bool exemption = method.endsWith(QLatin1String("Esenzioni"));
        writer.add("events", "Eventi",
                   {i + 1, random.pick(writer.doctors).medico, random.pick(writer.doctors).medico, method,
                    random.chance(0.05) ? 0 : random.pick(patients).code,
                    DemoWriter::midnight(random.day(writer.first, writer.today)),
                    exemption ? QStringLiteral("013") : QString(), QString(), QString(), true});
    }
}

} // namespace orvale
