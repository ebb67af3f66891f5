// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoPatient.h"
#include "app/demo/DemoWriter.h"

#include <algorithm>

namespace orvale {

namespace {

QString medicineOf(DemoWriter &writer, const QList<QStringList> &medicines, const QString &atcGroup)
{
    QStringList codes;
    for (const QStringList &row : medicines) {
        if (row.at(2).startsWith(atcGroup))
            codes.append(row.at(0));
    }
    return writer.random.pick(codes);
}

// The diagnosis of a prescription: mostly there, sometimes left out or typed as blanks.
QVariant diagnosis(DemoRandom &random, const QString &icd)
{
    const int draw = random.below(100);
    return draw < 78 ? QVariant(icd) : draw < 82 ? QVariant(QStringLiteral("  ")) : QVariant();
}

DemoOrder prescription(DemoRandom &random, QDate day, const QString &medicine, const QString &icd)
{
    DemoOrder order;
    order.day = day;
    order.medicine = medicine;
    const int draw = random.below(100);
    order.packs = draw < 2 ? QVariant() : QVariant(draw < 70 ? 1 : draw < 88 ? 2 : 3);
    order.diagnosis = diagnosis(random, icd);
    return order;
}

// One medicine of a chronic therapy, repeated every month or so; now and then it is changed for another of
// its group, and some months are missed.
void repeat(DemoWriter &writer, const QList<QStringList> &medicines, const QString &group, const QString &icd,
            QDate from, QList<DemoOrder> &orders)
{
    DemoRandom &random = writer.random;
    QString medicine = medicineOf(writer, medicines, group);
    const int interval = random.chance(0.35) ? 30 : random.between(42, 90);
    for (QDate day = from.addDays(random.below(20)); day <= writer.today;
         day = day.addDays(interval + random.between(-5, 6))) {
        if (random.chance(0.02))
            medicine = medicineOf(writer, medicines, group);
        if (!random.chance(0.08))
            orders.append(prescription(random, day, medicine, icd));
    }
}

} // namespace

QList<DemoOrder> therapies(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    QList<DemoOrder> orders;
    const auto medicines = writer.lists.rows(QStringLiteral("spefar"));
    const auto diseases = writer.lists.rows(QStringLiteral("diseases"));
    for (const DemoDisease &disease : patient.diseases) {
        const QStringList groups = diseases.at(int(disease.disease)).at(7).split(u' ');
        for (QString group : groups) {
            if (group.endsWith(u'?')) {
                group.chop(1);
                if (!patient.rich && !random.chance(0.4))
                    continue;
            }
            repeat(writer, medicines, group, disease.icd, std::max(disease.start, patient.since), orders);
        }
    }
    const auto acute = writer.lists.rows(QStringLiteral("acute"));
    for (QDate day = patient.since.addDays(random.below(500)); day <= writer.today;
         day = day.addDays(random.between(60, patient.rich ? 90 : 900))) {
        const QStringList &illness = random.pick(acute);
        orders.append(prescription(random, day, medicineOf(writer, medicines, illness.at(1)), illness.at(0)));
    }
    return orders;
}

void writeOrders(DemoWriter &writer, const DemoPatient &patient, QList<DemoOrder> orders)
{
    std::stable_sort(orders.begin(), orders.end(),
                     [](const DemoOrder &a, const DemoOrder &b) { return a.day < b.day; });
    for (const DemoOrder &order : orders) {
        const int key = ++writer.prescription;
        const QString item = order.medicine.isEmpty()
                                 ? QStringLiteral("E%1").arg(key, 9, 10, QLatin1Char('0'))
                                 : order.medicine;
        const QVariant day = order.undated                ? QVariant()
                             : writer.random.chance(0.05) ? writer.at(order.day)
                                                          : DemoWriter::midnight(order.day);
        writer.add("clinical", "riepil",
                   {key, patient.code, order.tipo, item, day, order.packs, order.diagnosis});
        if (order.tipo == 8)
            writer.add("clinical", "SUGGERIT", {key, order.hospital});
        for (const QVariantList &result : order.results)
            writer.add("clinical", "riepil2", QVariantList{++writer.result, item} + result);
    }
}

} // namespace orvale
