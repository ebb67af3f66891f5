// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoPatient.h"
#include "app/demo/DemoWriter.h"
#include "regional/SheetCriteria.h"
#include "regional/SheetData.h"
#include "values/JetValues.h"

#include <algorithm>

namespace orvale {

namespace {

using clivara::SheetData;
using clivara::SheetField;
using clivara::SheetFieldKind;

enum SheetType { Diabetes = 1, Hypertension, Respiratory, Frailty, Respiratory2021, Asthma, Copd };

// Fills in one sheet of a patient as it would have been on a day.
class SheetWriter {
public:
    SheetWriter(DemoWriter &writer, const DemoPatient &patient, QDate day)
        : m_writer(writer)
        , m_patient(patient)
        , m_day(day)
    {
    }

    QString write(int type)
    {
        SheetData sheet(*clivara::sheetLayout(type));
        const auto &fields = sheet.layout().fields;
        for (int i = 0; i < fields.size(); ++i) {
            if (const auto value = clivara::fittedValue(fields[i], valueOf(fields[i], sheet.value(i))))
                sheet.setValue(i, *value);
        }
        clivara::AggiornaTotali(sheet);
        // What follows from other values follows from them here, too.
        const double fev1 = sheet.number(QStringLiteral("Fev1"));
        setEntry(sheet, "Stadio", fev1 <= 0 ? 0 : fev1 >= 80 ? 1 : fev1 >= 50 ? 2 : fev1 >= 30 ? 3 : 4);
        setEntry(sheet, "Gruppo", clivara::copdGroup(sheet));
        setEntry(sheet, "Criteri", clivara::therapyCriteria(sheet, m_patient.ageOn(m_day)).entry);
        return clivara::CreaStringaDati(sheet);
    }

private:
    // Nothing in a sheet that has no such list.
    static void setEntry(SheetData &sheet, const char *list, int entry)
    {
        if (const int field = sheet.layout().indexOf(QLatin1String(list)); field >= 0)
            sheet.setValue(field, QString::number(entry));
    }

    QString valueOf(const SheetField &field, const QString &empty)
    {
        switch (field.kind) {
        case SheetFieldKind::List:
            return entryOf(field);
        case SheetFieldKind::Number:
            return numberOf(field.name);
        case SheetFieldKind::Date:
            return m_writer.random.chance(0.8) ? m_day.addDays(-m_writer.random.between(10, 300))
                                                     .toString(QStringLiteral("dd/MM/yyyy"))
                                               : QString();
        case SheetFieldKind::Text:
            return m_writer.random.chance(0.7)
                       ? m_writer.random.pick(m_writer.lists.words(QStringLiteral("notes"))).chopped(1)
                       : QString();
        default:
            return empty;
        }
    }

    QString entryOf(const SheetField &field)
    {
        DemoRandom &random = m_writer.random;
        if (field.name == QLatin1String("Fumo"))
            return m_patient.smoker     ? QStringLiteral("2")
                   : random.chance(0.7) ? QStringLiteral("0")
                                        : QStringLiteral("1");
        if (field.name == QLatin1String("TipoDiabete"))
            return QStringLiteral("2");
        if (field.name == QLatin1String("Diagnosi"))
            return m_patient.has(Disease::Copd, m_day) ? QStringLiteral("2") : QStringLiteral("1");
        if (field.source.name == QLatin1String("problema") && field.source.arguments.size() == 1)
            return hasProblem(field.source.arguments.first()) ? QStringLiteral("2") : QStringLiteral("1");
        if (field.source.name == QLatin1String("farmaci"))
            return random.chance(0.45) ? QStringLiteral("2") : QStringLiteral("1");
        // Towards the first entries, as most people are not very ill; the first one is mostly "not asked".
        const int last = int(field.entries.size()) - 1;
        return QString::number(std::min(random.between(std::min(1, last), last), random.between(1, last)));
    }

    bool hasProblem(const QString &list) const
    {
        const auto patterns = list.split(u';');
        return std::any_of(patterns.begin(), patterns.end(), [&](const QString &pattern) {
            return std::any_of(m_patient.diseases.begin(), m_patient.diseases.end(),
                               [&](const DemoDisease &disease) {
                                   return disease.start <= m_day && clivara::jet::like(disease.icd, pattern);
                               });
        });
    }

    // What is not measured at every visit is left out now and then.
    QString numberOf(const QString &name)
    {
        DemoRandom &random = m_writer.random;
        const double weight = m_patient.weightOn(m_day);
        const double systolic = systolicOn(m_patient, m_day);
        const QHash<QString, double> values{
            {QStringLiteral("Glicata"), (glucoseOn(m_patient, m_day) + 46.7) / 28.7},
            {QStringLiteral("MassaCorporea"), weight * 10000 / (m_patient.heightCm * m_patient.heightCm)},
            {QStringLiteral("Peso"), weight},
            {QStringLiteral("Vita"), waistOn(m_patient, m_day)},
            {QStringLiteral("Creatinina"), creatinineOn(m_patient, m_day)},
            {QStringLiteral("Colesterolo"), cholesterolOn(m_patient, m_day)},
            {QStringLiteral("Microalbumina"), 1.8},
            {QStringLiteral("Potassio"), 4.3},
            {QStringLiteral("SistolicaMax"), systolic + 12},
            {QStringLiteral("DiastolicaMax"), 56 + 0.22 * systolic},
            {QStringLiteral("SistolicaMin"), systolic - 14},
            {QStringLiteral("DiastolicaMin"), 46 + 0.22 * systolic},
            {QStringLiteral("SistolicaCasa"), systolic - 5},
            {QStringLiteral("DiastolicaCasa"), 50 + 0.22 * systolic},
            {QStringLiteral("Percentuale"), 14.5},
            {QStringLiteral("Pacchetti"), m_patient.smoker ? 30 : 0},
            {QStringLiteral("Fev1"), m_patient.has(Disease::Copd, m_day) ? 62 : 85},
            {QStringLiteral("Tiffeneau"), m_patient.has(Disease::Copd, m_day) ? 61 : 74},
            {QStringLiteral("Saturazione"), 95},
            {QStringLiteral("Picco"), 420},
            {QStringLiteral("Cat"), 12},
            {QStringLiteral("Act"), 19},
            {QStringLiteral("Eosinofili"), 210},
            {QStringLiteral("AnnoEsordio"), double(m_patient.birth.year() + 18)},
        };
        if (name == QLatin1String("Riacutizzazioni"))
            return QString::number(random.below(3));
        if (!values.contains(name) || values[name] <= 0 || random.chance(0.12))
            return {};
        if (name == QLatin1String("AnnoEsordio"))
            return QString::number(values[name]);
        return QString::number(values[name] * random.normal(1, 0.03), 'f', 2);
    }

    DemoWriter &m_writer;
    const DemoPatient &m_patient;
    const QDate m_day;
};

// The types that are due for a patient, each with the part of the patients that have one.
QList<std::pair<int, double>> dueTypes(const DemoPatient &patient, QDate today)
{
    QList<std::pair<int, double>> types;
    if (patient.has(Disease::Diabetes))
        types.append({Diabetes, 0.5});
    if (patient.has(Disease::Hypertension))
        types.append({Hypertension, 0.25});
    if (patient.has(Disease::Copd))
        types.append({{Copd, 0.4}, {Respiratory2021, 0.15}, {Respiratory, 0.1}});
    if (patient.has(Disease::Asthma))
        types.append({Asthma, 0.4});
    if (patient.ageOn(today) >= 80)
        types.append({Frailty, 0.3});
    return types;
}

} // namespace

// Sheets of the last two years.
void writeSheets(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    const QDate from = std::max(patient.since, writer.today.addYears(-2));
    for (const auto &[type, share] : dueTypes(patient, writer.today)) {
        if (!patient.rich && !random.chance(share))
            continue;
        QList<QDate> days{random.day(from, writer.today)};
        if (random.chance(0.3))
            days.append(random.day(from, writer.today));
        std::sort(days.begin(), days.end());
        for (const QDate day : days)
            writer.add("clinical", "AIR15_7",
                       {++writer.sheets[type], patient.code, type, DemoWriter::midnight(day),
                        SheetWriter(writer, patient, day).write(type)});
    }
}

} // namespace orvale
