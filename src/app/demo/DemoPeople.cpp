// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoGenerators.h"
#include "app/demo/DemoPatient.h"
#include "app/demo/DemoWriter.h"

#include <algorithm>
#include <cmath>

namespace orvale {

namespace {

bool isVowel(QChar c)
{
    return QStringLiteral("AEIOU").contains(c);
}

// Letters A to Z of a name; accents fall, everything else is dropped.
QString plainLetters(const QString &text)
{
    QString letters;
    const QString decomposed = text.normalized(QString::NormalizationForm_D).toUpper();
    for (const QChar c : decomposed) {
        if (c >= u'A' && c <= u'Z')
            letters += c;
    }
    return letters;
}

// Three letters of a surname or a given name: consonants first, then vowels, filled with X. A given name of
// four or more consonants leaves out the second.
QString threeLetters(const QString &text, bool given)
{
    QString consonants;
    QString vowels;
    const QString letters = plainLetters(text);
    for (const QChar c : letters)
        (isVowel(c) ? vowels : consonants) += c;
    if (given && consonants.size() >= 4)
        consonants.remove(1, 1);
    return (consonants + vowels + QStringLiteral("XXX")).left(3);
}

// The check letter: characters at odd positions weigh by the table, those at even positions by themselves.
QChar checkLetter(const QString &code)
{
    static const int oddWeights[] = {1,  0,  5, 7, 9, 13, 15, 17, 19, 21, 2,  4,  18,
                                     20, 11, 3, 6, 8, 12, 14, 16, 10, 22, 25, 24, 23};
    int sum = 0;
    for (int i = 0; i < code.size(); ++i) {
        const QChar c = code.at(i);
        const int value = c.isDigit() ? c.digitValue() : c.unicode() - u'A';
        sum += i % 2 == 0 ? oddWeights[value] : value;
    }
    return QChar(u'A' + sum % 26);
}

// Formed by the public rules of the fiscal code; its place begins with X, which no town has, so that it is
// never the code of a real person.
QString fiscalCode(const DemoPatient &patient, int town)
{
    static const QString months = QStringLiteral("ABCDEHLMPRST");
    const QString code = threeLetters(patient.surname, false) + threeLetters(patient.name, true)
                         + QStringLiteral("%1%2%3X%4")
                               .arg(patient.birth.year() % 100, 2, 10, QLatin1Char('0'))
                               .arg(months.at(patient.birth.month() - 1))
                               .arg(patient.birth.day() + (patient.female ? 40 : 0), 2, 10, QLatin1Char('0'))
                               .arg(100 + town, 3, 10, QLatin1Char('0'));
    return code + checkLetter(code);
}

// Ages of a family doctor's patients: 14 to 100, most between 30 and 75.
QDate birthDate(DemoWriter &writer)
{
    int age = 0;
    do
        age = int(writer.random.normal(53, 20));
    while (age < 14 || age > 99);
    return writer.today.addYears(-age).addDays(-writer.random.below(365));
}

// Percent of patients who have the disease at an age, from the four columns of its row.
int percentAt(const QStringList &row, int age)
{
    const int column = age < 40 ? 0 : age < 60 ? 1 : age < 75 ? 2 : 3;
    return row.at(2 + column).toInt();
}

void giveDiseases(DemoWriter &writer, DemoPatient &patient)
{
    const auto rows = writer.lists.rows(QStringLiteral("diseases"));
    const int age = patient.ageOn(writer.today);
    for (int i = 0; i < int(Disease::Count); ++i) {
        const QStringList &row = rows.at(i);
        if (row.at(6) != QLatin1String("*") && (row.at(6) == QLatin1String("F")) != patient.female)
            continue;
        double probability = percentAt(row, age) / 100.0;
        if (Disease(i) == Disease::Copd && patient.smoker)
            probability *= 2.5;
        if (patient.rich && i <= int(Disease::Copd))
            probability = 1;
        if (!writer.random.chance(probability))
            continue;
        const int onsetAge = std::max(14, age - writer.random.between(1, 18));
        const QDate start = std::min(patient.birth.addYears(onsetAge).addDays(writer.random.below(360)),
                                     writer.today.addDays(-writer.random.between(5, 60)));
        QString icd = row.at(1);
        if (Disease(i) == Disease::Diabetes && writer.random.chance(0.15))
            icd = writer.random.chance(0.5) ? QStringLiteral("250.02") : QStringLiteral("250.40");
        patient.diseases.append({Disease(i), icd, start});
    }
}

void giveBody(DemoWriter &writer, DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    patient.heightCm = std::round(random.normal(patient.female ? 161 : 174, 6.5));
    const double massIndex =
        std::clamp(random.normal(26.2 + (patient.has(Disease::Diabetes) ? 2.5 : 0), 3.9), 17.0, 44.0);
    patient.weightKg = massIndex * std::pow(patient.heightCm / 100, 2);
    patient.weightTrend = random.normal(0.25, 0.5);
    patient.creatinine = std::clamp(random.normal(patient.female ? 0.78 : 0.96, 0.12), 0.5, 1.4);
    patient.cholesterol =
        std::clamp(random.normal(patient.has(Disease::Cholesterol) ? 258 : 198, 26), 120.0, 360.0);
    patient.hdl = std::clamp(
        random.normal(patient.female ? 58 : 48, 10) - (patient.has(Disease::Diabetes) ? 5 : 0), 24.0, 95.0);
}

void writeRegistry(DemoWriter &writer, const DemoPatient &patient)
{
    DemoRandom &random = writer.random;
    const auto towns = writer.lists.rows(QStringLiteral("codice"));
    const QStringList &town = random.pick(towns);
    QVariant sex = patient.female ? QStringLiteral("F") : QStringLiteral("M");
    if (random.chance(0.01))
        sex = sex.toString().toLower();
    else if (random.chance(0.005))
        sex = QVariant();
    // Other programs have written the patient's record UID in the long form.
    const QString recordUid = random.uid();
    const auto exemption = [&](double probability) {
        return random.chance(probability) ? QVariant(QStringLiteral("S")) : QVariant();
    };
    writer.add("clinical", "archivio",
               {patient.code, patient.surname, patient.name, sex,
                random.chance(0.01) ? QVariant() : QVariant(DemoWriter::midnight(patient.birth)),
                random.pick(writer.lists.words(QStringLiteral("streets"))) + u' '
                    + QString::number(random.between(1, 140)),
                town.at(1), town.at(2), town.at(3),
                random.chance(0.04) ? QVariant()
                                    : QVariant(QStringLiteral("8038%1").arg(random.next() % 1000000000000ULL,
                                                                            12, 10, QLatin1Char('0'))),
                exemption(patient.diseases.isEmpty() ? 0.02 : 0.4), exemption(0.04),
                DemoWriter::braced(patient.uid),
                random.chance(0.08) ? QStringLiteral("{guid {%1}}").arg(recordUid.toUpper()) : recordUid,
                random.chance(0.03) ? DemoWriter::braced(patient.owner) : patient.owner});
    if (random.chance(0.025))
        return; // the general information is missing
    const int birthTown = random.below(int(towns.size()));
    writer.add("clinical", "inf_gen",
               {patient.code, random.chance(0.03) ? QVariant() : QVariant(fiscalCode(patient, birthTown)),
                random.chance(0.15) ? QVariant() : QVariant(QStringLiteral("081")),
                random.chance(0.05)
                    ? QVariant()
                    : QVariant(QStringLiteral("555%1").arg(random.below(10000), 4, 10, QLatin1Char('0'))),
                towns.at(birthTown).at(1),
                writer.sentences(QStringLiteral("allergy notes"), patient.rich ? 0 : 0.7, 2)});
}

} // namespace

DemoPatient writePerson(DemoWriter &writer, int code, bool rich)
{
    DemoRandom &random = writer.random;
    DemoPatient patient;
    patient.code = code;
    patient.rich = rich;
    patient.female = random.chance(0.53);
    patient.surname = random.pick(writer.lists.words(QStringLiteral("surnames")));
    patient.name = random.pick(
        writer.lists.words(patient.female ? QStringLiteral("female names") : QStringLiteral("male names")));
    patient.birth = rich ? writer.today.addYears(-68).addDays(-random.below(300)) : birthDate(writer);
    patient.smoker = random.chance(patient.female ? 0.17 : 0.24);
    patient.uid = random.uid();
    patient.owner = random.pick(writer.doctors).uid;
    // Some came to the practice later, none before the age of 14.
    patient.since = std::max(writer.first, patient.birth.addYears(14));
    if (!rich && random.chance(0.3))
        patient.since = random.day(patient.since, writer.today);
    patient.since = std::min(patient.since, writer.today);
    giveDiseases(writer, patient);
    giveBody(writer, patient);
    writeRegistry(writer, patient);
    return patient;
}

} // namespace orvale
