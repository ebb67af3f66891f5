// SPDX-License-Identifier: Apache-2.0
#include "app/demo/Demo.h"
#include "PracticeFixture.h"
#include "app/demo/DemoLists.h"
#include "app/demo/DemoRandom.h"
#include "app/practice/PracticeCheck.h"
#include "values/JetValues.h"

namespace {

using orvale::Practice;

const QDate today(2024, 2, 29);

orvale::DemoOptions smallDemo(quint64 seed)
{
    return {30, 3, seed, today};
}

// All rows of a practice, table by table.
QByteArray contents(Practice &practice)
{
    QByteArray text;
    const clivara::HostEnvironment &environment = practice.environment();
    for (const auto &database : {environment.clinical, environment.codes, environment.third,
                                 environment.doctors, environment.events}) {
        const dao::TableDefs tables = database->TableDefs();
        for (int i = 0; i < tables.Count(); ++i) {
            const QString table = tables[i].Name();
            if (table == QLatin1String("orvale_properties"))
                continue; // holds the time of creation
            text += table.toUtf8() + '\n';
            const auto rows = database->OpenRecordset(table, dao::RecordsetType::Snapshot);
            for (; !rows->Eof(); rows->MoveNext()) {
                for (int field = 0; field < rows->FieldCount(); ++field)
                    text += rows->Fields(field).text().toUtf8() + (rows->Fields(field).isNull() ? "~|" : "|");
                text += '\n';
            }
        }
    }
    return text;
}

class DemoTest : public PracticeFixture {
protected:
    void SetUp() override
    {
        orvale::createDemo(path("demo"), smallDemo(7));
        m_practice = Practice::open(path("demo"));
    }
    // The single value of a query on the clinical database.
    QVariant value(const QString &sql) const
    {
        const auto rows =
            m_practice->environment().clinical->OpenRecordset(sql, dao::RecordsetType::Snapshot);
        return rows->Eof() ? QVariant() : rows->Fields(0).Value();
    }
    int number(const char *sql) const { return value(sql).toInt(); }

    std::unique_ptr<Practice> m_practice;
};

TEST_F(DemoTest, GivesEqualRowsForEqualOptionsOnly)
{
    const QByteArray first = contents(*m_practice);
    EXPECT_GT(first.count('\n'), 4000);
    for (const auto &[seed, equal] : {std::pair{quint64(7), true}, std::pair{quint64(8), false}}) {
        const QString folder = path(QStringLiteral("again%1").arg(seed));
        orvale::createDemo(folder, smallDemo(seed));
        EXPECT_EQ(contents(*Practice::open(folder)) == first, equal) << seed;
    }
}

TEST_F(DemoTest, IsConsistent)
{
    const auto found = orvale::checkPractice(*m_practice);
    for (const orvale::Finding &inconsistency : found)
        ADD_FAILURE() << inconsistency.text.toStdString() << ": "
                      << inconsistency.keys.join(u' ').toStdString();
}

TEST_F(DemoTest, EndsToday)
{
    const struct {
        const char *table;
        const char *field;
    } dates[] = {{"VISITAPROBL", "DataReg"},   {"riepil", "da_pre"},          {"riepil2", "data_eff"},
                 {"esa_ob", "data_ob"},        {"ESAME_OB", "data_reg"},      {"PROBLEMS", "DataApertura"},
                 {"PROBLEMS", "DataChiusura"}, {"ricoveri2", "data_fineric"}, {"Rischio_Cardio", "Data_Val"},
                 {"Modifiche", "data_mod"}};
    for (const auto &date : dates) {
        const QDate newest =
            value(QStringLiteral("SELECT max(%1) FROM %2").arg(date.field, date.table)).toDateTime().date();
        EXPECT_TRUE(newest.isValid()) << date.table;
        EXPECT_LE(newest, today) << date.table << '.' << date.field;
    }
    for (const char *sql :
         {"SELECT max(DataReg) FROM VISITAPROBL", "SELECT max(da_pre) FROM riepil WHERE tipo = 1",
          "SELECT max(data_ob) FROM esa_ob"})
        EXPECT_EQ(value(sql).toDateTime().date(), today) << sql;
    const QDate oldest = value("SELECT min(da_pre) FROM riepil").toDateTime().date();
    EXPECT_GT(oldest, today.addYears(-3));
    EXPECT_LT(oldest, today.addYears(-2));
}

TEST_F(DemoTest, FillsTheCodeTables)
{
    const clivara::HostEnvironment &environment = m_practice->environment();
    const struct {
        const dao::Database *database;
        const char *table;
        int rows;
    } tables[] = {
        {environment.clinical.get(), "ALLERGIE", 115}, {environment.clinical.get(), "Carta_Rischio", 480},
        {environment.clinical.get(), "DEFCAMPI", 7},   {environment.clinical.get(), "archivio", 30},
        {environment.codes.get(), "TIPOVISITA", 14},   {environment.doctors.get(), "medici_gruppo", 3}};
    for (const auto &table : tables) {
        const auto rows = const_cast<dao::Database *>(table.database)
                              ->OpenRecordset(QStringLiteral("SELECT count(*) FROM %1").arg(table.table));
        EXPECT_EQ(rows->Fields(0).Value().toInt(), table.rows) << table.table;
    }
    EXPECT_EQ(m_practice->firstDoctor(), "101");
    EXPECT_EQ(m_practice->property("region"), "03");
    // Each cell of the risk chart stands once.
    EXPECT_EQ(number("SELECT count(*) FROM Carta_Rischio WHERE sessoM = true AND 55 >= eta_min AND 55 <= "
                     "eta_max AND diabete = false "
                     "AND fumatore = true AND 140 >= pressione_min AND 140 <= pressione_max AND 200 >= "
                     "colesterolo_min "
                     "AND 200 <= colesterolo_max"),
              1);
}

TEST_F(DemoTest, HoldsWhatTheCalculatorsLookFor)
{
    // The proposals of the calculators find weights and results of the last year.
    for (const char *code : {"90.14.3", "90.14.1", "90.43.2", "90.16.04", "90.16.4", "90.27.1"}) {
        const QString sql = "SELECT count(*) FROM riepil AS r, riepil2 AS r2 WHERE r2.codice "
                            "= '%1' AND r2.cod_rie = r.minsan "
                            "AND r.tipo = 1 AND r.cod_paz = 17 AND r.da_pre > #02/28/2023#";
        EXPECT_GT(value(sql.arg(code)).toInt(), 2) << code;
    }
    const auto row = m_practice->environment().clinical->OpenRecordset(
        "SELECT * FROM ESAME_OB WHERE tipo_dati = 'A' AND cod_paz = 17 AND not isnull(dati_paz)");
    int weights = 0;
    for (; !row->Eof(); row->MoveNext()) {
        const double weight = clivara::jet::leadingNumber(row->Fields("dati_paz").text().mid(3, 5));
        weights += weight > 30 && weight < 180 ? 1 : 0;
    }
    EXPECT_GT(weights, 5);
    EXPECT_GT(number("SELECT count(*) FROM riepil WHERE cod_paz = 17"),
              4 * number("SELECT count(*) FROM riepil WHERE cod_paz = 1"));
}

TEST(DemoRandomTest, GivesTheSameNumbersEverywhere)
{
    // The first outputs of splitmix64 for the seed 1234567, as published with the generator.
    orvale::DemoRandom random(1234567);
    EXPECT_EQ(random.next(), 6457827717110365317ULL);
    EXPECT_EQ(random.next(), 3203168211198807973ULL);
    for (int i = 0; i < 1000; ++i) {
        const int n = random.between(-3, 3);
        EXPECT_TRUE(n >= -3 && n <= 3);
    }
}

TEST(DemoListsTest, HaveNineAllergyGroupsOfTheQuestionnaire)
{
    QMap<QString, int> groups;
    const orvale::DemoLists lists;
    for (const QStringList &row : lists.rows("allergie"))
        EXPECT_EQ(row.at(1).trimmed().toInt(), ++groups[row.at(0)]) << row.join(u'|').toStdString();
    const QMap<QString, int> expected{{"GRAMINACEE", 17}, {"DERMATOFAGOIDI", 2}, {"POLVERI", 5},
                                      {"ALIMENTI", 41},   {"MICOFITI", 12},      {"COMPOSITE", 9},
                                      {"ALBERI", 15},     {"ERBE_PIANTE", 10},   {"EPITELI", 4}};
    EXPECT_EQ(groups, expected);
}

} // namespace
