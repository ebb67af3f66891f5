// SPDX-License-Identifier: Apache-2.0
#include "app/patients/PatientIndex.h"

#include <QSet>
#include <algorithm>
#include <gtest/gtest.h>

namespace orvale {
namespace {

const std::vector<PatientEntry> people{
    {1, "D'Ambrogio", "Mariangela", "F", QDate(1956, 3, 12), "DMBMNG56C52F839X"},
    {2, "D’Ambrogio", "Niccolò", "M", QDate(1988, 12, 3), "DMBNCL88T03F839Y"},
    {3, "Fornò", "Giacomo", "M", QDate(1912, 3, 2), "FRNGCM12C02F839Z"},
    {4, "De Luca", "Maria Damiana", "F", QDate(1956, 11, 30), ""},
    {5, "Martini", "Dàmaso", "M", QDate(), "MRTDMS70A01F839K"},
    {6, "Rossi-Bianchi", "Anna", "F", QDate(2012, 3, 12), "RSSNNA12C52F839J"},
    {1956, "Amato", "Teresa", "F", QDate(1931, 1, 31), "MTATRS31A71F839U"},
};

QList<qint32> codesFor(const PatientIndex &index, const QString &query)
{
    QList<qint32> codes;
    for (const int row : index.find(query))
        codes << index.at(row).code;
    return codes;
}

TEST(PatientIndex, FindsWhatIsTyped)
{
    PatientIndex index;
    for (const PatientEntry &patient : people)
        index.add(patient);
    index.sort();

    struct Case {
        QString query;
        QList<qint32> codes; // in the order of the list
    };
    const QList<Case> cases{
        {"",
         {1956, 1, 2, 4, 3, 5, 6}}, // by surname and name: Amato, D'Ambrogio, De Luca, Fornò, Martini, Rossi
        {"dam mar", {1, 5, 4}},
        {"mar dam", {1, 5, 4}},
        {"DAM  MAR", {1, 5, 4}},
        {"d'ambrogio", {1, 2}},
        {"D' Ambrogio", {1, 2}},
        {"amb", {1, 2}},
        {"brogio", {}}, // not the beginning of a word
        {"nicco", {2}},
        {"niccolo'", {2}},
        {"FORNO", {3}},
        {"fornò giac", {3}},
        {"deluca", {4}},
        {"luca de", {4}},
        {"luca, maria", {4}},
        {"bianchi", {6}},
        {"rossi-b", {6}},
        {"mar", {5, 1, 4}}, // the surname before the names
        {"12/03/1956", {1}},
        {"12-3-56", {1}},
        {"12.03.", {1, 6}},
        {"12/03", {1, 6}},
        {"12/0", {1, 6}},
        {"12/", {1, 6}},
        {"12/1", {}}, // born on the 12th of January, or of October to December
        {"3/1", {2}},
        {"2/3/19", {3}},
        {"12/3/20", {6}},
        {"12/3/12", {6}}, // two digits: the year of any century
        {"03/1956", {1}},
        {"12031956", {1}},
        {"1956", {1956, 1, 4}}, // the code before the years of birth
        {"1956 mar", {1, 4}},
        {"5", {5}},
        {"7", {}},
        {"99999999999999", {}},
        {"1/2/3/4", {}},
        {"dmbmng56c", {1}},
        {"DMBMNG", {1}},
        {"rssnna12c52f839j", {6}},
        {"dmb", {}}, // three letters are a name
        {"xyz", {}},
        {"mar xyz", {}},
        {" - , ", {1956, 1, 2, 4, 3, 5, 6}}, // nothing to look for
    };
    for (const Case &each : cases)
        EXPECT_EQ(codesFor(index, each.query), each.codes) << each.query.toStdString();
}

TEST(PatientIndex, KeepsWhatTheListShows)
{
    PatientIndex index;
    for (const PatientEntry &patient : people)
        index.add(patient);
    for (int i = 0; i < index.size(); ++i) {
        const PatientEntry shown = index.at(i);
        const PatientEntry &given = people.at(static_cast<std::size_t>(i));
        EXPECT_EQ(
            std::tie(shown.code, shown.surname, shown.name, shown.sex, shown.birthDate, shown.fiscalCode),
            std::tie(given.code, given.surname, given.name, given.sex, given.birthDate, given.fiscalCode));
    }
    EXPECT_EQ(index.rowOf(3), 2);
    EXPECT_EQ(index.rowOf(77), -1);
}

TEST(PatientIndex, ReplacesAPatient)
{
    PatientIndex index;
    for (const PatientEntry &patient : people)
        index.add(patient);
    index.replace({3, "Zamboni", "Giacomo", "M", QDate(1912, 3, 2), ""});
    index.replace({8, "Fornasari", "Livia", "F", QDate(1990, 1, 1), ""});
    EXPECT_EQ(index.size(), static_cast<int>(people.size()) + 1);
    EXPECT_EQ(codesFor(index, "zamb"), QList<qint32>{3});
    EXPECT_EQ(codesFor(index, "forn"), QList<qint32>{8});
}

// The answer among 100,000 is compared with a plain reading of the same patients.
TEST(PatientIndex, FindsTheSameAmongAHundredThousand)
{
    const QStringList surnames{"Rossi",    "D'Angelo",  "De Santis", "Nicolò",
                               "Esposito", "Dell'Orto", "Sala",      "Bianchi"};
    const QStringList names{"Maria", "Niccolò", "Anna Maria", "Desirée", "Luca", "Ester", "Rosa", "Angelo"};
    PatientIndex index;
    QSet<qint32> dangelos;
    QSet<qint32> born;
    for (qint32 code = 1; code <= 100000; ++code) {
        const QString surname = surnames.at(code % 8);
        const QString name = names.at(code / 8 % 8);
        const QDate birth = QDate(1930, 1, 1).addDays(code % 33000);
        index.add({code, surname, name, code % 2 == 0 ? "M" : "F", birth, {}});
        if (code % 8 == 1 && code / 8 % 8 == 1)
            dangelos.insert(code);
        if (birth.day() == 29 && birth.month() == 2)
            born.insert(code);
    }
    index.sort();

    const auto asSet = [](const QList<qint32> &codes) { return QSet<qint32>(codes.begin(), codes.end()); };
    EXPECT_EQ(asSet(codesFor(index, "nicc dang")), dangelos);
    EXPECT_EQ(asSet(codesFor(index, "29/02")), born);
    EXPECT_EQ(codesFor(index, "77777").first(), 77777);
    EXPECT_EQ(index.find("").size(), 100000U);
    // Esposito Ester, Esposito Maria ... before Rossi Ester: the surname first, then by name
    const QList<qint32> found = codesFor(index, "es");
    const PatientEntry first = index.at(index.rowOf(found.first()));
    const PatientEntry last = index.at(index.rowOf(found.last()));
    EXPECT_EQ(first.surname + ' ' + first.name, "Esposito Angelo");
    EXPECT_EQ(last.surname + ' ' + last.name, "Sala Ester");
}

} // namespace
} // namespace orvale
