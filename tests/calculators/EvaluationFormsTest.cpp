// SPDX-License-Identifier: Apache-2.0
#include "TestConflicts.h"
#include "calculators/CalculatorFixture.h"
#include "calculators/HistoryPlot.h"
#include "calculators/Rischio_Cardio.h"
#include "calculators/SindrMetabolica.h"
#include "controls/MaskedDateEdit.h"
#include "data/LockHolder.h"

#include <QCheckBox>
#include <QTableView>

namespace clivara {
namespace {

class EvaluationFormsTest : public CalculatorFixture {
protected:
    void typeRisk(const char *pressure, const char *cholesterol, const char *hdl) const
    {
        type("me_pas", pressure);
        type("me_col", cholesterol);
        type("me_hdl", hdl);
    }
    void typeMetabolic(const QList<const char *> &values) const
    {
        const char *const names[]{"me_ca", "me_pas", "me_pad", "me_glic", "me_hdl", "me_trigl"};
        for (qsizetype i = 0; i < values.size(); ++i)
            type(names[i], values[i]);
    }
    void select(int row) const
    {
        auto *grid = control<QTableView>("Grid1");
        grid->setCurrentIndex(grid->model()->index(row, 0));
    }
    // The rows of the history, columns joined by '|'.
    QStringList history() const
    {
        const QAbstractItemModel *model = control<QTableView>("Grid1")->model();
        QStringList rows;
        for (int row = 0; row < model->rowCount(); ++row)
            rows << model->index(row, 0).data().toString() + u'|' + model->index(row, 1).data().toString();
        return rows;
    }
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
    // The patient has that age today.
    void setAge(int years)
    {
        execute(QStringLiteral("UPDATE archivio SET Data_Nasc = #11/21/%1# WHERE cod_paz = 17")
                    .arg(2026 - years));
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
        EXPECT_EQ(text("lblSesso"), "M");
        EXPECT_EQ(text("lblEta"), "60");
        EXPECT_EQ(value("MaskEdBox1"), "21/11/2026");
        EXPECT_EQ(value("me_pas") + ' ' + value("me_col") + ' ' + value("me_hdl"), "140 220 50");
        EXPECT_EQ(text("me_pasSource"), "misurata il 11/11/2026");
        EXPECT_EQ(control<QLabel>("me_pasSource")->toolTip().toStdString(),
                  "Valore proposto: misurata il 11/11/2026");
        EXPECT_EQ(text("me_hdlSource"), "esame del 01/11/2026: 50.5") << "what was rounded";
        EXPECT_TRUE(control<QCheckBox>("ChkFumatore")->isChecked());
        EXPECT_EQ(text("ChkFumatoreSource"), "questionario del 03/02/1999");
        EXPECT_FALSE(control<QCheckBox>("ChkDiabetico")->isChecked());
        EXPECT_FALSE(control<QLabel>("Label2_1")->isVisible());
        EXPECT_FALSE(enabled("Button2_1"));

        control<QCheckBox>("ChkFumatore")->click();
        EXPECT_EQ(text("ChkFumatoreSource"), "");
        QTest::keyClick(&form, Qt::Key_Return); // the default button
        EXPECT_EQ(text("SSPanel1"), "prob. = 7.4%");
        EXPECT_EQ(text("SSPanel2"), "Carta del rischio:  III  (10%-15%)");
        EXPECT_TRUE(enabled("Button2_1"));

        // What was computed no longer belongs to changed inputs.
        type("me_pas", "141");
        EXPECT_FALSE(enabled("Button2_1"));
        EXPECT_FALSE(enabled("results"));
        type("me_pas", "140");
        click("Button2_0");
        click("Button2_1");
        EXPECT_EQ(history(), QStringList{"21/11/2026|7.4%"});
        EXPECT_EQ(
            clinical(
                "SELECT eta, pressione, colesterolo, hdl, fumatore, diabetico, ipertens FROM Rischio_Cardio"),
            QStringList{"60|140|220|50|false|false|false"});
        EXPECT_EQ(text("SSPanel1"), "");
        EXPECT_FALSE(enabled("Button2_1"));
        EXPECT_EQ(text("status"), "✓ Rilevazione del 21/11/2026 salvata.");
        EXPECT_TRUE(control<QCheckBox>("ChkFumatore")->isChecked()) << "proposed again";

        // The same day once more.
        click("Button2_0");
        prompts.queue();
        click("Button2_1");
        EXPECT_EQ(prompts.last().toStdString(),
                  "Rischio Cardiovascolare|Esiste già una rilevazione effettuata nella stessa data.|none");
        EXPECT_EQ(history(), QStringList{"21/11/2026|7.4%"});
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
    open(form, [&] {
        expectWarning("Inserire il valore della pressione arteriosa sistolica!", "me_pas");
        type("me_pas", "140/90");
        expectWarning("Pressione sistolica in mmHg: «140/90» non è un numero.", "me_pas");
        EXPECT_EQ(value("me_pas"), "140/90") << "stays to be corrected";
        type("me_pas", "0,0");
        expectWarning("Inserire il valore della pressione arteriosa sistolica!", "me_pas");
        type("me_pas", "140");
        expectWarning("Inserire il valore della colesterolemia totale!", "me_col");
        type("me_col", "220");
        expectWarning("Inserire il valore della HDL-colesterolemia!", "me_hdl");
        struct Refused {
            const char *pressure, *cholesterol, *hdl, *message, *field;
        };
        const auto plain = "Rischio Cardiovascolare|%|none";
        const auto pressure = "La pressione arteriosa sistolica deve essere compresa tra 90 e 200 mmHg";
        const auto cholesterol = "La colesterolemia totale deve essere compresa tra 130 e 320 mg/dl";
        const auto hdl = "La HDL-colesterolemia deve essere compresa tra 20 e 100 mg/dl";
        for (const Refused &c :
             {Refused{"89", "129", "19", pressure, "me_pas"}, Refused{"201", "220", "50", pressure, "me_pas"},
              Refused{"0.4", "220", "50", pressure, "me_pas"},
              Refused{"-140", "220", "50", pressure, "me_pas"},
              Refused{"99999999999", "220", "50", pressure, "me_pas"},
              Refused{"140", "129", "19", cholesterol, "me_col"},
              Refused{"140", "321", "50", cholesterol, "me_col"}, Refused{"140", "220", "19", hdl, "me_hdl"},
              Refused{"140", "220", "101", hdl, "me_hdl"}}) {
            typeRisk(c.pressure, c.cholesterol, c.hdl);
            expectWarning(c.message, c.field, plain);
            EXPECT_EQ(text("SSPanel1"), "");
            EXPECT_FALSE(enabled("Button2_1"));
        }
        for (const auto &[low, high] : {std::pair("90", "89,5"), std::pair("200", "200,5")}) {
            for (const char *typed : {low, high}) {
                typeRisk(typed, "130", "100");
                click("Button2_0");
                EXPECT_TRUE(enabled("Button2_1")) << typed;
            }
        }
        typeRisk("90", "320", "20");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel1"), "prob. = 10.2%");
    });
}

TEST_F(EvaluationFormsTest, RiskAsksOutsideItsAges)
{
    addChart();
    struct Case {
        int age;
        bool asks;
        bool hasBand;
    };
    for (const Case &c : {Case{34, true, false}, Case{35, false, false}, Case{39, false, false},
                          Case{40, false, true}, Case{69, false, true}, Case{70, true, false}}) {
        setAge(c.age);
        Rischio_Cardio form(state);
        open(form, [&] {
            typeRisk("140", "220", "50");
            for (const PromptButton answer : {PromptButton::No, PromptButton::Yes}) {
                const auto before = prompts.boxes.size();
                if (c.asks)
                    prompts.queue(answer);
                click("Button2_0");
                EXPECT_EQ(prompts.boxes.size() - before, c.asks ? 1 : 0) << c.age;
                if (c.asks) {
                    EXPECT_EQ(prompts.last().toStdString(), question(c.age));
                }
                EXPECT_NE(text("SSPanel1"), "") << "computed in either case";
                EXPECT_EQ(enabled("Button2_1"), !c.asks || answer == PromptButton::Yes) << c.age;
                EXPECT_EQ(text("SSPanel2"), c.hasBand ? "Carta del rischio:  III  (10%-15%)" : "") << c.age;
            }
        });
    }
}

TEST_F(EvaluationFormsTest, RegionWithAReferenceDayAsksByTheAgeOnIt)
{
    addChart();
    state.doctor.region = "16";
    struct Case {
        const char *birth;
        const char *label;
        int asked; // 0: no question
    };
    for (const Case &c :
         {Case{"#01/09/1973#", "35 anni al 9/1/08", 0}, Case{"#01/10/1973#", "34 anni al 9/1/08", 34},
          Case{"#01/10/1938#", "69 anni al 9/1/08", 0}, Case{"#01/09/1938#", "70 anni al 9/1/08", 70},
          Case{"#01/01/2020#", "0 anni al 9/1/08", -1}}) {
        execute(QStringLiteral("UPDATE archivio SET Data_Nasc = %1 WHERE cod_paz = 17").arg(c.birth));
        Rischio_Cardio form(state);
        open(form, [&] {
            EXPECT_EQ(text("Label2_1"), c.label);
            EXPECT_TRUE(control<QLabel>("Label2_1")->isVisible());
            typeRisk("140", "220", "50");
            if (c.asked != 0)
                prompts.queue(PromptButton::Yes);
            click("Button2_0");
            if (c.asked != 0) {
                EXPECT_EQ(prompts.last().toStdString(), question(std::max(0, c.asked)));
            }
        });
    }
}

TEST_F(EvaluationFormsTest, RiskOfAPatientWithoutSexOrAge)
{
    addChart();
    for (const char *birth : {"Null", "#01/01/2030#"}) {
        execute(
            QStringLiteral("UPDATE archivio SET sesso = Null, Data_Nasc = %1 WHERE cod_paz = 17").arg(birth));
        execute("DELETE * FROM Rischio_Cardio");
        Rischio_Cardio form(state);
        open(form, [&] {
            EXPECT_EQ(text("lblEta") + text("lblSesso"), "");
            typeRisk("140", "220", "50");
            prompts.queue(PromptButton::Yes);
            click("Button2_0");
            EXPECT_EQ(prompts.last().toStdString(), question(0));
            EXPECT_EQ(text("SSPanel1"), "prob. = 0.1%");
            EXPECT_EQ(text("status"),
                      "⚠ Data di nascita mancante o futura: il calcolo usa 0 anni. Sesso non indicato: "
                      "l'equazione usa i coefficienti maschili.");
            click("Button2_1");
            EXPECT_EQ(clinical("SELECT eta, pressione FROM Rischio_Cardio"), QStringList{"Null|140"});
        });
    }
}

TEST_F(EvaluationFormsTest, ChartWithoutARowAndBandThatIsNotClassified)
{
    Rischio_Cardio form(state);
    open(form, [&] {
        typeRisk("140", "220", "50");
        prompts.queue();
        click("Button2_0");
        EXPECT_EQ(prompts.last().toStdString(), "Attenzione!|Errore nelle tabelle!|warning");
        EXPECT_EQ(text("SSPanel1") + text("SSPanel2"), "prob. = 7.4%");
        EXPECT_TRUE(enabled("Button2_1"));
        addChart();
        execute("UPDATE Carta_Rischio SET Livello = 0");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "Carta del rischio:  n.c.  (età < 40 o > 70)");
        EXPECT_FALSE(enabled("Button2_1"));
        execute("DROP TABLE Carta_Rischio");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel1") + text("SSPanel2"), "prob. = 7.4%");
    });
    EXPECT_TRUE(logged().last().startsWith("Clivara.Rischio_Cardio - Error "))
        << logged().last().toStdString();
}

TEST_F(EvaluationFormsTest, SavedRiskIsReloadedChangedAndDeleted)
{
    addChart();
    execute(
        "INSERT INTO Rischio_Cardio VALUES (17, #05/02/2025#, 58, 0.1234, 150, 240, 40, true, true, true)");
    execute("INSERT INTO Rischio_Cardio (cod_paz, Data_Val) VALUES (17, #03/01/2024#)");
    Rischio_Cardio form(state);
    open(form, [&] {
        EXPECT_EQ(history(), (QStringList{"02/05/2025|12.3%", "01/03/2024|"}));
        EXPECT_FALSE(enabled("Button1_1"));
        type("me_hdl", "55");
        select(0);
        EXPECT_EQ(value("MaskEdBox1"), "02/05/2025");
        EXPECT_EQ(value("me_pas") + ' ' + value("me_col") + ' ' + value("me_hdl"), "150 240 55");
        EXPECT_EQ(text("me_hdlSource"), "non di questa rilevazione");
        EXPECT_TRUE(control<QCheckBox>("ChkFumatore")->isChecked());
        EXPECT_TRUE(control<QCheckBox>("ChkDiabetico")->isChecked());
        EXPECT_TRUE(control<QCheckBox>("ChkIpertens")->isChecked());
        EXPECT_EQ(text("SSPanel1"), "prob. = 12.3%");
        EXPECT_FALSE(enabled("Button2_1"));

        // On its date it is replaced, on another it is a new one that must not replace what is there.
        click("Button2_0");
        click("Button2_1");
        EXPECT_EQ(clinical("SELECT hdl, pressione FROM Rischio_Cardio WHERE data_val = #05/02/2025#"),
                  QStringList{"55|150"});
        select(0);
        type("me_hdl", "55");
        click("Button2_0");
        type("MaskEdBox1", "01/03/2024");
        prompts.queue();
        click("Button2_1");
        EXPECT_EQ(history().size(), 2);
        EXPECT_EQ(clinical("SELECT hdl FROM Rischio_Cardio WHERE data_val = #03/01/2024#"),
                  QStringList{"Null"});

        select(1);
        EXPECT_EQ(value("me_pas") + value("me_col"), "");
        EXPECT_EQ(text("SSPanel1"), "prob. = ");
        EXPECT_FALSE(control<QCheckBox>("ChkIpertens")->isChecked());

        prompts.queue(PromptButton::No);
        click("Button1_1");
        EXPECT_EQ(prompts.last().toStdString(),
                  "Attenzione!|Confermi l'eliminazione della rilevazione selezionata?|question");
        EXPECT_EQ(history().size(), 2);
        prompts.queue(PromptButton::Yes);
        click("Button1_1");
        EXPECT_EQ(history().size(), 1);
        EXPECT_EQ(clinical("SELECT data_val FROM Rischio_Cardio"), QStringList{"2025-05-02 00:00:00"});
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
        typeRisk("140", "220", "50");
        click("Button2_0");
        // The doctor is told once, on leaving the field, and led back when saving.
        prompts.queue();
        type("MaskEdBox1", "31/04/2026");
        control<QWidget>("me_pas")->setFocus();
        EXPECT_EQ(
            prompts.last().toStdString(),
            "Attenzione!|Il giorno deve essere un numero compreso tra 1 e 30\n\nInserire la data nel formato "
            "GG/MM/AAAA|warning");
        click("Button2_1");
        EXPECT_EQ(value("MaskEdBox1"), "31/04/2026") << "what was typed stays";
        EXPECT_EQ(m_form->focusWidget(), control<QWidget>("MaskEdBox1"));
        EXPECT_EQ(text("status"), "⚠ La data non è valida: correggerla per salvare.");
        EXPECT_EQ(clinical("SELECT * FROM Rischio_Cardio"), QStringList{});

        // Saving from within the field; empty; the day that the check lets pass though the year has none.
        prompts.queue();
        type("MaskEdBox1", "15/13/2026");
        EXPECT_EQ(text("status"), "");
        click("Button2_1");
        prompts.queue();
        type("MaskEdBox1", "");
        click("Button2_1");
        prompts.queue();
        type("MaskEdBox1", "29/02/2025");
        click("Button2_1");
        EXPECT_EQ(prompts.last().toStdString(), "Attenzione!|Data non valida !|warning");
        EXPECT_EQ(clinical("SELECT * FROM Rischio_Cardio"), QStringList{});

        type("MaskEdBox1", "1/2/24");
        click("Button2_1");
        EXPECT_EQ(clinical("SELECT data_val FROM Rischio_Cardio"), QStringList{"2024-02-01 00:00:00"});
    });
}

TEST_F(EvaluationFormsTest, AFailedSaveKeepsWhatWasTyped)
{
    addChart();
    Rischio_Cardio form(state);
    open(form, [&] {
        typeRisk("140", "220", "50");
        click("Button2_0");
        {
            LockHolder other(path("Orvale.sqlite"));
            prompts.queue();
            click("Button2_1");
        }
        EXPECT_EQ(pauses.taken.size(), 19);
        EXPECT_TRUE(prompts.last().startsWith("Attenzione!|Salvataggio non riuscito"))
            << prompts.last().toStdString();
        EXPECT_EQ(value("me_pas"), "140");
        EXPECT_EQ(text("SSPanel1"), "prob. = 7.4%");
        EXPECT_TRUE(enabled("Button2_1"));
        EXPECT_EQ(clinical("SELECT * FROM Rischio_Cardio"), QStringList{});

        LockHolder other(path("Orvale.sqlite"));
        pauses.taken.clear();
        pauses.actAt = 1;
        pauses.during = [&] { other.release(); };
        click("Button2_1");
        EXPECT_EQ(history().size(), 1);
    });
}

TEST_F(EvaluationFormsTest, RemarksStandBesideTheirFields)
{
    addChart();
    addPressure(daysAgo(3), "210", "85");
    addPressure(daysAgo(10), "140", "85");
    addResult("90.14.3", daysAgo(20), "'220'");
    addResult("90.14.1", daysAgo(20), "'50,5'");
    setOfLast("unita_Mis = 'mmol/l'");
    execute("INSERT INTO Rischio_Cardio VALUES (17, #01/01/0202#, 58, 0.1, 150, 240, 40, true, true, true)");
    Rischio_Cardio form(state);
    open(form, [&] {
        EXPECT_EQ(remark("me_pas"), "⚠ Il più recente è fuori dai limiti: 210 mmHg del 18/11/2026.");
        EXPECT_EQ(remark("me_col"), "");
        EXPECT_EQ(remark("me_hdl"), "⚠ «50,5» letto come 50.\n⚠ È in mmol/l, non in mg/dl.");
        EXPECT_EQ(focused(), "me_hdl");
        QTest::keyClick(control("me_hdl"), Qt::Key_Return);
        EXPECT_EQ(text("SSPanel1"), "");
        QTest::keyClick(control("Button2_0"), Qt::Key_Return);
        EXPECT_EQ(text("SSPanel1"), "prob. = 7.4%");

        select(0); // what was stored is not what is proposed
        EXPECT_EQ(remark("me_pas"), "");
        EXPECT_EQ(remark("MaskEdBox1"), "⚠ Anno improbabile: 202.");
        EXPECT_EQ(remark("me_hdl"), "⚠ «50,5» letto come 50.\n⚠ È in mmol/l, non in mg/dl.") << "still there";
        click("Button1_0");
        EXPECT_EQ(remark("me_pas"), "⚠ Il più recente è fuori dai limiti: 210 mmHg del 18/11/2026.");
        EXPECT_EQ(remark("MaskEdBox1"), "");
        EXPECT_EQ(focused(), "me_hdl") << "to be seen again";

        typeRisk("140", "130", "135");
        control("me_pas")->setFocus();
        EXPECT_EQ(remark("me_hdl"), "⚠ L'HDL supera il colesterolo totale (130).");
    });
    state.header.patientCode = 18;
    open(form, [&] { EXPECT_EQ(remark("me_pas") + remark("me_hdl") + remark("MaskEdBox1"), ""); });

    state.header.patientCode = 17;
    SindrMetabolica syndrome(state);
    open(syndrome, [&] {
        typeMetabolic({"9999", "130", "140", "5.5", "50", "1.7"});
        click("Button2_0");
        EXPECT_EQ(remark("me_ca"), "⚠ Improbabile: di solito tra 40 e 200 cm.");
        EXPECT_EQ(remark("me_pad"), "⚠ La diastolica non è minore della sistolica (130).");
        EXPECT_EQ(remark("me_glic"), "⚠ Improbabile: di solito tra 30 e 600 mg/dl.");
        EXPECT_EQ(remark("me_trigl"), "⚠ Improbabile: di solito tra 20 e 2000 mg/dl.");
        EXPECT_TRUE(enabled("Button2_1")) << "nothing is kept from being saved";
        type("me_ca", "96-98");
        expectWarning("Circonferenza addominale in cm: «96-98» non è un numero.", "me_ca");
        EXPECT_FALSE(enabled("Button2_1"));
        addResult("90.27.1", daysAgo(1), "'5.5'");
        type("me_glic", "9");
        click("Button1_0"); // in the middle of typing, as by its mnemonic
        EXPECT_EQ(remark("me_glic"), "⚠ Improbabile: di solito tra 30 e 600 mg/dl.");
    });
}

TEST_F(EvaluationFormsTest, TheAgeAtAnotherDateIsSaid)
{
    addChart();
    struct Case {
        const char *region;
        const char *date;
        const char *risk;
        const char *syndrome;
    };
    const auto thirty = "⚠ Il 01/01/2000 aveva 33 anni: Calcola usa l'età di oggi, 60.";
    for (const Case &c :
         {Case{"03", "01/04/2026", "", ""},
          Case{"03", "01/01/2026", "⚠ Il 01/01/2026 aveva 59 anni: Calcola usa l'età di oggi, 60.",
               "⚠ Il 01/01/2026 aveva 59 anni: Calcola usa l'età di oggi, 60."},
          Case{"03", "01/01/2000",
               "⚠ Il 01/01/2000 aveva 33 anni: Calcola usa l'età di oggi, 60. 33 anni sono fuori dai 35–69 "
               "dell'equazione.",
               thirty},
          // The limits themselves are within.
          Case{"03", "01/01/2001",
               "⚠ Il 01/01/2001 aveva 34 anni: Calcola usa l'età di oggi, 60. 34 anni sono fuori dai 35–69 "
               "dell'equazione.",
               nullptr},
          Case{"03", "01/01/2002",
               "⚠ Il 01/01/2002 aveva 35 anni: Calcola usa l'età di oggi, 60. 35 anni sono fuori dai 40–69 "
               "della carta.",
               nullptr},
          Case{"03", "01/01/2007", "⚠ Il 01/01/2007 aveva 40 anni: Calcola usa l'età di oggi, 60.", nullptr},
          Case{"16", "01/01/1992", nullptr, "⚠ Il 01/01/1992 aveva 25 anni: Calcola usa l'età di oggi, 60."},
          Case{"16", "01/01/2000",
               "⚠ Il 01/01/2000 aveva 33 anni: Calcola usa l'età di oggi, 60. 33 anni sono fuori dai 40–69 "
               "della carta.",
               thirty},
          Case{
              "16", "01/01/1990", nullptr,
              "⚠ Il 01/01/1990 aveva 23 anni: Calcola usa l'età di oggi, 60. 23 anni sono fuori dai 25–70 in "
              "cui vale "
              "la diagnosi in questa regione."},
          Case{"03", "01/01/2090",
               "⚠ La data è futura.\n⚠ Il 01/01/2090 avrà 123 anni: Calcola usa l'età di oggi, 60. 123 anni "
               "sono fuori "
               "dai 35–69 dell'equazione.",
               nullptr}}) {
        state.doctor.region = c.region;
        Rischio_Cardio risk(state);
        SindrMetabolica syndrome(state);
        const auto expectRemark = [&](ChartForm &form, const char *wanted) {
            open(form, [&] {
                type("MaskEdBox1", c.date);
                control("me_pas")->setFocus();
                if (wanted) {
                    EXPECT_EQ(remark("MaskEdBox1"), wanted) << c.region;
                }
            });
        };
        expectRemark(risk, c.risk);
        expectRemark(syndrome, c.syndrome);
    }
}

TEST_F(EvaluationFormsTest, SyndromeWithoutABirthDateSaysSo)
{
    execute("UPDATE archivio SET Data_Nasc = Null, sesso = 'F'");
    for (const auto &[region, wanted] :
         {std::pair("03", "Data di nascita mancante o futura: il calcolo usa 0 anni."),
          std::pair(
              "16",
              "Data di nascita mancante o futura: il calcolo usa 0 anni, fuori dai 25–70 in cui vale la "
              "diagnosi in questa regione.")}) {
        state.doctor.region = region;
        SindrMetabolica form(state);
        open(form, [&, expected = "⚠ " + std::string(wanted)] {
            EXPECT_EQ(remark("lblEta"), expected) << "before anything is computed";
            typeMetabolic({"102", "130", "85", "110", "39", "151"});
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
        type("me_ca", "9999");
        type("me_pas", "300");
        type("me_pad", "301");
        type("MaskEdBox1", "01/01/2090");
        control("me_pad")->setFocus();
        QApplication::processEvents();
        EXPECT_GT(form.height(), 600) << "as large as all that is to be read";
        form.setMaximumHeight(580); // of 768 pixels at 125 %, without the window's frame
        QApplication::processEvents();
        const auto fits = [&](const char *name) {
            const QWidget *const button = control(name);
            return form.rect().contains(QRect(button->mapTo(&form, QPoint()), button->size()));
        };
        EXPECT_TRUE(fits("Button2_0") && fits("esci"));
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
    open(risk, [&] {
        typeRisk("140", "220", "50");
        click("Button2_0");
        click("esci");
    });
    EXPECT_EQ(handedBack(), "pctRischio 0.07");
    open(syndrome, [&] {
        typeMetabolic({"102", "130", "85", "110", "39", "151"});
        click("Button2_0");
        click("esci");
    });
    EXPECT_EQ(handedBack(), "valutazione 1.00");

    state.header.patientCode = 18;
    open(risk, [&] { click("esci"); });
    EXPECT_EQ(handedBack(), "pctRischio 0.00");
    open(syndrome, [&] { click("esci"); });
    EXPECT_EQ(handedBack(), "valutazione 0.00");
}

TEST_F(EvaluationFormsTest, WhatWasChosenIsForgottenByANewEvaluationAndANewPatient)
{
    addChart();
    execute("INSERT INTO archivio (cod_paz, sesso, Data_Nasc) VALUES (18, 'F', #03/12/1970#)");
    for (const char *patient : {"17", "18"})
        execute(QStringLiteral("INSERT INTO Rischio_Cardio VALUES (%1, #05/02/2025#, 58, 0.1, 150, 240, 40, "
                               "true, true, true)")
                    .arg(patient));
    const auto stored = [this] {
        return clinical("SELECT pressione FROM Rischio_Cardio ORDER BY cod_paz").join(' ').toStdString();
    };
    Rischio_Cardio form(state);
    const auto tryToSaveOnTheSameDate = [&] {
        typeRisk("120", "220", "50");
        type("MaskEdBox1", "02/05/2025");
        click("Button2_0");
        prompts.queue();
        click("Button2_1");
        EXPECT_EQ(prompts.last().toStdString(),
                  "Rischio Cardiovascolare|Esiste già una rilevazione effettuata nella stessa data.|none");
        EXPECT_EQ(stored(), "150 150");
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
    open(form, [&] {
        EXPECT_TRUE(control<QCheckBox>("ChkDiabetico")->isChecked()
                    && control<QCheckBox>("ChkFumatore")->isChecked());
    });
    state.header.patientCode = 18;
    for (const char *table : {"cronpat", "ESAME_OB", "esa_ob", "riepil"})
        execute(QStringLiteral("DROP TABLE ") + QLatin1String(table));
    open(form, [&] {
        EXPECT_FALSE(control<QCheckBox>("ChkDiabetico")->isChecked()
                     || control<QCheckBox>("ChkFumatore")->isChecked());
        for (const char *source :
             {"ChkDiabeticoSource", "ChkFumatoreSource", "me_pasSource", "me_colSource", "me_hdlSource"})
            EXPECT_EQ(text(source), "non è stato possibile leggere") << source;
    });
}

TEST_F(EvaluationFormsTest, WhatAnotherWorkstationSavedIsNotDeletedUnseen)
{
    execute("INSERT INTO SindrMetabolica (cod_paz, Data_Val, glicemia) VALUES (17, #03/01/2024#, 99)");
    const auto left = [this] { return clinical("SELECT glicemia FROM SindrMetabolica").join(u' '); };
    SindrMetabolica form(state);
    open(form, [&] {
        select(0);
        execute("UPDATE SindrMetabolica SET glicemia = 130");
        prompts.queue(PromptButton::Yes);
        prompts.queue(PromptButton::No);
        click("Button1_1");
        EXPECT_TRUE(prompts.last().startsWith("Attenzione!|La rilevazione del 01/03/2024 è stata salvata"))
            << qPrintable(prompts.last());
        EXPECT_EQ(left(), "130");
        EXPECT_EQ(value("me_glic"), "130") << "now it is seen";
        execute("UPDATE SindrMetabolica SET glicemia = 131");
        prompts.queue(PromptButton::Yes);
        prompts.queue(PromptButton::Yes);
        click("Button1_1");
        EXPECT_EQ(left(), "");
        EXPECT_EQ(history(), QStringList{});
    });
}

TEST_F(EvaluationFormsTest, WithoutItsTablesTheFormIsStillUsable)
{
    for (const char *table : {"Rischio_Cardio", "cronpat", "ESAME_OB", "esa_ob", "riepil", "archivio"})
        execute(QStringLiteral("DROP TABLE ") + table);
    Rischio_Cardio form(state);
    open(form, [&] {
        EXPECT_EQ(history(), QStringList{});
        EXPECT_EQ(control<HistoryPlot>("plot")->accessibleDescription(),
                  "Non è stato possibile leggere\nle rilevazioni salvate");
        typeRisk("140", "220", "50");
        prompts.queue(PromptButton::Yes);
        click("Button2_0");
        EXPECT_EQ(text("SSPanel1"), "prob. = 0.1%");
        prompts.queue();
        click("Button2_1");
        EXPECT_TRUE(prompts.last().contains("Salvataggio non riuscito"));
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
        QTest::keyClick(plot, Qt::Key_Left);
        EXPECT_EQ(text("plotPoint"), "01/01/2024: 7.4%");
        EXPECT_EQ(plot->accessibleDescription(), "01/01/2024: 7.4%");
        QTest::keyClick(plot, Qt::Key_Home);
        QTest::keyClick(plot, Qt::Key_Left);
        EXPECT_EQ(text("plotPoint"), "01/01/2022: 5.0%");
        QTest::keyClick(plot, Qt::Key_End);
        QTest::keyClick(plot, Qt::Key_Right);
        EXPECT_EQ(text("plotPoint"), "01/01/2026: 20.0%");
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
        EXPECT_EQ(value("me_ca") + ' ' + value("me_pas") + ' ' + value("me_pad") + ' ' + value("me_glic")
                      + ' ' + value("me_hdl") + ' ' + value("me_trigl"),
                  "101.5 130 84 105 40 149");
        EXPECT_EQ(text("me_triglSource"), "esame del 05/05/2026");
        EXPECT_EQ(text("me_caSource"), "misurata il 22/10/2026");
        EXPECT_EQ(text("me_caThreshold"), "▲ ≥ 94");
        EXPECT_EQ(text("me_padThreshold"), "soglia ≥ 85");
        EXPECT_EQ(text("me_hdlThreshold"), "▲ ≤ 40");
        EXPECT_EQ(text("hint"),
                  "▲ Valori oltre le soglie regionali: 4 (regione 03, in vigore dal 01/04/2010).");

        click("Button2_0"); // the waist of 101.5 counts as 102
        EXPECT_EQ(text("SSPanel1"), "Sindrome Metabolica NON diagnosticata.");
        EXPECT_EQ(text("SSPanel2"), "Criteri presenti: 2 (circonferenza addominale, pressione sistolica).");
        type("me_pad", "85");
        EXPECT_EQ(text("hint"),
                  "▲ Valori oltre le soglie regionali: 5 (regione 03, in vigore dal 01/04/2010).");
        EXPECT_FALSE(enabled("Button2_1"));
        click("Button2_0");
        EXPECT_EQ(text("SSPanel1"), "Diagnosticata Sindrome Metabolica.");
        click("Button2_1");
        EXPECT_EQ(clinical("SELECT * FROM SindrMetabolica"),
                  QStringList{"17|2026-11-21 00:00:00|1|101.5|130|85|105|149"});
        EXPECT_EQ(history(), QStringList{"21/11/2026|SI"});
        EXPECT_EQ(value("me_pad"), "85") << "what was saved stays to be seen";

        // A second one of the day takes its place.
        type("me_trigl", "88,5");
        type("me_pad", "70");
        click("Button2_0");
        click("Button2_1");
        EXPECT_EQ(clinical("SELECT * FROM SindrMetabolica"),
                  QStringList{"17|2026-11-21 00:00:00|0|101.5|130|70|105|88.5"});
        EXPECT_EQ(history(), QStringList{"21/11/2026|NO"});
        click("esci");
    });
    EXPECT_EQ(handedBack(), "valutazione 0.00");
    EXPECT_EQ(settings.text("AGGIORNA_DIARIO"), "PREVENZIONE");
}

TEST_F(EvaluationFormsTest, MetabolicSyndromeNeedsEveryValue)
{
    SindrMetabolica form(state);
    open(form, [&] {
        EXPECT_EQ(text("hint"), "Soglie regionali non disponibili.");
        const std::tuple<const char *, const char *, const char *> inputs[]{
            {"me_ca", "102", "Inserire il valore Circonferenza Addominale!"},
            {"me_pas", "130", "Inserire il valore della pressione arteriosa sistolica!"},
            {"me_pad", "85", "Inserire il valore della pressione arteriosa diastolica!"},
            {"me_glic", "100", "Inserire il valore della glicemia (a digiuno)!"},
            {"me_hdl", "50", "Inserire il valore della HDL-colesterolemia!"},
            {"me_trigl", "150", "Inserire il valore dei trigliceridi!"}};
        for (const auto &[field, typed, warning] : inputs) {
            expectWarning(warning, field);
            type(field, "0");
            expectWarning(warning, field);
            EXPECT_FALSE(enabled("Button2_1"));
            type(field, typed);
        }
        click("Button2_0");
        EXPECT_EQ(text("SSPanel1"), "Diagnosticata Sindrome Metabolica.");
        click("esci");
    });
    EXPECT_EQ(handedBack(), "valutazione 1.00");
}

TEST_F(EvaluationFormsTest, MetabolicVerdictByRegionAgeAndSex)
{
    struct Case {
        const char *region;
        int age;
        const char *sex;
        const char *verdict;
    };
    for (const Case &c : {Case{"16", 24, "M", "NON"}, Case{"16", 25, "M", "Diagnosticata"},
                          Case{"16", 70, "M", "Diagnosticata"}, Case{"16", 71, "M", "NON"},
                          Case{"03", 71, "M", "Diagnosticata"}, Case{"03", 24, "", "Diagnosticata"}}) {
        state.doctor.region = c.region;
        setAge(c.age);
        execute(QStringLiteral("UPDATE archivio SET sesso = '%1'").arg(c.sex));
        SindrMetabolica form(state);
        open(form, [&] {
            typeMetabolic({"102", "130", "85", "110", "39", "151"});
            click("Button2_0");
            EXPECT_NE(text("SSPanel1").find(c.verdict), std::string::npos) << c.region << ' ' << c.age;
            EXPECT_TRUE(enabled("Button2_1"));
            EXPECT_EQ(text("status"), *c.sex ? "" : "⚠ Sesso non indicato: valgono le soglie femminili.");
        });
    }
}

TEST_F(EvaluationFormsTest, SavedMetabolicEvaluationIsReloadedAndDeleted)
{
    execute("INSERT INTO SindrMetabolica VALUES (17, #05/02/2025#, 1, 103.5, 140, 90, 120, 160)");
    execute("INSERT INTO SindrMetabolica (cod_paz, Data_Val, glicemia) VALUES (17, #03/01/2024#, 99)");
    SindrMetabolica form(state);
    open(form, [&] {
        EXPECT_EQ(history(), (QStringList{"02/05/2025|SI", "01/03/2024|NO"}));
        type("me_hdl", "45");
        select(0);
        EXPECT_EQ(value("me_ca") + ' ' + value("me_pas") + ' ' + value("me_pad") + ' ' + value("me_glic")
                      + ' ' + value("me_hdl") + ' ' + value("me_trigl"),
                  "103.5 140 90 120 45 160");
        EXPECT_EQ(text("SSPanel1"), "Diagnosticata Sindrome Metabolica.");
        select(1);
        EXPECT_EQ(value("me_ca") + value("me_pas") + value("me_pad") + value("me_trigl") + value("me_glic"),
                  "99");
        EXPECT_EQ(text("SSPanel1"), "Sindrome Metabolica NON diagnosticata.");
        prompts.queue(PromptButton::Yes);
        click("Button1_1");
        EXPECT_EQ(history(), QStringList{"02/05/2025|SI"});
        select(0);
        click("Button1_0");
        EXPECT_EQ(value("me_ca") + value("me_hdl") + text("SSPanel1"), "");
        EXPECT_FALSE(enabled("Button1_1"));

        // Tab leads into the list without loading anything; the arrow does, and Del asks.
        auto *grid = control<QTableView>("Grid1");
        type("me_ca", "99");
        grid->setFocus(Qt::TabFocusReason);
        EXPECT_EQ(value("me_ca"), "99");
        QTest::keyClick(grid, Qt::Key_Down);
        EXPECT_EQ(value("me_ca"), "103.5");
        prompts.queue(PromptButton::No);
        QTest::keyClick(grid, Qt::Key_Delete);
        EXPECT_EQ(prompts.boxes.size(), 2);
    });
}

TEST_F(EvaluationFormsTest, WhatAnotherWorkstationSavedIsShownBeforeItIsReplaced)
{
    execute("INSERT INTO SindrMetabolica VALUES (17, #05/02/2025#, 1, 103.5, 140, 90, 120, 160)");
    TestConflicts conflicts(state);
    SindrMetabolica form(state);
    const auto glucose = [&] {
        return clinical("SELECT glicemia FROM SindrMetabolica ORDER BY Data_Val DESC")
            .join(' ')
            .toStdString();
    };
    const auto computeAndSave = [&] {
        click("Button2_0");
        click("Button2_1");
    };
    open(form, [&] {
        type("me_hdl", "45");
        select(0);
        execute("UPDATE SindrMetabolica SET glicemia = 121");
        type("me_glic", "119");
        conflicts.queue(ConflictChoice::BackToEditing);
        computeAndSave();
        EXPECT_EQ(conflicts.told,
                  "La rilevazione del 02/05/2025 è stata salvata da un'altra postazione mentre era in questa "
                  "finestra. Chi e quando non è registrato.\nGlicemia|119|121");
        EXPECT_EQ(value("me_glic"), "119");
        EXPECT_EQ(glucose(), "121");
        conflicts.queue(ConflictChoice::Theirs);
        computeAndSave();
        EXPECT_EQ(value("me_glic"), "121") << "shown as it is stored";
        type("me_glic", "118");
        computeAndSave();
        EXPECT_EQ(glucose(), "118") << "what was seen may be replaced";

        // A new one of today, which another workstation has saved since the form was opened.
        click("Button1_0");
        typeMetabolic({"96", "135", "85", "98", "48", "140"});
        execute("INSERT INTO SindrMetabolica VALUES (17, #11/21/2026#, 1, 96, 135, 85, 99, 140)");
        conflicts.queue(ConflictChoice::Mine);
        computeAndSave();
        EXPECT_NE(conflicts.told.find("Glicemia|98|99"), std::string::npos) << conflicts.told;
        EXPECT_EQ(glucose(), "98 118");

        // Deleted meanwhile: it comes back only when the doctor wants it.
        select(1);
        execute("DELETE FROM SindrMetabolica WHERE Data_Val = #05/02/2025#");
        prompts.queue(PromptButton::No);
        computeAndSave();
        EXPECT_EQ(glucose(), "98");
        prompts.queue(PromptButton::Yes);
        computeAndSave();
        EXPECT_EQ(glucose(), "98 118");
    });
}

} // namespace
} // namespace clivara
