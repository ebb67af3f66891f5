// SPDX-License-Identifier: Apache-2.0
#include "problems/DiagnosisSearch.h"

#include "ProblemFixture.h"

namespace clivara {
namespace {

class DiagnosisSearchTest : public DataFixture {
protected:
    std::shared_ptr<dao::Database> codes =
        create("Tabelle.sqlite", {"CREATE TABLE icd9 (cod TEXT(10), des TEXT(120))",
                                  "CREATE TABLE malattie (codice TEXT(10), descrizione TEXT(120))"});

    void add(const char *table, const char *values)
    {
        codes->Execute(QStringLiteral("INSERT INTO %1 VALUES (%2)").arg(table, values));
    }
};

TEST_F(DiagnosisSearchTest, FindsByBeginningOfCodeAndOfWords)
{
    for (const char *row :
         {"'250.00', 'Diabete mellito tipo 2'", "'250.02', 'Diabete mellito tipo 2, scompensato'",
          "'250.01', 'Diabete mellito tipo 1'", "'300.00', 'Ansietà'", "'820.8', 'Frattura dell''anca'",
          "'648.8', 'Gravidanza con diabete'", "'25', 'Codice breve'", "Null, 'senza codice'"})
        add("icd9", row);
    add("malattie", "'ML001', 'DIABETE INSIPIDO'");
    add("malattie", "'250.00', 'IL DOPPIONE'");
    const DiagnosisSearch search(*codes);
    const auto found = [&](const char *text, int most = 200) {
        QStringList list;
        for (const Diagnosis &diagnosis : search.find(text, most))
            list.append(diagnosis.code);
        return list.join(' ');
    };
    struct Case {
        const char *text, *codes, *why;
    };
    const Case cases[]{
        {"250", "250.00 250.01 250.02", "codes by code"},
        {" 250.0", "250.00 250.01 250.02", "with a blank before"},
        {"25002", "250.02", "without the point"},
        {"ml0", "ML001", "small letters"},
        {"ansieta", "300.00", "without the accent"},
        {"ANSIETÀ", "300.00", "with it"},
        {"diab", "ML001 250.01 250.00 250.02 648.8", "names that begin so before the others"},
        {"mell diab", "250.01 250.00 250.02", "words in any order"},
        {"tipo 2 sco", "250.02", "the last word half typed"},
        {"anca", "820.8", "after an apostrophe"},
        {"dell'an", "820.8", "with one"},
        {"iabete", "", "inside a word is no match"},
        {"doppione", "", "a code that both tables have is the one of icd9"},
        {"2", "25 250.00 250.01 250.02", "a code before a word"},
        {"?", "", "signs alone"},
        {"' or 1=1 %", "", "nothing is a query here"},
        {"", "300.00 25 ML001 250.01 250.00 250.02 820.8 648.8", "all, by name"},
        {"  ", "300.00 25 ML001 250.01 250.00 250.02 820.8 648.8", "blanks are no text"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(found(c.text), c.codes) << c.text << ": " << c.why;
    EXPECT_EQ(found("diab", 2), "ML001 250.01");
    EXPECT_EQ(found("", 0), "");
}

TEST_F(DiagnosisSearchTest, WithoutItsTablesThereIsAnError)
{
    codes->Execute("DROP TABLE malattie");
    EXPECT_THROW(DiagnosisSearch{*codes}, dao::Error);
}

} // namespace
} // namespace clivara
