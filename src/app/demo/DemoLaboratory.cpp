// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoPatient.h"
#include "app/demo/DemoWriter.h"

#include <algorithm>
#include <cmath>

namespace orvale {

namespace {

struct Test {
    QString code;
    QString name; // of the nomenclature
    QString otherName; // of another laboratory
    QString unit;
};

// The results of one order.
class ResultSheet {
public:
    ResultSheet(DemoWriter &writer, DemoOrder &order)
        : m_writer(writer)
        , m_order(order)
        , m_otherLaboratory(writer.random.chance(0.5))
        , m_done(DemoWriter::midnight(std::min(order.day.addDays(writer.random.between(0, 5)), writer.today)))
    {
    }

    void add(const Test &test, double value, int decimals)
    {
        DemoRandom &random = m_writer.random;
        const bool noted = random.chance(0.05);
        m_order.results.append(
            {test.code, m_otherLaboratory ? test.otherName : test.name, valueText(value, decimals),
             noted ? QVariant(random.pick(m_writer.lists.words(QStringLiteral("result notes")))) : QVariant(),
             random.chance(0.02) ? QVariant(QStringLiteral("Nella norma")) : QVariant(),
             test.unit.isEmpty() ? QVariant() : QVariant(test.unit),
             random.chance(0.03) ? QVariant() : QVariant(m_done), QVariant()});
    }

    void addText(const Test &test, const QString &value)
    {
        m_order.results.append({test.code, m_otherLaboratory ? test.otherName : test.name, value, QVariant(),
                                QVariant(), QVariant(), QVariant(m_done), QVariant()});
    }

private:
    // The value as laboratories send it: mostly a plain number, sometimes with blanks before it, a comma, a
    // bound or words, or nothing.
    QVariant valueText(double value, int decimals)
    {
        DemoRandom &random = m_writer.random;
        const QString number = QString::number(std::max(value, 0.0), 'f', decimals);
        const int draw = random.below(1000);
        if (draw < 900)
            return number;
        if (draw < 945)
            return QString(random.between(1, 2), u' ') + number;
        if (draw < 965)
            return QString(number).replace(u'.', u',');
        if (draw < 973)
            return QString(u'<' + number);
        if (draw < 980)
            return QStringLiteral("non eseguito");
        if (draw < 984)
            return QStringLiteral("vedi referto");
        return draw < 990 ? QVariant(QStringLiteral("  ")) : draw < 994 ? QVariant(QString()) : QVariant();
    }

    DemoWriter &m_writer;
    DemoOrder &m_order;
    bool m_otherLaboratory;
    QDateTime m_done;
};

DemoOrder laboratory(DemoWriter &writer, const DemoPatient &patient, QDate day,
                     const QList<QStringList> &others)
{
    DemoRandom &random = writer.random;
    DemoOrder order;
    order.day = day;
    order.tipo = 1;
    order.undated = random.chance(0.003);
    if (!patient.diseases.isEmpty() && random.chance(0.6))
        order.diagnosis = random.pick(patient.diseases).icd;
    ResultSheet sheet(writer, order);

    const QString mgDl = QStringLiteral("mg/dl");
    const double glucose = std::max(58.0, random.normal(glucoseOn(patient, day), 9));
    sheet.add({QStringLiteral("90.27.1"), QStringLiteral("GLUCOSIO"), QStringLiteral("S-Glucosio"), mgDl},
              glucose, 0);
    if (patient.has(Disease::Diabetes, day)) {
        // Glycated haemoglobin follows the mean glucose; mmol/mol since the laboratories changed over.
        const double percent = (glucose + 46.7) / 28.7;
        const bool newUnit = random.chance(0.85);
        sheet.add({QStringLiteral("90.28.1"), QStringLiteral("EMOGLOBINA GLICATA (HbA1c)"),
                   QStringLiteral("Sg-HbA1c (IFCC)"),
                   newUnit ? QStringLiteral("mmol/mol") : QStringLiteral("%")},
                  newUnit ? (percent - 2.15) * 10.929 : percent, newUnit ? 0 : 1);
    }
    if (random.chance(0.85)) {
        sheet.add({QStringLiteral("90.14.3"), QStringLiteral("COLESTEROLO TOTALE"),
                   QStringLiteral("S-Colesterolo"), mgDl},
                  std::max(95.0, random.normal(cholesterolOn(patient, day), 12)), 0);
        sheet.add({QStringLiteral("90.14.1"), QStringLiteral("COLESTEROLO HDL"),
                   QStringLiteral("S-Colesterolo HDL"), mgDl},
                  std::max(18.0, random.normal(patient.hdl, 3)), 0);
        sheet.add({QStringLiteral("90.43.2"), QStringLiteral("TRIGLICERIDI"),
                   QStringLiteral("S-Trigliceridi"), mgDl},
                  std::max(32.0, random.normal(triglyceridesOn(patient, day), 24)), 0);
    }
    if (random.chance(0.8)) {
        // The two codes of one test are both in use.
        const double creatinine = std::max(0.4, random.normal(creatinineOn(patient, day), 0.05));
        const int codes = random.below(10); // 0-3 the one, 4-7 the other, 8-9 both
        if (codes < 4 || codes > 7)
            sheet.add({QStringLiteral("90.16.04"), QStringLiteral("CREATININA"),
                       QStringLiteral("S-Creatinina (enzimatica)"), mgDl},
                      creatinine, 2);
        if (codes >= 4)
            sheet.add({QStringLiteral("90.16.4"), QStringLiteral("CREATININA"),
                       QStringLiteral("S-Creatinina"), mgDl},
                      creatinine, 2);
    }
    if (patient.has(Disease::Hypothyroidism, day) || random.chance(0.15))
        sheet.add({QStringLiteral("90.42.1"), QStringLiteral("TIREOTROPINA (TSH)"), QStringLiteral("S-TSH"),
                   QStringLiteral("µUI/ml")},
                  std::abs(random.normal(patient.has(Disease::Hypothyroidism, day) ? 3.4 : 1.9, 1)) + 0.05,
                  2);
    if (!patient.female && patient.ageOn(day) >= 50 && random.chance(0.35))
        sheet.add({QStringLiteral("90.56.5"), QStringLiteral("ANTIGENE PROSTATICO SPECIFICO (PSA)"),
                   QStringLiteral("S-PSA"), QStringLiteral("ng/ml")},
                  std::abs(random.normal(patient.has(Disease::Prostate, day) ? 3.1 : 1.2, 0.9)) + 0.04, 2);
    for (const QStringList &other : others) {
        if (random.chance(0.22))
            sheet.add({other.at(0), other.at(1), other.at(2), other.at(3)},
                      std::max(0.1, random.normal(other.at(4).toDouble(), other.at(5).toDouble())),
                      other.at(6).toInt());
    }
    if (random.chance(0.2))
        sheet.addText({QStringLiteral("90.44.3"),
                       QStringLiteral("ESAME URINE: GLUCOSIO"),
                       QStringLiteral("U-Glucosio (qualità)"),
                       {}},
                      glucose > 180         ? QStringLiteral("presente")
                      : random.chance(0.85) ? QStringLiteral("negativo")
                                            : QStringLiteral("tracce"));
    return order;
}

DemoOrder service(DemoWriter &writer, const DemoPatient &patient, QDate day, const QStringList &row)
{
    DemoRandom &random = writer.random;
    DemoOrder order;
    order.day = day;
    order.tipo = row.at(0).toInt();
    order.packs = 1;
    order.hospital = random.chance(0.5);
    if (!patient.diseases.isEmpty() && random.chance(0.5))
        order.diagnosis = random.pick(patient.diseases).icd;
    const bool reported = random.chance(0.6);
    order.results.append(
        {row.at(1), row.at(2), QVariant(),
         reported ? writer.sentences(QStringLiteral("reports"), 0, 3) : QVariant(),
         random.chance(0.2)
             ? QVariant(random.chance(0.7) ? QStringLiteral("NORMALE") : QStringLiteral("PATOLOGICO"))
             : QVariant(),
         QVariant(),
         reported ? QVariant(DemoWriter::midnight(std::min(day.addDays(random.between(1, 60)), writer.today)))
                  : QVariant(),
         order.tipo == 5 ? QVariant(QString::number(random.between(5, 12))) : QVariant()});
    return order;
}

} // namespace

QList<DemoOrder> laboratoryAndServices(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    QList<DemoOrder> orders;
    const double years = double(patient.since.daysTo(writer.today)) / 365.25;
    double rate = patient.ageOn(writer.today) >= 50 ? 0.45 : 0.2; // orders a year
    if (!patient.diseases.isEmpty())
        rate = 1.0 + (patient.has(Disease::Diabetes) ? 0.9 : 0);
    if (patient.rich)
        rate = 30;
    const auto others = writer.lists.rows(QStringLiteral("tests"));
    const int count = int(years * rate * (0.6 + 0.8 * random.fraction()) + random.fraction());
    for (int i = 0; i < count; ++i)
        orders.append(laboratory(writer, patient, random.day(patient.since, writer.today), others));
    if (patient.rich)
        orders.append(laboratory(writer, patient, writer.today, others));

    const auto services = writer.lists.rows(QStringLiteral("services"));
    const int serviceCount = int(years * rate * 0.45 + random.fraction());
    for (int i = 0; i < serviceCount; ++i)
        orders.append(
            service(writer, patient, random.day(patient.since, writer.today), random.pick(services)));
    if (random.chance(0.05)) { // a certificate has no results
        DemoOrder certificate;
        certificate.day = random.day(patient.since, writer.today);
        certificate.tipo = 20;
        certificate.packs = 1;
        orders.append(certificate);
    }
    return orders;
}

} // namespace orvale
