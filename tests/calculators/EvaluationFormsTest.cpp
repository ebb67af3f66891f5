// SPDX-License-Identifier: Apache-2.0
#include "TestConflicts.h"
#include "calculators/CalculatorFixture.h"
#include "controls/MaskedDateEdit.h"
#include "data/LockHolder.h"
#include "evaluations/HistoryPlot.h"
#include "evaluations/Rischio_Cardio.h"
#include "evaluations/SindrMetabolica.h"

#include <QCheckBox>
#include <QTableView>

namespace clivara {
namespace {

class EvaluationFormsTest : public CalculatorFixture {
protected:
    void typeRisk(const char *values) const { typeEach("me_pas me_col me_hdl", values); }
    void typeMetabolic(const char *values) const { typeEach(metabolicFields, values); }
    void computeAndSave() const
    {
        click("Button2_0");
        click("Button2_1");
    }
    void select(int row) const
    {
        auto *grid = control<QTableView>("Grid1");
        grid->setCurrentIndex(grid->model()->index(row, 0));
    }
    // The rows of the history, columns joined by '|'.
    std::string history() const
    {
        const QAbstractItemModel *model = control<QTableView>("Grid1")->model();
        QStringList rows;
        for (int row = 0; row < model->rowCount(); ++row)
            rows << model->index(row, 0).data().toString() + u'|' + model->index(row, 1).data().toString();
        return rows.join(u'/').toStdString();
    }
    // The rows of a query.
    std::string stored(const char *sql) { return clinical(sql).join(u'/').toStdString(); }
    // A chart whose every cell is of the third band.
    void addChart()
    {
        for (const char *sex : {"true", "false"}) {
            for (const char *diabetic : {"true", "false"}) {
                for (const char *smoker : {"true", "false"})
                    execute(QStringLiteral(
                                "INSERT INTO Carta_Rischio VALUES (%1, 40, 69, %2, %3, 90, 200, 130, 320, 3)")
                                .arg(sex, diabetic, smoker));
            }
        }
    }
    static std::string question(int years)
    {
        return QStringLiteral("Attenzione|Il paziente ha %1 anni.\n"
                              "Il calcolo del rischio cardiovascolare è da considerarsi\n"
                              "valido se effettuato per pazienti di età compresa tra 35 e 69 anni.\n\n"
                              "Si desidera continuare?|warning")
            .arg(years)
            .toStdString();
    }
    static constexpr auto metabolicFields = "me_ca me_pas me_pad me_glic me_hdl me_trigl";
    static constexpr auto sameDay =
        "Rischio Cardiovascolare|Esiste già una rilevazione effettuata nella stessa data.|none";
    static constexpr auto third = "Carta del rischio:  III  (10%-15%)";
};

TEST_F(EvaluationFormsTest, RiskFromProposalsIsSavedAndStartsANewEvaluation)
{
    addChart();
    addPressure(daysAgo(10), "140", "85");
    addResult("90.14.3", daysAgo(20), "'220'");
    addResult("90.14.1", daysAgo(20), "'50.5'");
    addExamination("H", "#02/03/1999#", lifestyle("03"));
    Rischio_Cardio form(state);
    EXPECT_EQ(form.objectName(), "Rischio_Cardio");
    open(form, [&] {
        EXPECT_EQ(values("lblSesso lblEta MaskEdBox1 me_pas me_col me_hdl ChkFumatore ChkDiabetico"),
                  "M|60|21/11/2026|140|220|50|x|");
        EXPECT_EQ(values("me_pasSource me_hdlSource ChkFumatoreSource"),
                  "misurata il 11/11/2026|esame del 01/11/2026: 50.5|questionario del 03/02/1999");
        EXPECT_EQ(control("me_pasSource")->toolTip(), "Valore proposto: misurata il 11/11/2026");
        EXPECT_FALSE(control("Label2_1")->isVisible());
        EXPECT_FALSE(enabled("Button2_1"));

        control<QCheckBox>("ChkFumatore")->click();
        EXPECT_EQ(text("ChkFumatoreSource"), "");
        QTest::keyClick(&form, Qt::Key_Return); // the default button
        EXPECT_EQ(values("SSPanel1 SSPanel2"), "prob. = 7.4%|" + std::string(third));
        EXPECT_TRUE(enabled("Button2_1"));

        // What was computed no longer belongs to changed inputs.
        type("me_pas", "141");
        EXPECT_FALSE(enabled("Button2_1") || enabled("results"));
        type("me_pas", "140");
        computeAndSave();
        EXPECT_EQ(history(), "21/11/2026|7.4%");
        EXPECT_EQ(stored("SELECT eta, pressione, colesterolo, hdl, fumatore, diabetico, ipertens "
                         "FROM Rischio_Cardio"),
                  "60|140|220|50|false|false|false");
        EXPECT_EQ(values("SSPanel1 status ChkFumatore"), "|✓ Rilevazione del 21/11/2026 salvata.|x")
            << "proposed again";
        EXPECT_FALSE(enabled("Button2_1"));

        // The same day once more.
        click("Button2_0");
        EXPECT_EQ(boxOf("Button2_1"), sameDay);
        EXPECT_EQ(history(), "21/11/2026|7.4%");
        QTest::keyClick(&form, Qt::Key_Escape);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(handedBack(), "pctRischio 0.12");
    EXPECT_EQ(settings.text("AGGIORNA_DIARIO"), "PREVENZIONE");
}

TEST_F(EvaluationFormsTest, RiskNeedsEveryValueInItsRange)
{
    addChart();
    Rischio_Cardio form(state);
    const auto pressure = "La pressione arteriosa sistolica deve essere compresa tra 90 e 200 mmHg";
    const auto cholesterol = "La colesterolemia totale deve essere compresa tra 130 e 320 mg/dl";
    const auto hdl = "La HDL-colesterolemia deve essere compresa tra 20 e 100 mg/dl";
    const auto ofRange = "Rischio Cardiovascolare|%|none";
    open(form, [&] {
        type("me_pas", "140/90");
        expectWarning("Pressione sistolica in mmHg: «140/90» non è un numero.", "me_pas");
        EXPECT_EQ(value("me_pas"), "140/90") << "stays to be corrected";
        type("me_pas", "0,0");
        expectWarning("Inserire il valore della pressione arteriosa sistolica!", "me_pas");
        const std::tuple<const char *, const char *, const char *> refused[]{
            {"89 129 19", pressure, "me_pas"},
            {"201 220 50", pressure, "me_pas"},
            {"0.4 220 50", pressure, "me_pas"},
            {"-140 220 50", pressure, "me_pas"},
            {"99999999999 220 50", pressure, "me_pas"},
            {"140 129 19", cholesterol, "me_col"},
            {"140 321 50", cholesterol, "me_col"},
            {"140 220 19", hdl, "me_hdl"},
            {"140 220 101", hdl, "me_hdl"}};
        for (const auto &[typed, message, field] : refused) {
            typeRisk(typed);
            expectWarning(message, field, ofRange);
            EXPECT_EQ(text("SSPanel1"), "");
            EXPECT_FALSE(enabled("Button2_1"));
        }
        for (const char *typed :
             {"90 130 100", "89,5 130 100", "200 130 100", "200,5 130 100", "90 320 20"}) {
            typeRisk(typed);
            click("Button2_0");
            EXPECT_TRUE(enabled("Button2_1")) << typed;
        }
        EXPECT_EQ(text("SSPanel1"), "prob. = 10.2%");
    });
}

// By the age of today, or in some regions by that on a day of reference.
TEST_F(EvaluationFormsTest, RiskAsksOutsideItsAges)
{
    addChart();
    const auto none = -1;
    const struct {
        const char *region, *birth;
        int asked; // the age in the question
        const char *label, *band;
    } cases[]{{"03", "#11/21/1992#", 34, "", ""},
              {"03", "#11/21/1991#", none, "", ""},
              {"03", "#11/21/1987#", none, "", ""},
              {"03", "#11/21/1986#", none, "", third},
              {"03", "#11/21/1957#", none, "", third},
              {"03", "#11/21/1956#", 70, "", ""},
              {"16", "#01/09/1973#", none, "35 anni al 9/1/08", third},
              {"16", "#01/10/1973#", 34, "34 anni al 9/1/08", third},
              {"16", "#01/10/1938#", none, "69 anni al 9/1/08", ""},
              {"16", "#01/09/1938#", 70, "70 anni al 9/1/08", ""},
              {"16", "#01/01/2020#", 0, "0 anni al 9/1/08", ""},
              {"03", "Null", 0, "", ""},
              {"03", "#01/01/2030#", 0, "", ""}};
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.region) + c.birth);
        state.doctor.region = c.region;
        execute(QStringLiteral("UPDATE archivio SET Data_Nasc = %1 WHERE cod_paz = 17").arg(c.birth));
        execute("DELETE * FROM Rischio_Cardio");
        Rischio_Cardio form(state);
        open(form, [&] {
            const std::string age = text("lblEta");
            EXPECT_EQ(control("Label2_1")->isVisible(), *c.label != 0);
            EXPECT_EQ(text("Label2_1"), c.label);
            typeRisk("140 220 50");
            for (const PromptButton answer : {PromptButton::No, PromptButton::Yes}) {
                if (c.asked == none) {
                    click("Button2_0");
                } else {
                    EXPECT_EQ(boxOf("Button2_0", answer), question(c.asked));
                }
                EXPECT_NE(text("SSPanel1"), "") << "computed in either case";
                EXPECT_EQ(enabled("Button2_1"), c.asked == none || answer == PromptButton::Yes);
                EXPECT_EQ(text("SSPanel2"), c.band);
            }
            click("Button2_1");
            EXPECT_EQ(stored("SELECT eta FROM Rischio_Cardio"), age.empty() ? "Null" : age);
        });
    }
}

TEST_F(EvaluationFormsTest, ChartWithoutARowAndBandThatIsNotClassified)
{
    Rischio_Cardio form(state);
    open(form, [&] {
        typeRisk("140 220 50");
        EXPECT_EQ(boxOf("Button2_0"), "Attenzione!|Errore nelle tabelle!|warning");
        EXPECT_EQ(values("SSPanel1 SSPanel2"), "prob. = 7.4%|");
        EXPECT_TRUE(enabled("Button2_1"));
        addChart();
        execute("UPDATE Carta_Rischio SET Livello = 0");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "Carta del rischio:  n.c.  (età < 40 o > 70)");
        EXPECT_FALSE(enabled("Button2_1"));
        execute("DROP TABLE Carta_Rischio");
        click("Button2_0");
        EXPECT_EQ(values("SSPanel1 SSPanel2"), "prob. = 7.4%|");
    });
    EXPECT_TRUE(logged().last().startsWith("Clivara.Rischio_Cardio - Error "))
        << logged().last().toStdString();
}

TEST_F(EvaluationFormsTest, SavedRiskReplacesNoOtherDay)
{
    execute(
        "INSERT INTO Rischio_Cardio VALUES (17, #05/02/2025#, 58, 0.1234, 150, 240, 40, true, true, true)");
    execute("INSERT INTO Rischio_Cardio (cod_paz, Data_Val) VALUES (17, #03/01/2024#)");
    addChart();
    Rischio_Cardio form(state);
    open(form, [&] {
        EXPECT_EQ(history(), "02/05/2025|12.3%/01/03/2024|");
        EXPECT_FALSE(enabled("Button1_1"));
        type("me_hdl", "55");
        select(0);
        EXPECT_EQ(values("ChkFumatore me_hdlSource SSPanel1"), "x|non di questa rilevazione|prob. = 12.3%");
        EXPECT_FALSE(enabled("Button2_1"));
        click("Button2_0");
        type("MaskEdBox1", "01/03/2024");
        EXPECT_EQ(boxOf("Button2_1"), sameDay);
        EXPECT_EQ(stored("SELECT hdl FROM Rischio_Cardio ORDER BY data_val"), "Null/40");
        select(1);
        EXPECT_EQ(values("me_pas me_col SSPanel1 ChkIpertens"), "||prob. = |");
        boxOf("Button1_1", PromptButton::Yes);
        EXPECT_EQ(stored("SELECT data_val FROM Rischio_Cardio"), "2025-05-02 00:00:00");
        EXPECT_FALSE(enabled("Button1_1"));
        EXPECT_EQ(value("MaskEdBox1"), "21/11/2026") << "a new evaluation";

        // Deleted by another workstation in the meantime.
        execute("DELETE * FROM Rischio_Cardio");
        select(0);
        EXPECT_EQ(text("status"), "⚠ La rilevazione del 02/05/2025 non si può leggere.");
    });
}

TEST_F(EvaluationFormsTest, NothingIsSavedUnderADateThatIsNone)
{
    addChart();
    Rischio_Cardio form(state);
    open(form, [&] {
        typeRisk("140 220 50");
        click("Button2_0");
        // The doctor is told once, on leaving the field, and led back when saving.
        prompts.queue();
        type("MaskEdBox1", "31/04/2026");
        control("me_pas")->setFocus();
        EXPECT_EQ(prompts.last(), "Attenzione!|Il giorno deve essere un numero compreso tra 1 e 30\n\n"
                                  "Inserire la data nel formato GG/MM/AAAA|warning");
        click("Button2_1");
        EXPECT_EQ(values("MaskEdBox1 status"), "31/04/2026|⚠ La data non è valida: correggerla per salvare.");
        EXPECT_EQ(focused(), "MaskEdBox1");
        EXPECT_EQ(stored("SELECT * FROM Rischio_Cardio"), "");

        // Saving from within the field; empty; the day that the check lets pass though the year has none.
        for (const char *none : {"15/13/2026", "", "29/02/2025"}) {
            prompts.queue();
            type("MaskEdBox1", none);
            EXPECT_EQ(text("status"), "");
            click("Button2_1");
        }
        EXPECT_EQ(prompts.last(), "Attenzione!|Data non valida !|warning");
        EXPECT_EQ(stored("SELECT * FROM Rischio_Cardio"), "");

        type("MaskEdBox1", "1/2/24");
        click("Button2_1");
        EXPECT_EQ(stored("SELECT data_val FROM Rischio_Cardio"), "2024-02-01 00:00:00");
    });
}

TEST_F(EvaluationFormsTest, AFailedSaveKeepsWhatWasTyped)
{
    addChart();
    Rischio_Cardio form(state);
    open(form, [&] {
        typeRisk("140 220 50");
        click("Button2_0");
        {
            LockHolder other(path("Orvale.sqlite"));
            EXPECT_TRUE(boxOf("Button2_1").starts_with("Attenzione!|Salvataggio non riuscito"));
        }
        EXPECT_EQ(pauses.taken.size(), 19);
        EXPECT_EQ(values("me_pas SSPanel1"), "140|prob. = 7.4%");
        EXPECT_TRUE(enabled("Button2_1"));
        EXPECT_EQ(stored("SELECT * FROM Rischio_Cardio"), "");

        LockHolder other(path("Orvale.sqlite"));
        pauses.taken.clear();
        pauses.actAt = 1;
        pauses.during = [&] { other.release(); };
        click("Button2_1");
        EXPECT_EQ(history(), "21/11/2026|7.4%");
    });
}

TEST_F(EvaluationFormsTest, RemarksStandBesideTheirFields)
{
    const auto tooHigh = "⚠ Il più recente è fuori dai limiti: 210 mmHg del 18/11/2026.";
    const auto otherUnit = "⚠ «50,5» letto come 50.\n⚠ È in mmol/l, non in mg/dl.";
    const auto improbable = "⚠ Improbabile: di solito tra 30 e 600 mg/dl.";
    addChart();
    addPressure(daysAgo(3), "210", "85");
    addPressure(daysAgo(10), "140", "85");
    addResult("90.14.3", daysAgo(20), "'220'");
    addResult("90.14.1", daysAgo(20), "'50,5'");
    setOfLast("unita_Mis = 'mmol/l'");
    execute("INSERT INTO Rischio_Cardio VALUES (17, #01/01/0202#, 58, 0.1, 150, 240, 40, true, true, true)");
    Rischio_Cardio form(state);
    open(form, [&] {
        expectRemarks({{"me_pas", tooHigh}, {"me_col", ""}, {"me_hdl", otherUnit}});
        EXPECT_EQ(focused(), "me_hdl");
        QTest::keyClick(control("me_hdl"), Qt::Key_Return);
        EXPECT_EQ(text("SSPanel1"), "");
        QTest::keyClick(control("Button2_0"), Qt::Key_Return);
        EXPECT_EQ(text("SSPanel1"), "prob. = 7.4%");

        select(0); // what was stored is not what is proposed; the HDL is still there
        expectRemarks({{"me_pas", ""}, {"MaskEdBox1", "⚠ Anno improbabile: 202."}, {"me_hdl", otherUnit}});
        click("Button1_0");
        expectRemarks({{"me_pas", tooHigh}, {"MaskEdBox1", ""}});
        EXPECT_EQ(focused(), "me_hdl") << "to be seen again";

        typeRisk("140 130 135");
        control("me_pas")->setFocus();
        EXPECT_EQ(remark("me_hdl"), "⚠ L'HDL supera il colesterolo totale (130).");
    });
    state.header.patientCode = 18;
    open(form, [&] { expectRemarks({{"me_pas", ""}, {"me_hdl", ""}, {"MaskEdBox1", ""}}); });

    state.header.patientCode = 17;
    SindrMetabolica syndrome(state);
    open(syndrome, [&] {
        typeMetabolic("9999 130 140 5.5 50 1.7");
        click("Button2_0");
        EXPECT_EQ(remark("me_trigl"), "⚠ Improbabile: di solito tra 20 e 2000 mg/dl.");
        EXPECT_TRUE(enabled("Button2_1")) << "nothing is kept from being saved";
        type("me_ca", "96-98");
        expectWarning("Circonferenza addominale in cm: «96-98» non è un numero.", "me_ca");
        EXPECT_FALSE(enabled("Button2_1"));
        addResult("90.27.1", daysAgo(1), "'5.5'");
        type("me_glic", "9");
        click("Button1_0"); // in the middle of typing, as by its mnemonic
        EXPECT_EQ(remark("me_glic"), improbable);
    });
}

TEST_F(EvaluationFormsTest, TheAgeAtAnotherDateIsSaid)
{
    addChart();
    const struct {
        const char *region, *date, *age;
        const char *risk, *syndrome; // what is added; "-" when nothing is said at all
    } cases[]{
        {"03", "01/04/2026", "", "-", "-"},
        {"03", "01/01/2026", "aveva 59", "", ""},
        {"03", "01/01/2000", "aveva 33", " 33 anni sono fuori dai 35–69 dell'equazione.", ""},
        {"03", "01/01/2001", "aveva 34", " 34 anni sono fuori dai 35–69 dell'equazione.", ""},
        {"03", "01/01/2002", "aveva 35", " 35 anni sono fuori dai 40–69 della carta.", ""}, // 35 is within
        {"03", "01/01/2007", "aveva 40", "", ""},
        {"16", "01/01/2000", "aveva 33", " 33 anni sono fuori dai 40–69 della carta.", ""},
        {"16", "01/01/1992", "aveva 25", " 25 anni sono fuori dai 40–69 della carta.", ""},
        {"16", "01/01/1990", "aveva 23", " 23 anni sono fuori dai 40–69 della carta.",
         " 23 anni sono fuori dai 25–70 in cui vale la diagnosi in questa regione."},
    };
    for (const auto &c : cases) {
        state.doctor.region = c.region;
        Rischio_Cardio risk(state);
        SindrMetabolica syndrome(state);
        for (const auto &[form, added] : {std::pair<ChartForm *, std::string>(&risk, c.risk),
                                          std::pair<ChartForm *, std::string>(&syndrome, c.syndrome)}) {
            open(*form, [&] {
                type("MaskEdBox1", c.date);
                control("me_pas")->setFocus();
                EXPECT_EQ(remark("MaskEdBox1"), added == "-"
                                                    ? ""
                                                    : "⚠ Il " + std::string(c.date) + ' ' + c.age
                                                          + " anni: Calcola usa l'età di oggi, 60." + added)
                    << c.region << ' ' << c.date;
            });
        }
    }
    Rischio_Cardio form(state);
    state.doctor.region = "03";
    open(form, [&] {
        type("MaskEdBox1", "01/01/2090");
        control("me_pas")->setFocus();
        EXPECT_EQ(remark("MaskEdBox1"), "⚠ La data è futura.\n⚠ Il 01/01/2090 avrà 123 anni: Calcola usa "
                                        "l'età di oggi, 60. 123 anni sono fuori dai 35–69 dell'equazione.");
    });
}

TEST_F(EvaluationFormsTest, SyndromeWithoutSexOrBirthSaysSo)
{
    execute("UPDATE archivio SET sesso = ''");
    SindrMetabolica sexless(state);
    open(sexless, [&] {
        typeMetabolic("102 130 85 110 39 151");
        click("Button2_0");
        EXPECT_EQ(text("status"), "⚠ Sesso non indicato: valgono le soglie femminili.");
    });
    execute("UPDATE archivio SET Data_Nasc = Null, sesso = 'F'");
    const std::string without = "⚠ Data di nascita mancante o futura: il calcolo usa 0 anni";
    for (const auto &[region, rest] :
         {std::pair("03", "."),
          std::pair("16", ", fuori dai 25–70 in cui vale la diagnosi in questa regione.")}) {
        state.doctor.region = region;
        SindrMetabolica form(state);
        open(form, [&, expected = without + rest] {
            EXPECT_EQ(remark("lblEta"), expected) << "before anything is computed";
            typeMetabolic("102 130 85 110 39 151");
            click("Button2_0");
            EXPECT_EQ(text("status"), expected);
        });
    }
}

TEST_F(EvaluationFormsTest, AllRemarksHaveRoomOnASmallScreen)
{
    execute("UPDATE archivio SET Data_Nasc = #01/01/1890#, sesso = ''");
    for (const char *code : {"90.27.1", "90.14.1", "90.43.2"}) {
        addResult(code, daysAgo(2), "'5,5'");
        setOfLast("unita_Mis = 'mmol/l', data_eff = #01/01/2019#");
    }
    addResult("90.14.01", daysAgo(1), "'45'");
    SindrMetabolica form(state);
    open(form, [&] {
        typeEach("me_ca me_pas me_pad MaskEdBox1", "9999 300 301 01/01/2090");
        control("me_pad")->setFocus();
        settle();
        EXPECT_GT(form.height(), 600) << "as large as all that is to be read";
        form.setMaximumHeight(580); // of 768 pixels at 125 %, without the window's frame
        settle();
        for (const char *name : {"Button2_0", "esci"}) {
            const QWidget *const button = control(name);
            EXPECT_TRUE(form.rect().contains(QRect(button->mapTo(&form, QPoint()), button->size()))) << name;
        }
        for (const char *field : {"me_pad", "me_glic", "me_hdl", "me_trigl"}) { // Tab scrolls to each
            const QWidget *const edit = control(field);
            EXPECT_EQ(focused(), field);
            EXPECT_NE(remark(field), "") << field;
            EXPECT_EQ(edit->visibleRegion().boundingRect(), edit->rect()) << field;
            QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
        }
    });
}

TEST_F(EvaluationFormsTest, ASecondPatientGetsNothingOfTheFirst)
{
    addChart();
    execute("INSERT INTO archivio (cod_paz, sesso, Data_Nasc) VALUES (18, 'F', #03/12/1970#)");
    Rischio_Cardio risk(state);
    SindrMetabolica syndrome(state);
    const auto computed = [&](ChartForm &form, const char *fields, const char *typed) {
        open(form, [&] {
            if (typed) {
                typeEach(fields, typed);
                click("Button2_0");
            }
            click("esci");
        });
        return handedBack();
    };
    EXPECT_EQ(computed(risk, "me_pas me_col me_hdl", "140 220 50"), "pctRischio 0.07");
    EXPECT_EQ(computed(syndrome, metabolicFields, "102 130 85 110 39 151"), "valutazione 1.00");
    state.header.patientCode = 18;
    EXPECT_EQ(computed(risk, "", nullptr), "pctRischio 0.00");
    EXPECT_EQ(computed(syndrome, "", nullptr), "valutazione 0.00");
}

TEST_F(EvaluationFormsTest, WhatWasChosenIsForgottenByANewEvaluationAndANewPatient)
{
    addChart();
    execute("INSERT INTO archivio (cod_paz, sesso, Data_Nasc) VALUES (18, 'F', #03/12/1970#)");
    for (const char *patient : {"17", "18"})
        execute(QStringLiteral("INSERT INTO Rischio_Cardio VALUES (%1, #05/02/2025#, 58, 0.1, 150, 240, 40, "
                               "true, true, true)")
                    .arg(patient));
    Rischio_Cardio form(state);
    const auto tryToSaveOnTheSameDate = [&] {
        typeRisk("120 220 50");
        type("MaskEdBox1", "02/05/2025");
        click("Button2_0");
        EXPECT_EQ(boxOf("Button2_1"), sameDay);
        EXPECT_EQ(stored("SELECT pressione FROM Rischio_Cardio"), "150/150");
    };
    open(form, [&] {
        select(0);
        EXPECT_TRUE(enabled("Button1_1"));
        click("Button1_0");
        EXPECT_FALSE(enabled("Button1_1"));
        tryToSaveOnTheSameDate();
        select(0);
    });
    state.header.patientCode = 18;
    open(form, [&] { tryToSaveOnTheSameDate(); });
}

TEST_F(EvaluationFormsTest, WhatCannotBeReadIsNotThePatientBefore)
{
    execute("INSERT INTO cronpat (cod_paz, cod_pat) VALUES (17, 32)");
    addExamination("H", daysAgo(10), lifestyle("03"));
    Rischio_Cardio form(state);
    open(form, [&] { EXPECT_EQ(values("ChkDiabetico ChkFumatore"), "x|x"); });
    state.header.patientCode = 18;
    for (const char *table : {"cronpat", "ESAME_OB", "esa_ob", "riepil"})
        execute(QStringLiteral("DROP TABLE ") + QLatin1String(table));
    open(form, [&] {
        EXPECT_EQ(values("ChkDiabetico ChkFumatore"), "|");
        for (const char *source :
             {"ChkDiabeticoSource", "ChkFumatoreSource", "me_pasSource", "me_colSource", "me_hdlSource"})
            EXPECT_EQ(text(source), "non è stato possibile leggere") << source;
    });
}

TEST_F(EvaluationFormsTest, WhatAnotherWorkstationSavedIsNotDeletedUnseen)
{
    execute("INSERT INTO SindrMetabolica (cod_paz, Data_Val, glicemia) VALUES (17, #03/01/2024#, 99)");
    const auto glucose = "SELECT glicemia FROM SindrMetabolica";
    SindrMetabolica form(state);
    open(form, [&] {
        select(0);
        execute("UPDATE SindrMetabolica SET glicemia = 130");
        prompts.queue(PromptButton::Yes);
        prompts.queue(PromptButton::No);
        click("Button1_1");
        EXPECT_TRUE(prompts.last().startsWith("Attenzione!|La rilevazione del 01/03/2024 è stata salvata"))
            << qPrintable(prompts.last());
        EXPECT_EQ(stored(glucose), "130");
        EXPECT_EQ(value("me_glic"), "130") << "now it is seen";
        execute("UPDATE SindrMetabolica SET glicemia = 131");
        prompts.queue(PromptButton::Yes);
        prompts.queue(PromptButton::Yes);
        click("Button1_1");
        EXPECT_EQ(stored(glucose) + history(), "");
    });
}

TEST_F(EvaluationFormsTest, WithoutItsTablesTheFormIsStillUsable)
{
    for (const char *table : {"Rischio_Cardio", "cronpat", "ESAME_OB", "esa_ob", "riepil", "archivio"})
        execute(QStringLiteral("DROP TABLE ") + table);
    Rischio_Cardio form(state);
    open(form, [&] {
        EXPECT_EQ(history(), "");
        EXPECT_EQ(control<HistoryPlot>("plot")->accessibleDescription(),
                  "Non è stato possibile leggere\nle rilevazioni salvate");
        typeRisk("140 220 50");
        boxOf("Button2_0", PromptButton::Yes);
        EXPECT_EQ(text("SSPanel1"), "prob. = 0.1%");
        EXPECT_NE(boxOf("Button2_1").find("Salvataggio non riuscito"), std::string::npos);
    });
}

TEST_F(EvaluationFormsTest, TheCourseIsReadWithTheKeyboard)
{
    for (const char *row : {"#01/01/2022#, 50, 0.05", "#01/01/2024#, 52, 0.074", "#01/01/2025#, 53, Null",
                            "#01/01/2026#, 54, 0.2"})
        execute(
            QStringLiteral("INSERT INTO Rischio_Cardio (cod_paz, Data_Val, eta, pct_rischio) VALUES (17, %1)")
                .arg(row));
    Rischio_Cardio form(state);
    open(form, [&] {
        auto *plot = control<HistoryPlot>("plot");
        EXPECT_EQ(plot->points().size(), 3) << "what has no value has no place";
        EXPECT_EQ(plot->accessibleName(), "Andamento del rischio");
        EXPECT_EQ(text("plotPoint"), "");
        plot->setFocus(Qt::TabFocusReason);
        EXPECT_EQ(text("plotPoint"), "01/01/2026: 20.0%");
        const std::pair<QList<Qt::Key>, const char *> ways[]{
            {{Qt::Key_Left}, "01/01/2024: 7.4%"},
            {{Qt::Key_Home, Qt::Key_Left}, "01/01/2022: 5.0%"},
            {{Qt::Key_End, Qt::Key_Right}, "01/01/2026: 20.0%"},
        };
        for (const auto &[keys, point] : ways) {
            for (const Qt::Key key : keys)
                QTest::keyClick(plot, key);
            EXPECT_EQ(text("plotPoint"), point);
            EXPECT_EQ(plot->accessibleDescription(), point);
        }
        EXPECT_EQ(value("MaskEdBox1"), "21/11/2026") << "looking loads nothing";
        QTest::keyClick(plot, Qt::Key_Home);
        QTest::keyClick(plot, Qt::Key_Return);
        EXPECT_EQ(value("MaskEdBox1"), "01/01/2022");
        EXPECT_EQ(control<QTableView>("Grid1")->currentIndex().row(), 3);
        select(1);
        EXPECT_EQ(text("plotPoint"), "") << "a row without a value has no point";
        select(0);
        EXPECT_EQ(plot->current(), 2);
    });
}

TEST_F(EvaluationFormsTest, MetabolicSyndromeFromProposals)
{
    execute("INSERT INTO TabParamSM VALUES (3, #04/01/2010#, 80, 94, 150, 50, 40, 100, 130, 85)");
    addExamination("A", daysAgo(30), "'170 90.0101.5'");
    addPressure(daysAgo(10), "130", "84");
    addResult("90.27.1", daysAgo(20), "'105'");
    addResult("90.14.1", daysAgo(20), "'40'");
    addResult("90.43.2", daysAgo(200), "'149'");
    SindrMetabolica form(state);
    open(form, [&] {
        EXPECT_EQ(form.windowTitle(), "Sindrome Metabolica");
        EXPECT_EQ(values(metabolicFields), "101.5|130|84|105|40|149");
        EXPECT_EQ(values("me_triglSource me_caSource"), "esame del 05/05/2026|misurata il 22/10/2026");
        EXPECT_EQ(values("me_caThreshold me_padThreshold me_hdlThreshold"), "▲ ≥ 94|soglia ≥ 85|▲ ≤ 40");
        EXPECT_EQ(text("hint"),
                  "▲ Valori oltre le soglie regionali: 4 (regione 03, in vigore dal 01/04/2010).");

        click("Button2_0"); // the waist of 101.5 counts as 102
        EXPECT_EQ(values("SSPanel1 SSPanel2"),
                  "Sindrome Metabolica NON diagnosticata.|Criteri presenti: 2 (circonferenza addominale, "
                  "pressione sistolica).");
        type("me_pad", "85");
        EXPECT_EQ(text("hint"),
                  "▲ Valori oltre le soglie regionali: 5 (regione 03, in vigore dal 01/04/2010).");
        EXPECT_FALSE(enabled("Button2_1"));
        click("Button2_0");
        EXPECT_EQ(text("SSPanel1"), "Diagnosticata Sindrome Metabolica.");
        click("Button2_1");
        EXPECT_EQ(stored("SELECT * FROM SindrMetabolica"), "17|2026-11-21 00:00:00|1|101.5|130|85|105|149");
        EXPECT_EQ(history(), "21/11/2026|SI");
        EXPECT_EQ(value("me_pad"), "85") << "what was saved stays to be seen";
        click("esci");
    });
    EXPECT_EQ(settings.text("AGGIORNA_DIARIO"), "PREVENZIONE");
}

// Tab leads into the list without loading anything; the arrow does, and Del asks.
TEST_F(EvaluationFormsTest, TheHistoryIsReadWithTheKeyboard)
{
    execute("INSERT INTO SindrMetabolica VALUES (17, #05/02/2025#, 1, 103.5, 140, 90, 120, 160)");
    execute("INSERT INTO SindrMetabolica (cod_paz, Data_Val, glicemia) VALUES (17, #03/01/2024#, 99)");
    SindrMetabolica form(state);
    open(form, [&] {
        select(1);
        EXPECT_EQ(values("me_ca me_pas me_pad me_trigl me_glic SSPanel1"),
                  "||||99|Sindrome Metabolica NON diagnosticata.");
        select(0);
        click("Button1_0");
        EXPECT_EQ(values("me_ca me_hdl SSPanel1"), "||");
        EXPECT_FALSE(enabled("Button1_1"));
        auto *grid = control<QTableView>("Grid1");
        type("me_ca", "99");
        grid->setFocus(Qt::TabFocusReason);
        EXPECT_EQ(value("me_ca"), "99");
        QTest::keyClick(grid, Qt::Key_Down);
        EXPECT_EQ(value("me_ca"), "103.5");
        prompts.queue(PromptButton::No);
        QTest::keyClick(grid, Qt::Key_Delete);
        EXPECT_EQ(prompts.boxes.size(), 1);
    });
}

TEST_F(EvaluationFormsTest, WhatAnotherWorkstationSavedIsShownBeforeItIsReplaced)
{
    execute("INSERT INTO SindrMetabolica VALUES (17, #05/02/2025#, 1, 103.5, 140, 90, 120, 160)");
    TestConflicts conflicts(state);
    SindrMetabolica form(state);
    const auto glucose = "SELECT glicemia FROM SindrMetabolica ORDER BY Data_Val DESC";
    const auto saveAndChoose = [&](ConflictChoice choice) {
        conflicts.queue(choice);
        computeAndSave();
        return conflicts.told;
    };
    open(form, [&] {
        type("me_hdl", "45");
        select(0);
        execute("UPDATE SindrMetabolica SET glicemia = 121");
        type("me_glic", "119");
        EXPECT_EQ(saveAndChoose(ConflictChoice::BackToEditing),
                  "La rilevazione del 02/05/2025 è stata salvata da un'altra postazione mentre era in questa "
                  "finestra. Chi e quando non è registrato.\nGlicemia|119|121");
        EXPECT_EQ(value("me_glic"), "119");
        EXPECT_EQ(stored(glucose), "121");
        saveAndChoose(ConflictChoice::Theirs);
        EXPECT_EQ(value("me_glic"), "121") << "shown as it is stored";
        type("me_glic", "118");
        computeAndSave();
        EXPECT_EQ(stored(glucose), "118") << "what was seen may be replaced";

        // A new one of today, which another workstation has saved since the form was opened.
        click("Button1_0");
        typeMetabolic("96 135 85 98 48 140");
        execute("INSERT INTO SindrMetabolica VALUES (17, #11/21/2026#, 1, 96, 135, 85, 99, 140)");
        EXPECT_TRUE(saveAndChoose(ConflictChoice::Mine).ends_with("Glicemia|98|99")) << conflicts.told;
        EXPECT_EQ(stored(glucose), "98/118");

        // Deleted meanwhile: it comes back only when the doctor wants it.
        select(1);
        execute("DELETE FROM SindrMetabolica WHERE Data_Val = #05/02/2025#");
        prompts.queue(PromptButton::No);
        computeAndSave();
        EXPECT_EQ(stored(glucose), "98");
        prompts.queue(PromptButton::Yes);
        computeAndSave();
        EXPECT_EQ(stored(glucose), "98/118");
    });
}

} // namespace
} // namespace clivara
