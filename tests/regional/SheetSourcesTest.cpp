// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetSources.h"

#include "SheetFixture.h"
#include "chart/ResultUnits.h"
#include "regional/ModEstrazDati.h"
#include "regional/SheetData.h"

namespace clivara {
namespace {

class SheetSourcesTest : public SheetFixture {
protected:
    // A new sheet of that type for the patient, filled from the record.
    SheetData recovered(int type, int age = 60)
    {
        SheetData sheet(*sheetLayout(type));
        last = RecuperaDati(sheet, ModEstrazDati(database(), log), {17, age, clock.today()});
        return sheet;
    }
    void addProblem(const char *code)
    {
        execute(QStringLiteral("INSERT INTO PROBLEMS (idProblems, cod_paz, CodICDSospetto, DataApertura) "
                               "VALUES (%1, 17, '%2', #1/1/2020#)")
                    .arg(++m_keys)
                    .arg(code));
    }
    void addDrug(const char *atc, const char *date)
    {
        ++m_keys;
        execute(QStringLiteral("INSERT INTO SPEFAR (CODSPE, atc) VALUES ('F%1', '%2')").arg(m_keys).arg(atc));
        execute(QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan, da_pre, num_conf) "
                               "VALUES (%1, 17, 0, 'F%1', %2, 1)")
                    .arg(m_keys)
                    .arg(date));
    }
    void addResult(const char *code, const char *value, const char *unit, const char *date)
    {
        ++m_keys;
        execute(QStringLiteral("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan, da_pre) VALUES (%1, 17, "
                               "1, 'E%1', %2)")
                    .arg(m_keys)
                    .arg(date));
        execute(QStringLiteral("INSERT INTO riepil2 (idriepil2, cod_rie, codice, unita, unita_Mis) "
                               "VALUES (%1, 'E%1', '%2', '%3', '%4')")
                    .arg(m_keys)
                    .arg(code, value, unit));
    }

    RecoveredData last;

private:
    int m_keys = 0;
};

TEST_F(SheetSourcesTest, WhatCannotBeReadIsNotTakenForNothing)
{
    addProblem("401.9");
    execute("DROP TABLE SPEFAR");
    const SheetData sheet = recovered(1);
    EXPECT_FALSE(last.isWhole);
    EXPECT_EQ(sheet.value("Statine"), SheetData(*sheetLayout(1)).value("Statine")) << "not a no";
    EXPECT_EQ(sheet.value("Ipertensione"), "2");
    execute("CREATE TABLE SPEFAR (CODSPE TEXT(10), atc TEXT(10))");
    EXPECT_EQ(recovered(1).value("Statine"), "1");
    EXPECT_TRUE(last.isWhole);
}

TEST_F(SheetSourcesTest, AnEmptyRecordLeavesTheTemplate)
{
    execute("DELETE FROM inf_gen");
    SheetData expected(*sheetLayout(1));
    // What is prescribed is known: nothing.
    for (const char *drug : {"Statine", "Antipertensivi", "AceSartani", "Antiaggreganti"})
        expected.setValue(sheetLayout(1)->indexOf(drug), "1");
    EXPECT_EQ(CreaStringaDati(recovered(1)), CreaStringaDati(expected));
    for (const SheetLayout &layout : sheetLayouts())
        EXPECT_TRUE(readSheetString(layout, CreaStringaDati(recovered(layout.type))).data) << layout.type;
    EXPECT_TRUE(last.remarks.isEmpty());
    EXPECT_TRUE(logged().filter("Error").isEmpty());
}

TEST_F(SheetSourcesTest, FillsTheDiabetesSheet)
{
    for (const char *code : {"250.62", "401.9", "414.01", "272.4", "362.01"})
        addProblem(code);
    addDrug("C10AA05", "#11/21/2025#"); // twelve months ago to the day
    addDrug("B01AC06", "#11/20/2025#"); // a day more
    addDrug("A10BA02", "#5/21/2026#"); // six months
    addDrug("A10AB01", "#5/20/2026#");
    addDrug("C09AA05", "#11/21/2026#");
    addResult("90.28.1", "58", "mmol/mol", "#10/1/2026#");
    addResult("90.16.04", "1.24", "mg/dl", "#9/1/2026#");
    addResult("90.16.4", "2.5", "mg/dl", "#8/1/2026#");
    execute("INSERT INTO ESAME_OB (cod_paz, tipo_dati, chiave, data_reg, dati_paz) VALUES (17, 'A', '1', "
            "#6/1/2026#, '170112.3')");
    execute("INSERT INTO ESAME_OB (cod_paz, tipo_dati, data_reg, dati_paz) VALUES (17, 'H', #3/1/2026#, '"
            + QString(95, '9') + "02')");

    const SheetData sheet = recovered(1);
    EXPECT_EQ(CreaStringaDati(sheet).left(18).toStdString(), "221200002220212121");
    EXPECT_EQ(sheet.value("Glicata"), "7.5"); // 58 mmol/mol
    EXPECT_EQ(sheet.value("DataGlicata"), "01/10/2026");
    EXPECT_EQ(sheet.value("MassaCorporea"), "38.9");
    EXPECT_EQ(sheet.value("Creatinina"), "1.2"); // the newest of both codes
    EXPECT_EQ(sheet.value("Peso"), "112.3");
    EXPECT_EQ(last.remarks, QStringList());
    EXPECT_EQ(last.origins.value(sheetLayout(1)->indexOf("Glicata")),
              "Risultato del 01/10/2026: 58 mmol/mol (mmol/mol × 0.0915 + 2.15, in %)");
}

TEST_F(SheetSourcesTest, TellsUnitsOfGlycatedHaemoglobinApart)
{
    const struct {
        const char *value, *unit, *percent;
    } cases[] = {{"7.2", "%", "7.2"}, {"42", "mmol/mol", "6"}, {"42", "", "6"},
                 {"20", "", "20"},    {"7,2", "", "7.2"},      {"120", "mmol/mol", "13.1"}};
    for (const auto &[value, unit, percent] : cases) {
        execute("DELETE FROM riepil2");
        addResult("90.28.1", value, unit, "#11/21/2026#");
        EXPECT_EQ(recovered(1).value("Glicata").toStdString(), percent) << value << unit;
    }
}

TEST_F(SheetSourcesTest, TakesAResultOnlyInTheUnitOfTheField)
{
    const struct {
        int type;
        const char *field, *code, *value, *unit, *shown, *remark;
    } cases[] = {
        {1, "Microalbumina", "90.33.4", "17", "mg/l", "1.7", ""},
        {1, "Microalbumina", "90.33.4", "17", "mg/dL", "17", ""},
        {1, "Microalbumina", "90.33.4", "17", "mg/24h", "",
         "Microalbuminuria (mg/dl): Risultato del 01/10/2026: 17 mg/24h non si può riportare in mg/dl, e non "
         "è "
         "ripreso."},
        {1, "Microalbumina", "90.33.4", "17", "", "",
         "Microalbuminuria (mg/dl): Risultato del 01/10/2026: 17 è senza unità di misura, e non è ripreso."},
        {1, "Creatinina", "90.16.04", "97", "μmol/L", "1.1", ""},
        {2, "Creatinina", "90.16.4", "97", "µmol/l", "1.1", ""},
        {2, "Creatinina", "90.16.4", "1.1", "ng/ml", "",
         "Creatininemia (mg/dl): Risultato del 01/10/2026: 1.1 ng/ml non si può riportare in mg/dl, e non è "
         "ripreso."},
        {2, "Creatinina", "90.16.4", "0.1", "mmol/l", "1.13", ""},
        {2, "Creatinina", "90.16.4", "11", "mg/l", "1.1", ""},
        {2, "Colesterolo", "90.14.3", "5.2", "mmol/l", "201", ""},
        {2, "Colesterolo", "90.14.3", "2.01", "g/l", "201", ""},
        {1, "Microalbumina", "90.33.4", "17", "mcg/ml", "1.7", ""},
        {2, "Potassio", "90.37.4", "4.3", "mEq/L", "4.3", ""},
        {1, "Glicata", "90.28.1", "58", "%", "",
         "Emoglobina glicata (%): Risultato del 01/10/2026: 58 % non si può riportare in %, e non è "
         "ripreso."},
    };
    for (const auto &[type, field, code, value, unit, shown, remark] : cases) {
        execute("DELETE FROM riepil");
        execute("DELETE FROM riepil2");
        addResult(code, value, unit, "#10/1/2026#");
        EXPECT_EQ(recovered(type).value(field).toStdString(), shown) << field << unit;
        EXPECT_EQ(last.remarks.join('|').toStdString(), remark) << unit;
    }
    EXPECT_EQ(recovered(1).value("DataGlicata"), "") << "the date of a value that is not there";

    execute("DELETE FROM riepil");
    execute("DELETE FROM riepil2");
    addResult("90.33.4", "17", "mg/l", "#10/1/2026#");
    execute("UPDATE riepil2 SET data_eff = #12/1/2026#");
    EXPECT_EQ(recovered(1).value("Microalbumina"), "");
    EXPECT_TRUE(last.remarks.value(0).contains("ha una data futura")) << last.remarks.value(0).toStdString();
}

TEST_F(SheetSourcesTest, EveryExamOfTheLayoutsHasARuleForItsUnit)
{
    for (const SheetLayout &layout : sheetLayouts()) {
        for (const SheetField &field : layout.fields) {
            const bool isResult = field.source.name == "esame";
            if (!isResult && field.source.name != "dataesame")
                continue;
            const QString unit = field.source.arguments.value(2);
            EXPECT_TRUE(resultInUnit(field.source.arguments.value(0), 5, unit, unit))
                << layout.type << field.name.toStdString();
            EXPECT_TRUE(!isResult || field.caption.contains('(' + unit + ')'))
                << "the doctor reads another unit: " << field.caption.toStdString();
        }
    }
}

// By the ATC classification: which fields a drug says yes in, by type.
TEST_F(SheetSourcesTest, ADrugSaysYesWhereItBelongs)
{
    const struct {
        const char *atc;
        QString diabetes, hypertension, asthma, copd; // the fields that say yes
    } cases[] = {
        {"C10AA05", "Statine", "Statine", "", ""},
        {"C10BA02", "Statine", "Statine", "", ""}, // simvastatin and ezetimibe
        {"C10BA10", "", "", "", ""}, // bempedoic acid and ezetimibe
        {"C10AX09", "", "", "", ""}, // ezetimibe
        {"C10BX08", "Statine Antiaggreganti", "Statine Antiaggreganti", "", ""}, // atorvastatin and aspirin
        {"C10BX11", "Statine AceSartani", "Calcioantagonisti AceSartani Statine", "", ""},
        {"C10BX22", "Statine", "Betabloccanti Statine", "", ""}, // rosuvastatin and nebivolol
        {"C02CA04", "Antipertensivi", "Antipertensivi", "", ""},
        {"C02KX01", "Antipertensivi", "", "", ""}, // bosentan, for the lungs
        {"C09XA02", "", "", "", ""}, // aliskiren is neither ACE inhibitor nor sartan
        {"C09BA05", "AceSartani", "Diuretici AceSartani", "", ""}, // ramipril and a diuretic
        {"C09BX04", "AceSartani", "Betabloccanti Calcioantagonisti AceSartani", "", ""},
        {"C09DX04", "AceSartani", "AceSartani", "", ""}, // valsartan and sacubitril
        {"C07BB07", "", "Diuretici Betabloccanti", "", ""},
        {"B01AC04", "Antiaggreganti", "Antiaggreganti", "", ""},
        {"B01AF02", "", "", "", ""}, // an anticoagulant
        {"R03AC02", "", "", "Brevi", "Brevi"},
        {"R03AC03", "", "", "Brevi", "Brevi"}, // terbutaline
        {"R03AC18", "", "", "Laba", "Laba"},
        {"R03AK07", "", "", "Ics Laba", "Laba Ics"},
        {"R03AK13", "", "", "Brevi Ics", "Brevi Ics"}, // salbutamol and beclometasone
        {"R03AL02", "", "", "Brevi", "Brevi"},
        {"R03AL08", "", "", "Ics Laba", "Laba Lama Ics"},
        {"R03AL10", "", "", "Laba", "Laba Lama"}, // formoterol and tiotropium, without a steroid
        {"R03AL12", "", "", "Ics Laba", "Laba Lama Ics"},
        {"R03BB01", "", "", "", "Brevi"},
        {"R03BB04", "", "", "", "Lama"},
        {"R03DC03", "", "", "Antileucotrieni", ""},
        {"R03DA04", "", "", "", "Altri"},
        {"R03DX07", "", "", "", "Altri"}, // roflumilast is no biological drug
        {"R03DX05", "", "", "Biologici", ""},
        {"R03DX11", "", "", "Biologici", ""},
        {"D11AH05", "", "", "Biologici", ""}, // dupilumab
        {"V03AN01", "", "", "", "Ossigeno"},
        {"R06AE07", "", "", "", ""},
    };
    const auto yes = [&](int type) {
        const SheetData sheet = recovered(type);
        QStringList names;
        for (const SheetField &field : sheet.layout().fields) {
            if (field.source.name == "farmaci" && sheet.entry(field.name) == 2)
                names << field.name;
        }
        return names.join(' ').toStdString();
    };
    for (const auto &[atc, diabetes, hypertension, asthma, copd] : cases) {
        execute("DELETE FROM riepil");
        addDrug(atc, "#11/1/2026#");
        EXPECT_EQ(yes(1), diabetes.toStdString()) << atc;
        EXPECT_EQ(yes(2), hypertension.toStdString()) << atc;
        EXPECT_EQ(yes(6), asthma.toStdString()) << atc;
        EXPECT_EQ(yes(7), copd.toStdString()) << atc;
    }
    // The two sheets of both diseases: neither biological drugs nor roflumilast are "theophylline or
    // antileukotrienes".
    for (const char *atc : {"R03DX05", "R03DX07", "R03DA04", "R03DC03"}) {
        execute("DELETE FROM riepil");
        addDrug(atc, "#11/1/2026#");
        for (const int type : {3, 5})
            EXPECT_EQ(yes(type), QString(atc).startsWith("R03DX") ? "" : "Altri") << atc;
    }
}

TEST_F(SheetSourcesTest, KnowsTheKindsOfDiabetesAndItsTherapy)
{
    const struct {
        const char *code, *type;
    } types[] = {{"250.00", "2"}, {"250.01", "1"}, {"250.53", "1"},
                 {"250.62", "2"}, {"250", "2"},    {"648.0", "3"}};
    for (const auto &[code, type] : types) {
        execute("DELETE FROM PROBLEMS");
        addProblem(code);
        EXPECT_EQ(recovered(1).value("TipoDiabete").toStdString(), type) << code;
    }
    EXPECT_EQ(recovered(1).entry("Terapia"), 0); // no diabetes in the proper sense, and no drug
    addProblem("250.00");
    EXPECT_EQ(recovered(1).entry("Terapia"), 1);
    addDrug("A10AB01", "#11/1/2026#");
    EXPECT_EQ(recovered(1).entry("Terapia"), 3);
    addDrug("A10BA02", "#11/1/2026#");
    EXPECT_EQ(recovered(1).entry("Terapia"), 4);
    execute("DELETE FROM riepil");
    addDrug("A10AE54", "#11/1/2026#"); // insulin and another drug in one
    EXPECT_EQ(recovered(1).entry("Terapia"), 4);
}

TEST_F(SheetSourcesTest, FillsPressuresRiskAndFrailty)
{
    for (const char *row : {"#6/1/2026#, 165, 95", "#7/1/2026#, 130, Null", "#1/1/2020#, 220, 130"})
        execute(QStringLiteral("INSERT INTO esa_ob (cod_paz, data_ob, presmax, presmin) VALUES (17, %1)")
                    .arg(row));
    execute("INSERT INTO Rischio_Cardio (cod_paz, Data_Val, pct_rischio) VALUES (17, #2/1/2026#, 0.1234)");
    const SheetData pressure = recovered(2);
    EXPECT_EQ(pressure.value("SistolicaMax"), "165");
    EXPECT_EQ(pressure.value("DiastolicaMax"), "95");
    EXPECT_EQ(pressure.value("SistolicaMin"), "130");
    EXPECT_EQ(pressure.value("DiastolicaMin"), ""); // was not written down
    EXPECT_EQ(pressure.value("Percentuale"), "12.3");

    EXPECT_EQ(recovered(4).entry("Malattie"), 1);
    for (const char *code : {"401.9", "402", "250.00"})
        addProblem(code);
    EXPECT_EQ(recovered(4).entry("Malattie"), 2); // hypertension counts once
    for (const char *code : {"428.0", "331.0"})
        addProblem(code);
    addProblem("162.9");
    const SheetData frailty = recovered(4);
    EXPECT_EQ(frailty.entry("Malattie"), 3);
    EXPECT_EQ(shownValue(frailty, sheetLayout(4)->indexOf("Cognitivo")), "deficit moderato");
    EXPECT_EQ(frailty.value("Totale"), "4");

    addProblem("491.21");
    EXPECT_EQ(recovered(3).entry("Diagnosi"), 2);
    addProblem("493.0");
    EXPECT_EQ(recovered(5).entry("Diagnosi"), 3);
}

} // namespace
} // namespace clivara
