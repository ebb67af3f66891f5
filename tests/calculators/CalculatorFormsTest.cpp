// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalcCockCroft.h"
#include "calculators/CalcFiltGlom.h"
#include "calculators/CalcLDL.h"
#include "calculators/CalculatorFixture.h"
#include "controls/MaskedDateEdit.h"
#include "controls/NumericEdit.h"

#include <QCheckBox>
#include <QPushButton>

namespace clivara {
namespace {

using CalculatorFormsTest = CalculatorFixture;

TEST_F(CalculatorFormsTest, ClearanceFromProposedValues)
{
    addExamination("A", "#11/03/2026#", "'170070.0'", "1");
    addResult("90.16.04", daysAgo(30), "'1.00'");
    CalcCockCroft form(state);
    open(form, [&] {
        EXPECT_EQ(values("lblSesso lblEta MaskEdBox1 me_col me_hdl me_colSource me_hdlSource SSPanel2"),
                  "M|60|21/11/2026|070.0|1|rilevato il 03/11/2026|esame del 22/10/2026|");

        QTest::keyClick(&form, Qt::Key_Return); // the default button
        EXPECT_EQ(values("SSPanel2 SSPanel1"), "Formula di Cockcroft: VFG = 77.78 ml/min|"
                                               "Paziente di 60 anni: Funzione renale attesa = 80 ml");
        EXPECT_EQ(colour("SSPanel1"), "#c00000");
        EXPECT_TRUE(enabled("SSPanel2"));

        type("me_hdl", "2");
        EXPECT_EQ(text("me_hdlSource"), "") << "no longer the proposed value";
        EXPECT_FALSE(enabled("SSPanel2")) << "the line is of other values";
        QTest::keyClick(&form, Qt::Key_Escape);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(handedBack(), "valutazione 77.78");
    EXPECT_EQ(settings.text("AGGIORNA_DIARIO"), "PREVENZIONE");
}

TEST_F(CalculatorFormsTest, AFormOpenedAgainIsANewOne)
{
    addResult("90.16.04", daysAgo(30), "'1.1'");
    CalcCockCroft form(state);
    open(form, [&] {
        type("me_col", "70");
        click("Button2_0");
        form.close();
    });
    EXPECT_EQ(handedBack(), "valutazione 70.71");
    state.header.patientCode = 18; // not in the registry
    open(form, [&] {
        EXPECT_EQ(values("lblSesso lblEta me_col me_hdl SSPanel2 SSPanel1"), "|||||");
        typeEach("me_col me_hdl", "70 1");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "Formula di Cockcroft: VFG = 0.00 ml/min")
            << "without a sex nothing is computed";
        form.close();
    });
    EXPECT_EQ(handedBack(), "valutazione 0.00");
}

TEST_F(CalculatorFormsTest, EnterComputesOnlyWithWhatWasSeen)
{
    struct Case {
        const char *stored;
        const char *unit;
        const char *remark;
        const char *result;
    };
    addExamination("A", daysAgo(20), "'170070.0'", "1");
    for (const Case &c :
         {Case{"1,4", "mg/dl", "⚠ «1,4» letto come 1.", "Formula di Cockcroft: VFG = 77.78 ml/min"},
          Case{"2", "µmol/l", "⚠ È in µmol/l, non in mg/dl.", "Formula di Cockcroft: VFG = 38.89 ml/min"},
          Case{"<0.5", "mg/dl", "⚠ «<0.5» letto come 0.", nullptr},
          Case{"emolizzato", "", "⚠ «emolizzato» letto come 0.", nullptr}}) {
        addResult("90.16.04", daysAgo(1), ("'" + std::string(c.stored) + "'").c_str());
        setOfLast(QStringLiteral("unita_Mis = '%1'").arg(c.unit));
        CalcCockCroft form(state);
        open(form, [&] {
            EXPECT_EQ(remark("me_hdl"), c.remark);
            EXPECT_EQ(remark("me_col"), "");
            EXPECT_EQ(text("me_hdlSource"), "esame del 20/11/2026");
            EXPECT_EQ(focused(), "me_hdl");
            QTest::keyClick(control("me_hdl"), Qt::Key_Return);
            EXPECT_EQ(text("SSPanel2"), "") << "the first Enter";
            EXPECT_EQ(focused(), "Button2_0");
            if (!c.result)
                prompts.queue();
            QTest::keyClick(control("Button2_0"), Qt::Key_Return);
            EXPECT_EQ(text("SSPanel2"), c.result ? c.result : "") << "the second";
            EXPECT_EQ(remark("me_hdl"), c.remark) << "what was computed with is still not what was recorded";
            type("me_hdl", "1");
            EXPECT_EQ(remark("me_hdl"), "");
        });
    }
    EXPECT_EQ(prompts.boxes.size(), 2);
}

TEST_F(CalculatorFormsTest, EachValueIsLedToBeforeEnterComputes)
{
    addResult("90.43.2", daysAgo(10), "'150 mg'");
    addResult("90.14.1", daysAgo(10), "'50,5'");
    addResult("90.14.3", daysAgo(10), "'200'");
    CalcLDL form(state);
    const auto pressEnter = [&] { QTest::keyClick(form.focusWidget(), Qt::Key_Return); };
    open(form, [&] {
        EXPECT_EQ(focused(), "me_hdl");
        control("MaskEdBox1")->setFocus(Qt::TabFocusReason); // left: seen
        pressEnter();
        EXPECT_EQ(focused(), "me_trigl");
        pressEnter();
        EXPECT_EQ(text("SSPanel2"), "");
        pressEnter();
        EXPECT_EQ(text("SSPanel2"), "Colesterolo LDL: 120.0 mg/dl");
    });
    open(form, [&] { // every opening anew, the button's mnemonic like Enter
        QShortcutEvent mnemonic(QKeySequence("Alt+C"), 0);
        for (const char *next : {"me_trigl", "Button2_0"}) {
            QApplication::sendEvent(control("Button2_0"), &mnemonic);
            EXPECT_EQ(focused(), next);
        }
        EXPECT_EQ(text("SSPanel2"), "");
    });
    open(form, [&] { // who changes a value has seen it; the mouse computes at once
        type("me_hdl", "50");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "Colesterolo LDL: 120.0 mg/dl");
    });
}

TEST_F(CalculatorFormsTest, RemarksGoWithTheirPatient)
{
    execute("INSERT INTO archivio (cod_paz, sesso, Data_Nasc) VALUES (18, 'F', #03/12/1970#)");
    addExamination("A", "#03/01/2008#", "'170 72,5'", "1");
    addResult("90.16.4", daysAgo(2), "'1.35'"); // the other spelling alone
    setOfLast("unita_Mis = 'mg/dl'");
    CalcCockCroft form(state);
    open(form, [&] {
        EXPECT_EQ(value("me_col"), " 72,5");
        EXPECT_EQ(remark("me_col"), "⚠ «72,5» letto come 72.\n⚠ È di 18 anni fa.");
        EXPECT_EQ(value("me_hdl"), "");
        EXPECT_EQ(remark("me_hdl"), "⚠ Con il codice 90.16.4 c'è: 1.35 mg/dl del 19/11/2026.");
        EXPECT_EQ(focused(), "me_col");
    });
    state.header.patientCode = 18;
    execute("DROP TABLE ESAME_OB");
    open(form, [&] {
        EXPECT_EQ(remark("me_col") + remark("me_hdl") + value("me_col"), "");
        EXPECT_EQ(text("me_colSource"), "non è stato possibile leggere");
        click("Button2_2");
        EXPECT_EQ(text("me_colSource"), "");
    });
    state.header.patientCode = 17;
    addResult("90.16.04", daysAgo(5), "'1.2'");
    addResult("90.16.04", QDate(2027, 3, 1).toString(u"'#'MM'/'dd'/'yyyy'#'"), "'1.1'");
    open(form, [&] {
        EXPECT_EQ(value("me_hdl"), "1.1") << "a future result is proposed";
        EXPECT_EQ(remark("me_hdl"), "⚠ La data è futura: 01/03/2027.");
        click("Button2_1"); // zero in every field
        EXPECT_EQ(remark("me_hdl"), "");
    });
}

TEST_F(CalculatorFormsTest, UnlikelyValuesAreRemarkedAndComputed)
{
    CalcCockCroft clearance(state);
    open(clearance, [&] {
        type("me_col", "7");
        EXPECT_EQ(remark("me_col"), "") << "may become 70";
        type("me_hdl", "0.001");
        EXPECT_EQ(remark("me_col"), "⚠ Improbabile: di solito tra 30 e 300 kg.");
        QTest::keyClick(control("me_hdl"), Qt::Key_Return);
        EXPECT_EQ(remark("me_hdl"), "⚠ Improbabile: di solito tra 0.2 e 20 mg/dl.");
        EXPECT_EQ(text("SSPanel2"), "Formula di Cockcroft: VFG = 7777.78 ml/min");
        type("me_hdl", "140/90");
        expectWarning("Creatininemia in mg/dl: «140/90» non è un numero.", "me_hdl");
        EXPECT_EQ(remark("me_hdl"), "⚠ «140/90» non è un numero.");
        EXPECT_FALSE(enabled("SSPanel2"));
    });
    execute("UPDATE archivio SET Data_Nasc = #03/12/2022#");
    open(clearance, [&] { // a child
        type("me_col", "17");
        control("me_hdl")->setFocus();
        EXPECT_EQ(remark("me_col"), "");
        type("me_hdl", "1"); // and closed in the middle of it
    });
    for (const auto &[birth, remarked] :
         {std::pair("#11/22/2008#", ""), // 17 years and all its days
          std::pair("#11/21/2008#", "⚠ Improbabile: di solito tra 30 e 300 kg.")}) {
        execute(QStringLiteral("UPDATE archivio SET Data_Nasc = ") + birth);
        open(clearance, [&] {
            type("me_col", "17");
            control("me_hdl")->setFocus();
            EXPECT_EQ(remark("me_col"), remarked) << birth;
        });
    }
    addResult("90.16.04", daysAgo(1), "'88.4'");
    open(clearance, [&] {
        EXPECT_EQ(remark("me_hdl"), "⚠ Improbabile: di solito tra 0.2 e 20 mg/dl.") << "proposed, not typed";
    });
    CalcLDL ldl(state);
    open(ldl, [&] {
        typeEach("me_hdl me_trigl me_col", "60 401 50");
        click("Button2_0");
        expectRemarks({{"me_hdl", "⚠ L'HDL supera il colesterolo totale (50)."},
                       {"me_trigl", "⚠ Oltre 400 mg/dl la formula di Friedewald non è valida."},
                       {"me_col", "⚠ Improbabile: di solito tra 60 e 600 mg/dl."}});
        EXPECT_EQ(text("SSPanel2"), "Colesterolo LDL: -90.2 mg/dl");
        type("me_col", "200");
        control("me_hdl")->setFocus();
        EXPECT_EQ(remark("me_hdl"), "") << "by the other value";
    });
}

TEST_F(CalculatorFormsTest, WithoutSexOrBirthTheFormSaysWhatItDoes)
{
    const auto birthless = std::string("⚠ Data di nascita mancante o futura: ");
    const auto sexless = std::string("⚠ Sesso non indicato: ");
    CalcCockCroft clearance(state);
    CalcLDL ldl(state);
    CalcFiltGlom filtration(state);
    const auto remarks = [&](ChartForm &form) {
        std::string both;
        open(form, [&] { both = remark("lblSesso") + '|' + remark("lblEta"); });
        return both;
    };
    for (ChartForm *form : {static_cast<ChartForm *>(&clearance), static_cast<ChartForm *>(&ldl),
                            static_cast<ChartForm *>(&filtration)})
        EXPECT_EQ(remarks(*form), "|");
    for (const char *birth : {"Null", "#01/01/2030#"}) {
        execute(QStringLiteral("UPDATE archivio SET sesso = 'X', Data_Nasc = ") + birth);
        EXPECT_EQ(remarks(clearance), sexless + "la clearance non viene calcolata.|" + birthless
                                          + "il calcolo usa 0 anni e il risultato è troppo alto.");
        EXPECT_EQ(remarks(ldl), sexless + "l'indice di rischio non ha una soglia.|")
            << "the age does not matter";
        EXPECT_EQ(remarks(filtration), sexless + "il calcolo è quello di un uomo.|" + birthless
                                           + "il filtrato non viene calcolato.");
    }
    execute("UPDATE archivio SET sesso = 'F', Data_Nasc = #01/01/1890#");
    EXPECT_EQ(remarks(clearance), "|⚠ Età improbabile: verificare la data di nascita.");
    execute("DROP TABLE archivio");
    EXPECT_EQ(remarks(filtration),
              "⚠ Non è stato possibile leggere il sesso: il calcolo è quello di un uomo.|⚠ Non "
              "è stato possibile leggere la data di nascita: il filtrato non viene calcolato.");
}

TEST_F(CalculatorFormsTest, TheAgeAtAnotherDateIsSaid)
{
    CalcCockCroft clearance(state);
    open(clearance, [&] {
        EXPECT_EQ(remark("MaskEdBox1"), "");
        type("MaskEdBox1", "1/3/2006");
        control("me_col")->setFocus();
        EXPECT_EQ(remark("MaskEdBox1"),
                  "⚠ Il 01/03/2006 aveva 39 anni: Calcola usa l'età di oggi, 60. 39 anni sono "
                  "sotto i 40 della funzione attesa.");
        type("MaskEdBox1", "01/02/20");
        EXPECT_EQ(remark("MaskEdBox1"), "") << "may become 2026";
        click("Button2_2");
        EXPECT_EQ(remark("MaskEdBox1"), "");
        type("MaskEdBox1", "01/01/0202");
        EXPECT_EQ(remark("MaskEdBox1"), "⚠ Anno improbabile: 202.");
    });
    execute("INSERT INTO archivio (cod_paz, sesso, Data_Nasc) VALUES (18, 'F', #01/01/2030#)");
    for (const auto &[patient, wanted] :
         {std::pair(18, "⚠ La data precede la nascita (01/01/2030)."), std::pair(17, "")}) {
        state.header.patientCode = patient; // today's date for both
        open(clearance, [&, expected = wanted] { EXPECT_EQ(remark("MaskEdBox1"), expected); });
    }
    CalcLDL ldl(state);
    open(ldl, [&] {
        type("MaskEdBox1", "01/03/2006");
        EXPECT_EQ(remark("MaskEdBox1"), "") << "no age in it";
    });
}

TEST_F(CalculatorFormsTest, LdlAndRatio)
{
    CalcLDL form(state);
    const std::pair<const char *, const char *> missing[]{
        {"me_col", "Inserire il valore del colesterolo totale!"},
        {"me_hdl", "Inserire il valore della HDL-colesterolemia!"},
        {"me_trigl", "Inserire il valore dei trigliceridi!"}};
    open(form, [&] {
        click("Button2_1"); // zeroes
        for (const auto &[field, warning] : missing) {
            expectWarning(warning, field);
            type(field, "50");
        }
        for (const auto &[total, isHigh] : {std::pair("225", false), std::pair("250", true)}) {
            type("me_col", total);
            click("Button2_0");
            EXPECT_EQ(control("warningIcon")->isVisible(), isHigh) << "readable without colour";
        }
        form.close();
    });
    EXPECT_EQ(handedBack(), "valutazione 190.00") << "the last computed";
}

TEST_F(CalculatorFormsTest, FiltrationRate)
{
    addResult("90.16.4", daysAgo(10), "'1.0'");
    addResult("90.16.04", daysAgo(5), "'9'"); // the clearance's code
    CalcFiltGlom form(state);
    open(form, [&] {
        EXPECT_EQ(value("me_hdl"), "1");
        click("Button2_0"); // no weight, no warning
        control<QCheckBox>("Check1")->click();
        EXPECT_FALSE(enabled("SSPanel2"));
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "sMDRD = 98.19 ml/min per 1.73 m²");
        type("me_hdl", "-1"); // no real power: the line is not updated
        click("Button2_0");
        EXPECT_FALSE(enabled("SSPanel2"));
        type("me_hdl", "");
        expectWarning("Inserire il valore della creatininemia!", "me_hdl");
        form.close();
    });
    EXPECT_EQ(handedBack(), "valutazione 98.19");
    execute("UPDATE archivio SET Data_Nasc = Null");
    open(form, [&] {
        EXPECT_EQ(values("Check1 lblEta"), "|") << "of the patient before";
        click("Button2_0");
        form.close();
    });
    EXPECT_EQ(handedBack(), "valutazione 0.00");
}

TEST_F(CalculatorFormsTest, DateFieldGoesBackToItsLastDate)
{
    CalcLDL form(state);
    open(form, [&] {
        for (const char *typed : {"1/2/24", "31/04/2024", ""}) {
            if (!value("MaskEdBox1").ends_with("2026")) // the first is a date
                prompts.queue();
            type("MaskEdBox1", typed);
            control("me_col")->setFocus();
            EXPECT_EQ(value("MaskEdBox1"), "01/02/2024");
        }
        type("MaskEdBox1", "99"); // leaving the form is not stopped by a date
        control("Button1")->setFocus();
        click("Button1");
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(prompts.boxes.size(), 2);
}

TEST_F(CalculatorFormsTest, StaysUsableWithoutItsTables)
{
    addExamination("A", "#11/03/2026#", "'170070.0'", "1");
    execute("DROP TABLE riepil2");
    CalcCockCroft form(state);
    open(form, [&] {
        EXPECT_EQ(value("me_col"), "070.0");
        type("me_hdl", "1");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "Formula di Cockcroft: VFG = 77.78 ml/min");
    });
    state.environment = nullptr;
    open(form, [&] { EXPECT_EQ(text("lblSesso") + text("lblEta") + value("me_col"), ""); });
}

} // namespace
} // namespace clivara
