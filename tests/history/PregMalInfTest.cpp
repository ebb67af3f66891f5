// SPDX-License-Identifier: Apache-2.0
#include "history/PregMalInf.h"
#include "FormNotes.h"
#include "GeneralInfoFixture.h"
#include "TestConflicts.h"
#include "history/Allergie.h"
#include "history/Forms.h"
#include "history/InfGen.h"

#include <QPushButton>

namespace clivara {

namespace {

class PregMalInfTest : public GeneralInfoFixture {
protected:
    static QString none() { return encodeInfections({}); }
    QLineEdit *note(int number) const { return control<QLineEdit>(QStringLiteral("Text1_%1").arg(number)); }
    QStringList rows()
    {
        return clinical("SELECT cod_paz, data_reg, dati_paz FROM ESAME_OB WHERE tipo_dati = 'M'");
    }

    const std::shared_ptr<QString> loadedCode = std::make_shared<QString>();
    PregMalInf form{state, loadedCode};
};

TEST_F(PregMalInfTest, TheFirstCloseWritesARowAndTheNextDoesNot)
{
    // Even when the answers are those of the patient before.
    *loadedCode = none();
    open(form, [&] {
        EXPECT_EQ(form.windowTitle(), "Pregresse malattie infettive");
        esc();
        EXPECT_FALSE(isOpen());
    });
    EXPECT_EQ(rows(), QStringList{"17|2026-11-21 10:00:00|" + none()});
    EXPECT_EQ(journal(), QStringList{"4|2026-11-21 00:00:00|17|M|Null|false"});
    EXPECT_EQ(none().size(), 190);

    execute("UPDATE ESAME_OB SET data_reg = Null");
    open(form, [&] { esc(); });
    EXPECT_EQ(rows(), QStringList{"17|Null|" + none()});
}

TEST_F(PregMalInfTest, ANoteBesideADiseaseThatWasNotHadIsKept)
{
    store("M", none());
    open(form, [&] {
        click("SSCheck1_19");
        QTest::keyClicks(note(4), "dubbia");
        click("SSCheck1_19");
        EXPECT_TRUE(note(4)->isEnabled());
        esc();
    });
    const QStringList stored = codes("M");
    EXPECT_TRUE(stored.value(0).contains("99dubbia"));
    open(form, [&] {
        EXPECT_EQ(note(4)->text(), "");
        esc();
    });
    EXPECT_EQ(codes("M"), stored); // looking has not lost it
    open(form, [&] {
        click("SSCheck1_19");
        EXPECT_EQ(note(4)->text(), "dubbia");
        note(4)->clear();
        esc();
    });
    InfectionAnswers had;
    had.had.set(19);
    EXPECT_EQ(codes("M"), QStringList{encodeInfections(had)});
}

TEST_F(PregMalInfTest, BothFormsShareTheLoadedCode)
{
    const QString milk = nines(25) + QStringLiteral("01") + nines(89);
    store("X", milk);
    store("M", "Null");
    Allergie allergies(state, loadedCode);
    open(allergies, [&] { esc(); });
    open(form, [&] {
        // The string of the allergies, read as if it were one of infections.
        EXPECT_TRUE(notices().contains("forse di un altro paziente"));
        for (std::size_t i = 0; i < infectionCount; ++i)
            EXPECT_EQ(isChecked(QStringLiteral("SSCheck1_%1").arg(i)), decodeInfections(milk).had[i]) << i;
        prompts.queue(PromptButton::Yes); // 190 characters are not 230
        esc();
        EXPECT_FALSE(isOpen());
    });
    EXPECT_EQ(codes("M"), QStringList{encodeInfections(decodeInfections(milk))});

    // The other way round: what is missing of the shorter string counts as selected.
    execute("UPDATE ESAME_OB SET dati_paz = Null WHERE tipo_dati = 'X'");
    execute(QStringLiteral("UPDATE ESAME_OB SET dati_paz = '%1' WHERE tipo_dati = 'M'").arg(none()));
    open(form, [&] { esc(); });
    open(allergies, [&] {
        EXPECT_FALSE(isChecked("grami_0"));
        EXPECT_TRUE(isChecked("epit_3"));
        EXPECT_TRUE(notices().contains("forse di un altro paziente"));
        prompts.queue(PromptButton::No); // 230 characters are not the 190 that were loaded
        esc();
    });
    EXPECT_EQ(codes("X"), QStringList{"Null"});
}

TEST_F(PregMalInfTest, LookingAtADamagedOrNullRowStoresNothing)
{
    const QString milk = nines(25) + QStringLiteral("01") + nines(89);
    struct Case {
        const char *stored;
        QString loaded; // the string that was loaded before
        bool touches;
        const char *question; // empty: nothing is asked
    };
    for (const Case &each :
         {Case{"xy", {}, false, "non è integra"}, Case{"0199999", {}, true, "non è integra"},
          Case{"àè99", milk, false, "non è integra"}, Case{"Null", milk, false, "forse di un altro paziente"},
          Case{"Null", milk, true, "forse di un altro paziente"},
          Case{"Null", none(), true, "forse di un altro paziente"}, Case{"Null", {}, false, "è vuota."},
          Case{"Null", {}, true, ""}, Case{"Null", none(), false, ""}}) {
        execute("DELETE * FROM ESAME_OB");
        store("M", each.stored);
        *loadedCode = each.loaded;
        prompts.boxes.clear();
        InfectionAnswers shown;
        open(form, [&] {
            if (each.touches)
                click("SSCheck1_3");
            for (std::size_t i = 0; i < infectionCount; ++i)
                shown.had[i] = isChecked(QStringLiteral("SSCheck1_%1").arg(i));
            if (*each.question) {
                esc({PromptButton::No});
                EXPECT_FALSE(isOpen());
            } else {
                esc();
            }
        });
        if (!*each.question) {
            EXPECT_TRUE(prompts.boxes.isEmpty());
            EXPECT_EQ(codes("M"), QStringList{each.touches ? encodeInfections(shown) : QString("Null")});
            continue;
        }
        ASSERT_EQ(prompts.boxes.size(), 1) << each.stored;
        EXPECT_TRUE(prompts.last().contains(each.question)) << prompts.last().toStdString();
        // Enter loses neither what is stored nor what the doctor has ticked.
        EXPECT_EQ(prompts.boxes[0].defaultButton, each.touches ? PromptButton::Cancel : PromptButton::No);
        EXPECT_EQ(codes("M"), QStringList{each.stored}) << "No leaves it as it is";
        if (!each.touches)
            continue;
        *loadedCode = each.loaded;
        open(form, [&] {
            click("SSCheck1_3");
            esc({PromptButton::Cancel});
            EXPECT_TRUE(isOpen());
            esc({PromptButton::Yes});
            EXPECT_FALSE(isOpen());
        });
        EXPECT_EQ(decodeInfections(codes("M").value(0)).had, shown.had);
    }
}

TEST_F(PregMalInfTest, KeepsNothingOfThePatientBefore)
{
    InfectionAnswers hidden; // notes beside diseases that were not had
    hidden.notes[2] = "dubbia";
    hidden.notes[4] = "dubbia";
    InfectionAnswers other;
    other.had.set(17);
    other.notes[2] = "1998";
    store("M", encodeInfections(hidden));
    execute("INSERT INTO ESAME_OB (cod_paz, tipo_dati, chiave, dati_paz) VALUES (18, 'M', '', '"
            + encodeInfections(other) + "')");
    open(form, [&] { esc(); });
    state.header.patientCode = 18;
    open(form, [&] {
        click("SSCheck1_19");
        EXPECT_EQ(note(4)->text(), "");
        EXPECT_EQ(note(2)->text(), "1998");
        esc();
    });
    other.had.set(19);
    EXPECT_EQ(codes("M"), QStringList{encodeInfections(other)});
}

TEST_F(PregMalInfTest, AFailedSaveAsksBeforeItLosesAnything)
{
    store("M", none());
    const RefusedRows refused(database(), "ESAME_OB");
    open(form, [&] {
        click("SSCheck1_3");
        esc({PromptButton::No});
        EXPECT_TRUE(isOpen());
        EXPECT_TRUE(isChecked("SSCheck1_3"));
        EXPECT_TRUE(prompts.last().contains("Chiudere senza salvare?"));
        EXPECT_EQ(prompts.boxes.last().defaultButton, PromptButton::No);
        esc({PromptButton::Yes});
        EXPECT_FALSE(isOpen());
    });
    EXPECT_EQ(codes("M"), QStringList{none()});
}

TEST_F(PregMalInfTest, AnotherWorkstationsAnswersAreSeenAndKept)
{
    store("M", none());
    TestConflicts conflicts(state);
    InfectionAnswers theirs;
    theirs.had[9] = theirs.had[15] = true;
    theirs.notes[0] = "1998";
    const auto there = [&](const char *time) {
        execute(QStringLiteral("UPDATE ESAME_OB SET dati_paz = '%1', data_reg = %2")
                    .arg(encodeInfections(theirs), time));
    };
    open(form, [&] {
        click("SSCheck1_3");
        click("SSCheck1_16");
        note(1)->setText("2001");
        there("#11/21/2026 09:30:00#");
        conflicts.queue(ConflictChoice::BackToEditing);
        esc();
        EXPECT_EQ(
            conflicts.told,
            "Le malattie infettive sono state salvate il 21/11/2026 alle 09:30, da un'altra postazione, "
            "mentre era in questa finestra. Chi non è registrato.\n"
            "Malattie avute|Parotite\nTbc|Morbillo\nPleurite\nNote|Tbc: 2001|Pleurite: 1998");
        EXPECT_TRUE(isOpen());
        conflicts.queue(ConflictChoice::Mine);
        esc();
        EXPECT_FALSE(isOpen());
    });
    InfectionAnswers both = theirs;
    both.had[3] = both.had[16] = true;
    both.notes[1] = "2001";
    EXPECT_EQ(codes("M"), QStringList{encodeInfections(both)});

    // Whoever has only looked writes nothing over what came meanwhile.
    execute("DELETE FROM ESAME_OB");
    open(form, [&] {
        store("M", encodeInfections(theirs));
        esc();
        EXPECT_FALSE(isOpen());
    });
    EXPECT_EQ(codes("M"), QStringList{encodeInfections(theirs)});
}

TEST_F(PregMalInfTest, WithoutAPatientNothingIsWritten)
{
    state.header.patientCode = -1;
    state.header.identified = false;
    open(form, [&] {
        click("SSCheck1_3");
        esc({PromptButton::No});
        EXPECT_TRUE(isOpen()) << "with what was entered";
        EXPECT_TRUE(prompts.last().contains("non c'è un paziente identificato"))
            << qPrintable(prompts.last());
        click("SSCheck1_3");
        esc();
        EXPECT_FALSE(isOpen()) << "whoever has only looked is asked nothing";
    });
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(GeneralInfoFixture, TheLauncherOpensWhatIsBuilt)
{
    FormNotes forms;
    forms.act = [this] { state.header.allergies = judgedAllergies({}, false, true, "Nichel"); };
    state.forms = &forms;
    forms.built = FormRegistry(historyForms());
    InfGen launcher(state);
    open(launcher, [&] {
        int on = 0;
        for (const auto *const button : launcher.findChildren<QPushButton *>()) {
            if (!button->objectName().startsWith("Apri_"))
                continue;
            on += button->isEnabled() ? 1 : 0;
            EXPECT_EQ(button->isEnabled(), button->toolTip().isEmpty()) << button->objectName().toStdString();
            EXPECT_EQ(button->accessibleDescription(), button->toolTip());
        }
        EXPECT_EQ(on, 2) << "but not the launcher itself";
        EXPECT_EQ(QApplication::focusWidget(), control("Apri_PregMalInf"));
        EXPECT_FALSE(control("Apri_Anagrafica")->isEnabled());
        click("Apri_PregMalInf");
        EXPECT_TRUE(isOpen());
        EXPECT_EQ(text("lblAllergie"), "⚠ Allergie: Nichel") << "as the section has left them";
        click("Apri_Anagrafica");
        esc();
        EXPECT_FALSE(isOpen());
    });
    EXPECT_EQ(forms.take(), "PregMalInf");
}

} // namespace

} // namespace clivara
