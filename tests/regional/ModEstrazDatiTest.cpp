// SPDX-License-Identifier: Apache-2.0
#include "regional/ModEstrazDati.h"

#include "data/DataFixture.h"
#include "data/SchemaFile.h"

namespace clivara {
namespace {

// The data of patient 17; 18 has the same of everything, so that a query that forgets its patient shows.
class ModEstrazDatiTest : public DataFixture {
protected:
    ModEstrazDatiTest()
        : clinical(create("Orvale.sqlite", schemaStatements("clinical")))
        , data(*clinical, log)
    {
        for (const int patient : {17, 18}) {
            execute(QStringLiteral("INSERT INTO archivio (cod_paz) VALUES (%1)").arg(patient));
            execute(QStringLiteral("INSERT INTO inf_gen (cod_paz) VALUES (%1)").arg(patient));
        }
    }

    void execute(const QString &sql) { clinical->Execute(sql); }
    void addDrug(const char *code, const char *atc, const char *codSan)
    {
        execute(QStringLiteral("INSERT INTO SPEFAR (CODSPE, atc, codsan) VALUES ('%1', '%2', '%3')")
                    .arg(code, atc, codSan));
    }
    // `date` as the SQL has it ("#12/31/2026#", "Null"); the key of the order.
    int addOrder(int type, const char *key, const char *date, const char *packs = "1", int patient = 17)
    {
        execute(QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan, da_pre, num_conf) "
                               "VALUES (%1, %2, %3, '%4', %5, %6)")
                    .arg(++m_orders)
                    .arg(patient)
                    .arg(type)
                    .arg(key, date, packs));
        return m_orders;
    }
    void addResult(const char *key, const char *value, const char *done = "Null",
                   const char *code = "90.28.1")
    {
        execute(QStringLiteral("INSERT INTO riepil2 (idriepil2, cod_rie, codice, unita, risposta, unita_Mis, "
                               "data_eff) VALUES (%1, '%2', '%3', %4, 'n%1', '%', %5)")
                    .arg(++m_results)
                    .arg(key, code, value, done));
    }
    void addExamination(const char *type, const char *date, const char *text, const char *key = "Null")
    {
        execute(QStringLiteral("INSERT INTO ESAME_OB (cod_paz, tipo_dati, chiave, data_reg, dati_paz) "
                               "VALUES (17, '%1', %2, %3, %4)")
                    .arg(type, key, date, text));
    }

    static std::string text(const LabResult &result)
    {
        return QStringLiteral("%1|%2|%3|%4")
            .arg(jet::numberText(result.value), result.date.toString(Qt::ISODate), result.answer, result.unit)
            .toStdString();
    }
    static std::string text(const Anthropometry &body)
    {
        return QStringLiteral("%1|%2|%3|%4")
            .arg(jet::numberText(body.heightM), jet::numberText(body.weightKg),
                 jet::formatNumber(body.massIndex, u"0.00"), body.date.toString(Qt::ISODate))
            .toStdString();
    }

    std::shared_ptr<dao::Database> clinical;
    const ModEstrazDati data;
    static constexpr QDate none{};
    const Period year{QDate(2025, 11, 22), QDate(2026, 11, 21)};
    const QString glycated = "(RIEPIL2.codice = '90.28.1')";

private:
    int m_orders = 0;
    int m_results = 0;
};

TEST_F(ModEstrazDatiTest, SumsThePacksOfDrugClasses)
{
    addDrug("A1", "C10AA01", "S1");
    addDrug("A2", "c10aa05", "S2");
    addDrug("A3", "C02CA04", "S''3");
    addOrder(0, "A1", "#11/22/2025#", "2");
    addOrder(0, "A2", "#11/21/2026 18:30:00#", "3");
    addOrder(0, "A1", "#11/21/2025 23:59:59#", "100");
    addOrder(0, "A1", "#11/22/2026#", "1000");
    addOrder(0, "A1", "#6/1/2026#", "Null");
    addOrder(0, "A3", "#6/1/2026#", "7");
    addOrder(1, "A1", "#6/1/2026#", "50"); // no prescription of a drug
    addOrder(0, "A1", "#6/1/2026#", "60", 18);
    addOrder(0, "A1", "Null", "5000");

    const struct {
        const char *list;
        Period period;
        int packs;
    } cases[] = {
        {"C10AA*", year, 5},
        {"C10AA*", {none, none}, 6105},
        {"C10AA*", {none, QDate(2025, 11, 22)}, 102},
        {"C10AA*", {QDate(2026, 11, 21), none}, 1003},
        {"C10AA*", {QDate(2026, 11, 21), QDate(2025, 11, 22)}, 0}, // ends before it begins
        {";C10AA01;;C02*;", year, 9},
        {"C10AA?5", year, 3},
        {"C1[0-2]*;B01AC*", year, 5},
        {"C03*", year, 0},
        {"", year, 0},
        {";;", year, 0},
        {"x' or '1'='1", year, 0}, // a quote is only a character
        {"C10[", year, 0},
    };
    for (const auto &[list, period, packs] : cases)
        EXPECT_EQ(data.SommaConfezioniATC(17, list, period), packs) << list;
    EXPECT_EQ(data.SommaConfezioniCodSan(17, "S1;S2", year), 5);
    EXPECT_EQ(data.SommaConfezioniCodSan(17, "S'*", year), 7);
    EXPECT_EQ(data.SommaConfezioniCodSan(17, "", year), 0);
    EXPECT_EQ(data.SommaConfezioniATC(19, "*", {none, none}), 0);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(ModEstrazDatiTest, FindsPrescriptionsThatAHospitalSuggested)
{
    const auto suggest = [this](int order, bool hospital) {
        execute(QStringLiteral("INSERT INTO SUGGERIT (COD_PRE, OSPEDAL) VALUES (%1, %2)")
                    .arg(order)
                    .arg(hospital ? "true" : "false"));
    };
    suggest(addOrder(8, "B1", "#6/1/2026#"), true);
    suggest(addOrder(8, "B2", "#6/2/2026#"), false);
    suggest(addOrder(7, "B3", "#6/3/2026#"), true);
    suggest(addOrder(8, "B4", "#6/4/2026#", "1", 18), true);

    EXPECT_NE(data.ContaPrescrizioniOspedaliere(17, {none, none}), 0);
    EXPECT_NE(data.ContaPrescrizioniOspedaliere(17, {QDate(2026, 6, 1), QDate(2026, 6, 1)}), 0);
    EXPECT_EQ(data.ContaPrescrizioniOspedaliere(17, {QDate(2026, 6, 2), none}), 0);
    EXPECT_EQ(data.ContaPrescrizioniOspedaliere(17, {none, QDate(2026, 5, 31)}), 0);
    EXPECT_NE(data.ContaPrescrizioniOspedaliere(17, year, "r.minsan like 'B*'"), 0);
    EXPECT_EQ(data.ContaPrescrizioniOspedaliere(17, year, "r.minsan = 'B2'"), 0);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(ModEstrazDatiTest, TakesTheNewestNumericResult)
{
    LabResult result;
    addOrder(1, "E1", "#12/1/2025#");
    addResult("E1", "'6,8'", "#12/3/2025#");
    EXPECT_TRUE(data.UltimoEsameLab(17, year, glycated, result));
    EXPECT_EQ(text(result), "6.8|2025-12-03|n1|%");

    // Texts are passed over, but they are results.
    addOrder(2, "E2", "#6/1/2026#");
    for (const char *words : {"'NEGATIVO'", "'7.1 %'", "''", "'1.234,5'", "Null"})
        addResult("E2", words);
    EXPECT_TRUE(data.UltimoEsameLab(17, year, glycated, result));
    EXPECT_EQ(result.value, 6.8);
    EXPECT_FALSE(data.UltimoEsameLab(17, {QDate(2026, 1, 1), QDate(2026, 11, 21)}, glycated, result));
    EXPECT_EQ(text(result), "0|||");
    EXPECT_TRUE(data.EsisteEsameLab(17, {QDate(2026, 1, 1), QDate(2026, 11, 21)}, glycated));

    // Of two on one day the later one; without a day of its own that of the order.
    addOrder(19, "E3", "#11/21/2026 23:59:59#");
    addResult("E3", "' 7 '");
    addResult("E3", "'7.5'");
    EXPECT_TRUE(data.UltimoEsameLab(17, year, glycated, result));
    EXPECT_EQ(text(result), "7.5|2026-11-21|n8|%");

    // What is no result of the patient, the exam or the period.
    addOrder(0, "E4", "#11/21/2026#");
    addResult("E4", "'1'");
    addOrder(20, "E5", "#11/21/2026#");
    addResult("E5", "'2'");
    addOrder(1, "E6", "#11/21/2026#", "1", 18);
    addResult("E6", "'3'");
    addOrder(1, "E7", "#11/22/2026#");
    addResult("E7", "'4'");
    addOrder(1, "E8", "#11/21/2026#");
    addResult("E8", "'5'", "Null", "90.16.4");
    addOrder(1, "E9", "Null");
    addResult("E9", "'6'", "#11/20/2026#");
    EXPECT_TRUE(data.UltimoEsameLab(17, year, glycated, result));
    EXPECT_EQ(result.value, 7.5);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(ModEstrazDatiTest, LaboratoryPeriodsHaveBothBounds)
{
    LabResult result;
    addOrder(1, "E1", "#6/1/2026#");
    addResult("E1", "'7'");
    const struct {
        Period period;
        bool found;
    } cases[] = {
        {{none, QDate(2026, 6, 1)}, true}, // from day zero
        {{QDate(2026, 6, 1), none}, false}, // until day zero
        {{none, none}, false},
        {{QDate(2026, 7, 1), QDate(2026, 5, 1)}, false},
        {{QDate(2026, 6, 1), QDate(2026, 6, 1)}, true},
    };
    for (const auto &[period, found] : cases) {
        EXPECT_EQ(data.EsisteEsameLab(17, period, glycated), found);
        EXPECT_EQ(data.UltimoEsameLab(17, period, glycated, result), found);
    }
}

TEST_F(ModEstrazDatiTest, TakesTheFirstHeightAndWeightThatAreNotZero)
{
    Anthropometry body;
    EXPECT_FALSE(data.DatiAntropometrici(17, year, body));
    EXPECT_EQ(text(body), "0|0|0.00|");

    addExamination("A", "#1/10/2026#", "'168 90.0'", "'1'");
    addExamination("A", "#2/10/2026#", "'172     '", "'2'");
    addExamination("A", "#3/10/2026#", "'   70,5'", "'3'"); // a text that ends within the weight
    addExamination("A", "#3/10/2026#", "'000 80.0'", "'4'"); // the newer of the day
    addExamination("A", "#4/10/2026#", "Null", "'5'");
    addExamination("B", "#5/10/2026#", "'199199.0'", "'6'");
    EXPECT_TRUE(data.DatiAntropometrici(17, year, body));
    EXPECT_EQ(text(body), "1.72|80|27.04|2026-02-10");

    EXPECT_TRUE(data.DatiAntropometrici(17, {QDate(2026, 3, 1), QDate(2026, 3, 10)}, body));
    EXPECT_EQ(text(body), "0|80|0.00|2026-03-10");
    EXPECT_FALSE(data.DatiAntropometrici(17, {QDate(2026, 4, 1), QDate(2026, 11, 21)}, body));
    EXPECT_FALSE(data.DatiAntropometrici(17, {QDate(2026, 11, 21), QDate(2025, 1, 1)}, body));
    EXPECT_FALSE(data.DatiAntropometrici(18, year, body));
}

TEST_F(ModEstrazDatiTest, FindsTheHighestAndTheLowestPressure)
{
    Pressure high{1, 1}, low{1, 1};
    EXPECT_FALSE(data.PressioneMassima(17, year, high));
    EXPECT_FALSE(data.PressioneMinima(17, year, low));
    EXPECT_EQ(high.systolic + high.diastolic + low.systolic + low.diastolic, 0);

    for (const char *row :
         {"(17, #6/1/2026#, 150, 80)", "(17, #6/2/2026#, 150, 95)", "(17, #6/3/2026#, 120, 80)",
          "(17, #6/4/2026#, 120, 70)", "(17, #11/21/2026#, 160, Null)",
          "(17, #11/21/2026 9:00:00#, 300, 200)", "(18, #6/1/2026#, 250, 20)"})
        execute(QStringLiteral("INSERT INTO esa_ob (cod_paz, data_ob, presmax, presmin) VALUES ") + row);
    // The last day counts up to its midnight.
    EXPECT_TRUE(data.PressioneMassima(17, year, high));
    EXPECT_EQ(high.systolic, 160);
    EXPECT_EQ(high.diastolic, 0);
    const Period june{QDate(2026, 6, 1), QDate(2026, 6, 30)};
    EXPECT_TRUE(data.PressioneMassima(17, june, high));
    EXPECT_EQ(high.systolic, 150);
    EXPECT_EQ(high.diastolic, 95);
    EXPECT_TRUE(data.PressioneMinima(17, june, low));
    EXPECT_EQ(low.systolic, 120);
    EXPECT_EQ(low.diastolic, 70);

    execute("INSERT INTO esa_ob (cod_paz, data_ob, presmax, presmin) VALUES (17, #6/5/2026#, Null, 60)");
    EXPECT_TRUE(data.PressioneMinima(17, june, low)); // one without a systolic value is below all
    EXPECT_EQ(low.systolic, 0);
    EXPECT_EQ(low.diastolic, 60);
    EXPECT_FALSE(data.PressioneMinima(17, {QDate(2026, 6, 30), QDate(2026, 6, 1)}, low));
    EXPECT_FALSE(data.PressioneMassima(17, {none, none}, high));
}

TEST_F(ModEstrazDatiTest, FindsProblemsByTheirCode)
{
    int key = 0;
    for (const char *row :
         {"17, '401.9', #1/1/2020#", "17, '250.00', #1/1/2021#", "17, '404.1', #1/1/2022#", "17, '402', Null",
          "17, '', #1/1/2026#", "17, Null, #1/1/2026#", "18, '493.0', #1/1/2026#"})
        execute(
            QStringLiteral(
                "INSERT INTO PROBLEMS (idProblems, cod_paz, CodICDSospetto, DataApertura) VALUES (%1, %2)")
                .arg(++key)
                .arg(row));
    const struct {
        const char *list, *condition, *newest;
    } cases[] = {
        {"401.*;402.*;403.*;404.*;405.*", "", "404.1"},
        {"401.*", "", "401.9"},
        {"402*", "", "402"},
        {"25#.*", "", "250.00"},
        {"*", "", "404.1"}, // no code is no match
        {"*", "p.DataApertura < #1/1/2021#", "401.9"},
        {"*", "p.idProblems = 2", "250.00"},
        {"493.*", "", ""},
        {"", "", ""},
        {";", "", ""},
    };
    for (const auto &[list, condition, newest] : cases) {
        EXPECT_EQ(data.UltimoProblemaICD(17, list, condition).toStdString(), newest) << list << condition;
        EXPECT_EQ(data.EsisteProblemaICD(17, list, condition), *newest != 0) << list << condition;
    }
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(ModEstrazDatiTest, ReadsTheNewestStatementOnSmoking)
{
    QDate date(2000, 1, 1);
    EXPECT_EQ(data.StatoFumo(17, date), 0);
    EXPECT_FALSE(date.isValid());
    const auto add = [this](const char *day, const char *code) {
        const QByteArray text = "'" + QByteArray(95, '9') + code + "99'";
        addExamination("H", day, text.constData());
    };
    add("Null", "03");
    EXPECT_EQ(data.StatoFumo(17, date), 3);
    EXPECT_FALSE(date.isValid());
    add("#5/1/2024#", "02");
    EXPECT_EQ(data.StatoFumo(17, date), 2);
    EXPECT_EQ(date, QDate(2024, 5, 1));
    add("#6/1/2024#", "99"); // no statement
    EXPECT_EQ(data.StatoFumo(17, date), 99);
    EXPECT_FALSE(date.isValid());
    addExamination("H", "#7/1/2024#", "'0102'"); // too short
    EXPECT_EQ(data.StatoFumo(17, date), 0);
}

TEST_F(ModEstrazDatiTest, AFailingQueryGivesTheEmptyResultAndALineInTheLog)
{
    execute("INSERT INTO PROBLEMS (idProblems, cod_paz, CodICDSospetto) VALUES (1, 17, '401.9')");
    LabResult result{1, QDate(2026, 1, 1), "x", "y"};
    EXPECT_FALSE(data.UltimoEsameLab(17, year, "(RIEPIL2.manca = 1)", result));
    EXPECT_EQ(text(result), "0|||");
    EXPECT_FALSE(data.EsisteEsameLab(17, year, ""));
    EXPECT_FALSE(data.EsisteProblemaICD(17, "401.*", "p.manca = 1"));
    EXPECT_EQ(data.ContaPrescrizioniOspedaliere(17, year, "or or"), 0);
    EXPECT_EQ(logged().size(), 4);
    execute("DROP TABLE ESAME_OB");
    QDate date;
    EXPECT_EQ(data.StatoFumo(17, date), 0);
    EXPECT_TRUE(logged().last().startsWith("ModEstrazDati.StatoFumo - Error 3078 - "))
        << logged().last().toStdString();
}

} // namespace
} // namespace clivara
