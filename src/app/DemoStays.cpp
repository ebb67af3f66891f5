// SPDX-License-Identifier: Apache-2.0
#include "app/DemoGenerators.h"
#include "app/DemoPatient.h"
#include "app/DemoWriter.h"

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

QString digits(DemoRandom &random, int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += QChar(u'0' + random.below(3));
    return text;
}

// Regional sheets of diabetes (type 1) and hypertension (type 2): list boxes as digits, a note of 79
// characters, numbers of four characters, dates of eight.
void writeSheets(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    for (const int type : {1, 2}) {
        if (!patient.has(type == 1 ? Disease::Diabetes : Disease::Hypertension) || !random.chance(0.12))
            continue;
        const QDate from = std::max(patient.since, writer.today.addYears(-2));
        QList<QDate> days{random.day(from, writer.today)};
        if (random.chance(0.3))
            days.append(random.day(from, writer.today));
        std::sort(days.begin(), days.end());
        for (const QDate day : days) {
            const auto number = [](double value) {
                return QStringLiteral("%1").arg(value, 4, 'f', 1, QLatin1Char('0'));
            };
            const auto date = [&] {
                return day.addDays(-random.between(10, 300)).toString(QStringLiteral("ddMMyyyy"));
            };
            const double massIndex = patient.weightOn(day) * 10000 / (patient.heightCm * patient.heightCm);
            const QString sheet =
                digits(random, type == 1 ? 18 : 12)
                + random.pick(writer.lists.words(QStringLiteral("notes"))).chopped(1).leftJustified(79)
                + number(type == 1 ? (glucoseOn(patient, day) + 46.7) / 28.7 : systolicOn(patient, day) / 10)
                + number(massIndex) + number(std::min(99.9, patient.weightOn(day))) + date() + date() + date()
                + (type == 1 ? QStringLiteral("00,000300               , ") : QString());
            writer.add("clinical", "AIR15_7",
                       {++writer.sheets[type], patient.code, type, DemoWriter::midnight(day), sheet});
        }
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
