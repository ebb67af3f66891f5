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
    addResult("90.16.04", daysAgo(30), "'1,00 mg'");
    CalcCockCroft form(state);
    EXPECT_EQ(form.objectName(), "calcCockCroft");
    EXPECT_EQ(form.windowTitle(), "Calcolo della formula di COCKCROFT");
    open(form, [&] {
        EXPECT_EQ(text("lblSesso"), "M");
        EXPECT_EQ(text("lblEta"), "60");
        EXPECT_EQ(value("MaskEdBox1"), "21/11/2026");
        EXPECT_EQ(value("me_col"), "070.0");
        EXPECT_EQ(value("me_hdl"), "1");
        EXPECT_EQ(text("me_colSource"), "rilevato il 03/11/2026");
        EXPECT_EQ(text("me_hdlSource"), "esame del 22/10/2026: «1,00 mg» letto come 1");
        EXPECT_EQ(text("SSPanel2"), "");

        QTest::keyClick(&form, Qt::Key_Return); // the default button
        EXPECT_EQ(text("SSPanel2"), "Formula di Cockcroft: VFG = 77.78 ml/min");
        EXPECT_EQ(text("SSPanel1"), "Paziente di 60 anni: Funzione renale attesa = 80 ml");
        EXPECT_EQ(colour("SSPanel1"), "#c00000");
        EXPECT_TRUE(control<QLabel>("SSPanel2")->isEnabled());

        type("me_hdl", "2");
        EXPECT_EQ(text("me_hdlSource"), "") << "no longer the proposed value";
        EXPECT_FALSE(control<QLabel>("SSPanel2")->isEnabled()) << "the line is of other values";
        QTest::keyClick(&form, Qt::Key_Escape);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(handedBack(), "valutazione 77.78");
    EXPECT_EQ(settings.text("AGGIORNA_DIARIO"), "PREVENZIONE");
}

TEST_F(CalculatorFormsTest, ClearanceWarnsZeroesAndResets)
{
    CalcCockCroft form(state);
    open(form, [&] {
        expectWarning("Inserire il peso!", "me_col");
        type("me_col", "70");
        expectWarning("Inserire il valore della creatininemia!", "me_hdl");
        type("me_hdl", "0,0");
        expectWarning("Inserire il valore della creatininemia!", "me_hdl");
        EXPECT_EQ(text("SSPanel2"), "");
        type("me_hdl", "1");
        click("Button2_0");
        click("Button2_1");
        EXPECT_EQ(value("me_col") + value("me_hdl"), "00");
        type("MaskEdBox1", "01/02/2020");
        click("Button2_2");
        EXPECT_EQ(value("me_col") + value("me_hdl") + text("SSPanel1") + text("SSPanel2"), "");
        EXPECT_EQ(value("MaskEdBox1"), "21/11/2026");
        click("Button1");
        EXPECT_FALSE(form.isVisible());
    });
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
        EXPECT_EQ(text("lblSesso") + text("lblEta") + value("me_col") + value("me_hdl"), "");
        EXPECT_EQ(text("SSPanel2") + text("SSPanel1"), "");
        type("me_col", "70");
        type("me_hdl", "1");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "Formula di Cockcroft: VFG = 0.00 ml/min")
            << "without a sex nothing is computed";
        form.close();
    });
    EXPECT_EQ(handedBack(), "valutazione 0.00");
}

TEST_F(CalculatorFormsTest, ExpectedFunctionFromFortyOn)
{
    CalcCockCroft form(state);
    const std::pair<const char *, const char *> cases[] = {
        {"11/22/1986", ""}, // 40 tomorrow
        {"11/21/1986", "Paziente di 40 anni: Funzione renale attesa = 90 ml"},
    };
    for (const auto &[birth, note] : cases) {
        execute(QStringLiteral("UPDATE archivio SET sesso = 'f', Data_Nasc = #%1#").arg(birth));
        open(form, [&, expected = note] {
            EXPECT_EQ(text("lblSesso"), "f");
            type("me_col", "70");
            type("me_hdl", "1");
            click("Button2_0");
            EXPECT_EQ(text("SSPanel1"), expected);
        });
    }
}

TEST_F(CalculatorFormsTest, LdlAndRatio)
{
    addResult("90.43.2", daysAgo(10), "'152.5'");
    addResult("90.14.1", daysAgo(10), "'50'");
    addResult("90.14.3", daysAgo(10), "'200'");
    CalcLDL form(state);
    EXPECT_EQ(form.objectName() + form.windowTitle(), "calcLDLCalcolo colesterolo LDL");
    open(form, [&] {
        EXPECT_EQ(value("me_col") + ' ' + value("me_hdl") + ' ' + value("me_trigl"), "200 50 152.5");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "Colesterolo LDL: 119.6 mg/dl");
        EXPECT_EQ(text("SSPanel1"), "Indice rischio: 4.0");
        EXPECT_EQ(colour("SSPanel1"), "#000000");
        EXPECT_FALSE(control<QLabel>("warningIcon")->isVisible());

        type("me_col", "225");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel1") + colour("SSPanel1"), "Indice rischio: 4.5#000000") << "not for a man";
        type("me_col", "250");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel1") + colour("SSPanel1"), "Indice rischio: 5.0#c00000");
        EXPECT_TRUE(control<QLabel>("warningIcon")->isVisible()) << "readable without colour";

        click("Button2_1");
        EXPECT_EQ(value("me_col") + value("me_hdl") + value("me_trigl"), "000");
        expectWarning("Inserire il valore del colesterolo totale!", "me_col");
        type("me_col", "200");
        expectWarning("Inserire il valore della HDL-colesterolemia!", "me_hdl");
        type("me_hdl", "50");
        expectWarning("Inserire il valore dei trigliceridi!", "me_trigl");
        form.close();
    });
    EXPECT_EQ(handedBack(), "valutazione 169.60") << "the last computed";

    execute("UPDATE archivio SET sesso = 'F'");
    open(form, [&] {
        type("me_col", "225");
        click("Button2_0");
        EXPECT_EQ(colour("SSPanel1"), "#c00000");
    });
}

TEST_F(CalculatorFormsTest, FiltrationRate)
{
    execute("UPDATE archivio SET sesso = 'F'");
    addResult("90.16.4", daysAgo(10), "'1.0'");
    addResult("90.16.04", daysAgo(5), "'9'"); // the clearance's code
    CalcFiltGlom form(state);
    EXPECT_EQ(form.objectName() + form.windowTitle(), "calcFiltGlomCalcolo del Filtrato Glomerulare");
    open(form, [&] {
        EXPECT_EQ(value("me_hdl"), "1");
        click("Button2_0"); // no weight, no warning
        EXPECT_EQ(text("SSPanel2"), "sMDRD = 60.11 ml/min per 1.73 m²");
        control<QCheckBox>("Check1")->click();
        EXPECT_FALSE(control<QLabel>("SSPanel2")->isEnabled());
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "sMDRD = 72.85 ml/min per 1.73 m²");
        type("me_hdl", "-1"); // no real power: the line is not updated
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "sMDRD = 72.85 ml/min per 1.73 m²");
        EXPECT_FALSE(control<QLabel>("SSPanel2")->isEnabled());
        type("me_hdl", "");
        expectWarning("Inserire il valore della creatininemia!", "me_hdl");
        form.close();
    });
    EXPECT_EQ(handedBack(), "valutazione 72.85");

    execute("UPDATE archivio SET Data_Nasc = Null");
    open(form, [&] {
        EXPECT_FALSE(control<QCheckBox>("Check1")->isChecked()) << "of the patient before";
        EXPECT_EQ(text("lblEta"), "");
        click("Button2_0");
        EXPECT_EQ(text("SSPanel2"), "");
        form.close();
    });
    EXPECT_EQ(handedBack(), "valutazione 0.00");
}

TEST_F(CalculatorFormsTest, DateFieldGoesBackToItsLastDate)
{
    CalcLDL form(state);
    open(form, [&] {
        type("MaskEdBox1", "1/2/24");
        control<QWidget>("me_col")->setFocus();
        EXPECT_EQ(value("MaskEdBox1"), "01/02/2024");
        prompts.queue();
        type("MaskEdBox1", "31/04/2024");
        control<QWidget>("me_col")->setFocus();
        EXPECT_EQ(value("MaskEdBox1"), "01/02/2024");
        EXPECT_EQ(prompts.boxes.size(), 1);
        prompts.queue();
        type("MaskEdBox1", "");
        control<QWidget>("me_col")->setFocus();
        EXPECT_EQ(value("MaskEdBox1"), "01/02/2024");
        type("MaskEdBox1", "99"); // leaving the form is not stopped by a date
        control<QWidget>("Button1")->setFocus();
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
