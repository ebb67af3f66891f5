// SPDX-License-Identifier: Apache-2.0
#include "history/Allergie.h"
#include "GeneralInfoFixture.h"
#include "TestConflicts.h"
#include "data/CodePairs.h"
#include "history/AllergenBox.h"
#include "history/AllergenPanel.h"
#include "history/AllergenSearch.h"

#include <QScrollBar>

namespace clivara {

namespace {

class AllergieTest : public GeneralInfoFixture {
protected:
    // Latte di vacca, the second of the foods: positions 51 and 52.
    static QString milk() { return nines(25) + QStringLiteral("01") + nines(89); }
    QColor colour(const QString &name) const
    {
        const auto *const box = control(name);
        return box->palette().color(box->foregroundRole());
    }
    std::string name(const QString &box) const { return control<AllergenBox>(box)->text().toStdString(); }
    QPlainTextEdit *freeTextField() const { return control<QPlainTextEdit>("Text1"); }
    std::string selected() const { return text("selezionati"); }

    const std::shared_ptr<QString> loadedCode = std::make_shared<QString>();
    Allergie form{state, loadedCode};
};

TEST_F(AllergieTest, ShowsCatalogueSelectionAndFreeText)
{
    store("X", milk());
    open(form, [&] {
        EXPECT_EQ(form.windowTitle(), "Allergie di  Dell'Orto Niccolò");
        EXPECT_EQ(form.findChildren<AllergenBox *>().size(), 115);
        EXPECT_EQ(name("grami_0"), "Agrostis");
        EXPECT_EQ(name("grami_16"), "Canna && giunco"); // no mnemonic
        EXPECT_EQ(name("epit_3"), "Penne d'uccelli");
        EXPECT_EQ(name("epit_0"), ""); // the key is compared exactly
        EXPECT_EQ(name("alim_40"), "");
        EXPECT_TRUE(isChecked("alim_1"));
        EXPECT_EQ(colour("alim_1"), QColor(128, 0, 0));
        EXPECT_EQ(colour("alim_0"), QColor(0, 0, 0));
        EXPECT_EQ(selected(), "1: Latte di vacca");
        EXPECT_EQ(freeTextField()->toPlainText(), "Nichel");
        EXPECT_EQ(notices(), "");
        click("alim_1");
        EXPECT_EQ(colour("alim_1"), QColor(0, 0, 0));
        EXPECT_EQ(selected(), "Nessun allergene selezionato");
        click("derma_1"); // has no name
        EXPECT_EQ(selected(), "1: Dermatofagoidi n. 2");
        click("derma_1");
        click("alim_1");
        esc(); // as it was: nothing to ask
        EXPECT_FALSE(isOpen());
    });
    EXPECT_EQ(codes("X"), QStringList{milk()});
    EXPECT_EQ(mailbox(), "RAF");
    EXPECT_TRUE(journal().isEmpty());
}

TEST_F(AllergieTest, EnterStoresOnlyWhatTheDoctorGave)
{
    struct Case {
        const char *about;
        QString stored; // "-" for no row
        bool ticks, writes;
        PromptButton usual;
    };
    const QString cut = nines(114);
    for (const Case &each : {Case{"the first row, empty", "-", false, false, PromptButton::No},
                             Case{"the first row, with an allergen", "-", true, false, PromptButton::Yes},
                             Case{"the first row, with a text", "-", false, true, PromptButton::Yes},
                             Case{"an ordinary row", nines(115), true, false, PromptButton::Yes},
                             Case{"a damaged row", cut, true, false, PromptButton::No},
                             Case{"another's answers", "Null", true, false, PromptButton::No}}) {
        execute("DELETE * FROM ESAME_OB");
        if (each.stored != "-")
            store("X", each.stored);
        *loadedCode = milk();
        prompts.boxes.clear();
        open(form, [&] {
            if (each.ticks)
                click("grami_0");
            if (each.writes)
                QTest::keyClicks(freeTextField(), "x");
            esc({PromptButton::No});
        });
        ASSERT_EQ(prompts.boxes.size(), 1) << each.about;
        EXPECT_EQ(prompts.boxes[0].defaultButton, each.usual) << each.about;
    }
}

TEST_F(AllergieTest, KeepsNothingOfThePatientBefore)
{
    execute("INSERT INTO inf_gen (cod_paz, Allergie) VALUES (18, 'Lattice')");
    execute("INSERT INTO ESAME_OB (cod_paz, tipo_dati, chiave, dati_paz) VALUES (18, 'X', '', '" + nines(115)
            + "')");
    store("X", "  "); // the text of 17 is not shown
    open(form, [&] {
        EXPECT_EQ(freeTextField()->toPlainText(), "");
        control<QLineEdit>("cerca")->setText("latte");
        esc({PromptButton::No});
    });
    state.header.patientCode = 18;
    open(form, [&] {
        EXPECT_EQ(freeTextField()->toPlainText(), "Lattice");
        EXPECT_EQ(control<QLineEdit>("cerca")->text(), "");
        EXPECT_EQ(notices(), "");
        freeTextField()->selectAll();
        QTest::keyClicks(freeTextField(), "Pesca");
        esc({PromptButton::Yes});
    });
    EXPECT_EQ(clinical("SELECT cod_paz, Allergie FROM inf_gen ORDER BY cod_paz"),
              (QStringList{"17|Nichel", "18|Pesca"}));
    state.header.patientCode = 17;
    open(form, [&] {
        EXPECT_EQ(freeTextField()->toPlainText(), "");
        click("alim_1");
        esc({PromptButton::Yes});
    });
    EXPECT_EQ(freeText(), QStringList{"Nichel"});
}

TEST_F(AllergieTest, WhatWasSavedStandsInTheStrip)
{
    state.header.identified = true;
    execute("DELETE * FROM inf_gen");
    open(form, [&] {
        EXPECT_EQ(text("lblAllergie"), "✕ Allergie non lette: possono essercene"); // by nobody so far
        click("alim_1");
        QTest::keyClicks(freeTextField(), "Lattice");
        esc({PromptButton::Yes, PromptButton::Ok}); // the text is not saved, and the form stays
        EXPECT_EQ(text("lblAllergie"), "⚠ Allergie: 1 allergene segnato: Latte di vacca");
        EXPECT_TRUE(form.accessibleDescription().contains("1 allergene segnato: Latte di vacca"));
    });
    EXPECT_EQ(state.header.allergies.state, AllergyState::Known);
}

TEST_F(AllergieTest, TheFreeTextAloneWritesBoth)
{
    settings.write("Mir_Attivo", "1");
    const QString stored = milk().replace(50, 2, "77"); // selected, as another program says it
    store("X", stored);
    open(form, [&] {
        freeTextField()->selectAll();
        QTest::keyClicks(freeTextField(), "Sant'Anna");
        QTest::keyClick(freeTextField(), Qt::Key_Return);
        QTest::keyClicks(freeTextField(), "100% \"si'\"");
        esc({PromptButton::Yes});
    });
    EXPECT_EQ(freeText(), QStringList{"Sant'Anna\r\n100% \"si'\""});
    EXPECT_EQ(codes("X"), QStringList{milk()});
    EXPECT_EQ(journal(), (QStringList{"4|2026-11-21 00:00:00|17|X|Null|false",
                                      "3|2026-11-21 00:00:00|17|Null|Null|false"}));
    EXPECT_TRUE(state.networkedPractice);
}

// Until another workstation has added the row that holds it.
TEST_F(AllergieTest, WithoutGeneralInformationTheTextStaysInTheWindow)
{
    execute("DELETE * FROM inf_gen");
    store("X", nines(115));
    open(form, [&] {
        QTest::keyClicks(freeTextField(), "Lattice");
        esc({PromptButton::Yes, PromptButton::Ok});
        EXPECT_TRUE(isOpen());
        execute("INSERT INTO inf_gen (cod_paz) VALUES (17)");
        esc({PromptButton::Yes});
        EXPECT_FALSE(isOpen());
    });
    EXPECT_EQ(freeText(), QStringList{"Lattice"});
}

TEST_F(AllergieTest, ABlankRowHidesTheFreeTextButDoesNotLoseIt)
{
    store("X", "  ");
    open(form, [&] {
        EXPECT_EQ(freeTextField()->toPlainText(), "");
        EXPECT_TRUE(notices().contains("vi si aggiunge"));
        QTest::keyClicks(freeTextField(), "Lattice");
        esc({PromptButton::Yes});
    });
    EXPECT_EQ(freeText(), QStringList{"Nichel\r\nLattice"});

    // Saving without a text leaves the stored one alone.
    execute("UPDATE ESAME_OB SET dati_paz = ''");
    open(form, [&] {
        click("alim_1");
        esc({PromptButton::Yes});
    });
    EXPECT_EQ(freeText(), QStringList{"Nichel\r\nLattice"});
    EXPECT_EQ(codes("X"), QStringList{milk()});
}

TEST_F(AllergieTest, DamagedCodes)
{
    struct Case {
        QString code;
        int selected;
    };
    for (const Case &each :
         {Case{nines(115), 0}, Case{nines(114), 1}, Case{nines(114) + u'9', 1}, Case{nines(120), 0},
          Case{QStringLiteral("xy") + nines(114), 1}, Case{"x", 115}}) {
        execute("DELETE * FROM ESAME_OB");
        store("X", each.code);
        open(form, [&] {
            EXPECT_EQ(control<AllergenPanel>("gruppi")->selectedNames().size(), each.selected);
            EXPECT_EQ(notices().contains("non è integra"), each.code != nines(115))
                << each.code.toStdString();
        });
    }
}

TEST_F(AllergieTest, AFailedSaveKeepsTheWindowOpen)
{
    store("X", nines(115));
    const RefusedRows refused(database(), "ESAME_OB");
    open(form, [&] {
        click("alim_1");
        freeTextField()->setPlainText("Lattice");
        esc({PromptButton::Yes, PromptButton::Ok});
        EXPECT_TRUE(isOpen());
        EXPECT_TRUE(isChecked("alim_1"));
        EXPECT_TRUE(prompts.last().startsWith("Attenzione!|Salvataggio non riuscito"));
    });
    EXPECT_EQ(freeText(), QStringList{"Nichel"}); // all or nothing
    EXPECT_TRUE(journal().isEmpty());
}

TEST_F(AllergieTest, AnotherWorkstationsAllergensAreSeenAndKept)
{
    store("X", nines(115));
    TestConflicts conflicts(state);
    const auto there = [&](const QString &code, const char *text) {
        execute("UPDATE ESAME_OB SET dati_paz = '" + code + "' WHERE tipo_dati = 'X'");
        execute("INSERT INTO Modifiche (Tipo, data_mod, cod_paz, codice1, cancellazione) VALUES (4, "
                "#11/20/2026#, "
                "17, 'X', false)");
        execute(QStringLiteral("UPDATE inf_gen SET Allergie = '%1'").arg(text));
    };
    open(form, [&] {
        click("grami_0");
        there(milk(), "Nichel, cobalto");
        conflicts.queue(ConflictChoice::BackToEditing);
        esc({PromptButton::Yes});
        EXPECT_EQ(
            conflicts.told,
            "Le allergie sono state salvate il 20/11/2026, da un'altra postazione, mentre era in questa "
            "finestra. Chi non è registrato.\n"
            "Allergeni segnati|Agrostis|Latte di vacca\nVarie|Nichel|Nichel, cobalto");
        EXPECT_TRUE(isOpen());
        EXPECT_TRUE(isChecked("grami_0"));
        EXPECT_FALSE(isChecked("alim_1"));
        conflicts.queue(ConflictChoice::Mine);
        esc({PromptButton::Yes});
        EXPECT_FALSE(isOpen());
    });
    QString both = milk();
    both.replace(0, 2, "00");
    EXPECT_EQ(codes("X"), QStringList{both}) << "neither allergy is lost";
    EXPECT_EQ(freeText(), QStringList{"Nichel, cobalto"});

    open(form, [&] {
        freeTextField()->setPlainText("Lattice");
        there(milk(), "Cobalto");
        conflicts.queue(ConflictChoice::Theirs);
        esc({PromptButton::Yes});
        EXPECT_FALSE(isOpen());
    });
    EXPECT_EQ(codes("X") + freeText(), (QStringList{milk(), "Cobalto"}));

    // The other one has written what is written here.
    open(form, [&] {
        click("grami_0");
        there(both, "Cobalto");
        esc({PromptButton::Yes});
        EXPECT_FALSE(isOpen());
    });
    EXPECT_EQ(codes("X"), QStringList{both});
}

TEST_F(AllergieTest, WithoutAPatientNothingIsWritten)
{
    state.header.patientCode = -1;
    state.header.identified = false;
    open(form, [&] {
        click("alim_1");
        esc({PromptButton::Yes, PromptButton::Ok});
        EXPECT_TRUE(isOpen()) << "with what was entered";
        EXPECT_TRUE(prompts.last().contains("non c'è un paziente identificato"))
            << qPrintable(prompts.last());
        click("alim_1");
        esc();
        EXPECT_FALSE(isOpen()) << "whoever has only looked is asked nothing";
    });
    EXPECT_TRUE(clinical("SELECT * FROM ESAME_OB").isEmpty());
}

TEST_F(AllergieTest, TheSearchOnlyShows)
{
    store("X", milk());
    open(form, [&] {
        auto *const field = control<QLineEdit>("cerca");
        const auto search = [&](const char *name) { return control<AllergenBox>(name)->search(); };
        QTest::keyClicks(field, "LATTE");
        EXPECT_EQ(text("trovati"), "1 trovato – Invio per raggiungerlo");
        EXPECT_EQ(search("alim_1"), AllergenBox::Search::Found);
        EXPECT_EQ(search("alim_0"), AllergenBox::Search::Other);
        EXPECT_EQ(colour("alim_1"), QColor(128, 0, 0));
        QTest::keyClick(field, Qt::Key_Return);
        EXPECT_TRUE(isOpen());
        EXPECT_EQ(QApplication::focusWidget(), control("alim_1"));
        QTest::keyClick(control("alim_1"), Qt::Key_Down);
        EXPECT_EQ(QApplication::focusWidget(), control("alim_2"));
        field->setText("polline");
        EXPECT_EQ(search("alb_14"), AllergenBox::Search::Found);
        EXPECT_EQ(text("trovati"), "51 trovati – Invio per il primo");
        field->setText("zzz");
        EXPECT_EQ(text("trovati"), "nessuno trovato");
        field->clear();
        EXPECT_EQ(search("alim_0"), AllergenBox::Search::None);
        EXPECT_EQ(control<AllergenPanel>("gruppi")->selection(), decodeAllergies(milk()));
        esc(); // nothing has changed
        EXPECT_FALSE(isOpen());
    });
}

TEST_F(AllergieTest, FitsAnOrdinaryScreenAndScrollsOneWayOnASmallOne)
{
    // The names of the demo practice are as long as any.
    execute("DELETE * FROM ALLERGIE");
    QFile file(QStringLiteral(DEMO_CATALOGUES));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString catalogues = QString::fromUtf8(file.readAll());
    const QString rows =
        catalogues.section(QLatin1String("[allergie]\n"), 1).section(QLatin1String("\n\n"), 0, 0);
    for (const QString &row : rows.split(u'\n'))
        execute(
            QStringLiteral("INSERT INTO ALLERGIE VALUES ('%1')")
                .arg(QString(row).replace(u'\'', QLatin1String("''")).replace(u'|', QLatin1String("', '"))));
    store("X", milk());
    open(form, [&] {
        const auto *const panel = control<AllergenPanel>("gruppi");
        EXPECT_FALSE(name("alim_40").empty());
        form.resize(1366, 700); // what a screen of 1366x768 leaves
        QApplication::processEvents();
        EXPECT_EQ(panel->horizontalScrollBar()->maximum(), 0);
        EXPECT_EQ(panel->verticalScrollBar()->maximum(), 0);
        form.resize(1092, 560); // the same screen at 125 %
        QApplication::processEvents();
        EXPECT_EQ(panel->horizontalScrollBar()->maximum(), 0);
        EXPECT_GT(panel->verticalScrollBar()->maximum(), 0);
    });
}

TEST(AllergenSearch, FindsPartsOfWordsWithoutCaseAndAccents)
{
    const QString about = QString::fromUtf8("Alimenti cibo Cacao e Caffè");
    for (const char *typed : {"caffe", "CAFFÈ", "affe", "cacao cibo", " alim ", "e"})
        EXPECT_TRUE(AllergenSearch(typed).finds(about)) << typed;
    for (const char *typed : {"", "  ", "latte", "cacao latte", "cacaoe", "'"})
        EXPECT_FALSE(AllergenSearch(typed).finds(about)) << typed;
}

} // namespace

} // namespace clivara
