// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoWriter.h"
#include "evaluations/CardiovascularRules.h"

namespace orvale {

namespace {

// An empty field is Null.
QVariant textOrNull(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

// Copies the rows of a section as they stand; the engine turns texts into numbers and dates.
void copySection(DemoWriter &writer, const char *database, const char *table, const QString &section,
                 bool numbered = false)
{
    int key = 0;
    const auto rows = writer.lists.rows(section);
    for (const QStringList &row : rows) {
        QVariantList values;
        if (numbered)
            values.append(++key);
        for (const QString &value : row)
            values.append(textOrNull(value));
        writer.add(database, table, values);
    }
}

void writeThresholds(DemoWriter &writer)
{
    const auto rows = writer.lists.rows(QStringLiteral("tabparamsm"));
    for (const QStringList &row : rows) {
        QVariantList values{row.at(0).toInt(),
                            DemoWriter::midnight(QDate::fromString(row.at(1), QStringLiteral("yyyy-MM-dd")))};
        for (int i = 2; i < row.size(); ++i)
            values.append(row.at(i).toDouble());
        writer.add("clinical", "TabParamSM", values);
    }
}

// The risk chart: each cell has the band of the risk at the middle of its ranges, with an average HDL.
void writeRiskChart(DemoWriter &writer)
{
    const int pressures[][2] = {{90, 129}, {130, 149}, {150, 169}, {170, 200}};
    const int cholesterols[][2] = {{130, 173}, {174, 212}, {213, 251}, {252, 290}, {291, 320}};
    const double bands[] = {0.05, 0.10, 0.15, 0.20, 0.30};
    for (const bool male : {false, true}) {
        for (const int age : {40, 50, 60}) {
            for (const bool diabetic : {false, true}) {
                for (const bool smoker : {false, true}) {
                    for (const auto &pressure : pressures) {
                        for (const auto &cholesterol : cholesterols) {
                            const double risk = clivara::CalcolaRCV(
                                male ? 0 : 1, age + 5, smoker, (pressure[0] + pressure[1]) / 2,
                                (cholesterol[0] + cholesterol[1]) / 2, male ? 48 : 56, diabetic, false);
                            int level = 1;
                            for (const double band : bands)
                                level += risk >= band ? 1 : 0;
                            writer.add("clinical", "Carta_Rischio",
                                       {male, age, age + 9, diabetic, smoker, pressure[0], pressure[1],
                                        cholesterol[0], cholesterol[1], level});
                        }
                    }
                }
            }
        }
    }
}

void writeDoctors(DemoWriter &writer)
{
    struct Person {
        QString surname;
        QString name;
        QString title;
        QString speciality;
        QString address;
    };
    const QList<Person> persons{
        {QStringLiteral("Cortellazzi"),
         QStringLiteral("Emilio"),
         QStringLiteral("Dott."),
         {},
         QStringLiteral("Traversa Dell'Arco 35 - Castelfiorito")},
        {QStringLiteral("D'Ambrogio"), QStringLiteral("Mariangela"), QStringLiteral("Dott.ssa"),
         QStringLiteral("Geriatria"), QStringLiteral("Traversa Dell'Arco 38 - Sant'Anna in Valle")},
        {QStringLiteral("Fornò"), QStringLiteral("Giacomo"), QStringLiteral("Dott."),
         QStringLiteral("Malattie dell'apparato respiratorio"),
         QStringLiteral("Via Garibaldi 83 - Montefosco")},
    };
    for (int i = 0; i < persons.size(); ++i) {
        const Person &person = persons.at(i);
        DemoDoctor doctor{101 + i, QStringLiteral("M%1").arg(i + 1, 3, 10, QLatin1Char('0')),
                          writer.random.uid()};
        writer.add("doctors", "medici_gruppo",
                   {doctor.code, doctor.medico, person.surname, person.name, DemoWriter::braced(doctor.uid),
                    person.title + u' ' + person.name + u' ' + person.surname,
                    QStringLiteral("Medico di medicina generale"), person.address,
                    QStringLiteral("Tel. 081 555010%1").arg(i), QStringLiteral("Medicina generale"),
                    textOrNull(person.speciality), QVariant(), QVariant(), QVariant(), QStringLiteral("0"),
                    QStringLiteral("1")});
        writer.doctors.append(doctor);
    }
}

} // namespace

void writeCatalogues(DemoWriter &writer)
{
    writeDoctors(writer);
    copySection(writer, "codes", "TIPOVISITA", QStringLiteral("tipovisita"));
    copySection(writer, "codes", "SINTOMI", QStringLiteral("sintomi"));
    copySection(writer, "codes", "icd9", QStringLiteral("icd9"));
    copySection(writer, "codes", "malattie", QStringLiteral("malattie"));
    copySection(writer, "codes", "reparth", QStringLiteral("reparth"));
    copySection(writer, "codes", "CODICE", QStringLiteral("codice"));
    copySection(writer, "codes", "NOMENCLATORE", QStringLiteral("nomenclatore"));
    copySection(writer, "third", "TESTI", QStringLiteral("testi"), true);
    copySection(writer, "clinical", "SPEFAR", QStringLiteral("spefar"));
    copySection(writer, "clinical", "ESAMI", QStringLiteral("esami"));
    copySection(writer, "clinical", "DEFCAMPI", QStringLiteral("defcampi"));
    copySection(writer, "clinical", "ALLERGIE", QStringLiteral("allergie"));
    copySection(writer, "clinical", "sedericov", QStringLiteral("sedericov"), true);
    writeThresholds(writer);
    writeRiskChart(writer);
}

} // namespace orvale
