// SPDX-License-Identifier: Apache-2.0
#include "problems/Visita2.h"

#include "DialogFixture.h"

namespace clivara {
namespace {

class Visita2Test : public DialogFixture {
protected:
    // Opens the dialog for a visit; 0 for a new one.
    void openVisit(qint32 id, const std::function<void()> &act)
    {
        asked = {};
        if (id != 0)
            asked.visit = id;
        asked.problem = state.selected;
        form.take(asked);
        open(form, act);
    }
    // The visits, a line each.
    std::string
    stored(const char *fields = "id_Probl, DataReg, validita, idtipo, SINTOMO, anamnesi, esameob, "
                                "conclusioni, pianificazione, txtNote")
    {
        return clinical(QStringLiteral("SELECT %1 FROM VISITAPROBL ORDER BY IdVisitaProbl").arg(fields))
            .join(u'/')
            .toStdString();
    }

    Visita2 form{state};
    VisitCall asked;
};

TEST_F(Visita2Test, ANewVisitIsOfTodayAndOfTheSelectedProblem)
{
    state.selected.id = addProblem("250.00", "Diabete");
    state.selected.text = "come lo chiama l'elenco";
    const qint32 problem = state.selected.id;
    openVisit(0, [&] {
        EXPECT_EQ(form.windowTitle(), "Nuova visita");
        EXPECT_EQ(value("MaskEdBox1") + value("MaskEdBox2"), "21-11-2026__-__-____");
        EXPECT_EQ(value("Problema"), "[250.00] Diabete");
        EXPECT_EQ(value("Combo1") + value("Combo2") + value("Text1_0") + value("Text1_4"), "");
        choose("Combo1", "Visita domiciliare");
        choose("Combo2", "Tosse");
        type("Text1_0", "prima\rseconda");
        type("Text1_2", " \r ");
        type("Text1_4", "nota");
        type("MaskEdBox2", "3-1-27");
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(stored(),
              QStringLiteral("%1|2026-11-21 00:00:00|2027-01-03 00:00:00|2|S01|prima\r\nseconda||||nota")
                  .arg(problem)
                  .toStdString());
    EXPECT_EQ(stored("IdVisitaProbl, cod_paz"), "1|17") << "the first visit ever";
    EXPECT_EQ(asked.saved, 1) << "the list can show which one it is";
    EXPECT_EQ(state.selected.text, "come lo chiama l'elenco");
}

TEST_F(Visita2Test, WhatTheDoctorDoesNotEditStaysAsItIs)
{
    const qint32 visit = addVisit("Null", "Null");
    const auto table = environment.clinical->OpenRecordset("VISITAPROBL");
    table->Edit();
    table->Fields("validita").setValue(jet::dateTime(QDate(2020, 2, 29)));
    table->Fields("idtipo").setValue(77); // types and symptoms that the lists do not have
    table->Fields("SINTOMO").setValue("zz");
    for (const char *text : {"anamnesi", "esameob", "conclusioni", "pianificazione", "txtNote"})
        table->Fields(text).setValue(awkwardText());
    table->Update();
    const std::string before = stored();
    openVisit(visit, [&] {
        EXPECT_EQ(form.windowTitle(), "Modifica dati visita");
        EXPECT_EQ(value("MaskEdBox1") + value("MaskEdBox2"), "01-01-198029-02-2020");
        EXPECT_EQ(value("Combo1") + value("Combo2") + value("Problema"), "");
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(stored(), before);

    openVisit(visit, [&] {
        QTest::keyClick(control("Combo1"), Qt::Key_Delete);
        QTest::keyClick(control("Combo2"), Qt::Key_Backspace);
        type("MaskEdBox1", "31-12-2030"); // a visit to come is accepted
        type("MaskEdBox2", "31-02-2020");
        EXPECT_EQ(text("validityNote"), "La validità non è una data: non sarà salvata.");
        for (const char *text : {"Text1_0", "Text1_1", "Text1_2", "Text1_3", "Text1_4"})
            type(text, text);
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(stored(),
              "Null|2030-12-31 00:00:00|2020-02-29 00:00:00|Null|Null|Text1_0|Text1_1|Text1_2|Text1_3|"
              "Text1_4");
}

TEST_F(Visita2Test, ADayHasOneVisitAndAVisitADay)
{
    addVisit("Null", "#11/20/2026 10:30:00#");
    const qint32 visit = addVisit("Null", "#11/19/2026#");
    execute("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg) VALUES (90, 18, #11/21/2026#)");
    const auto twice = "Attenzione!|Esiste già una visita nella data indicata.|information";
    const auto invalid = "Attenzione|Data visita non valida.|warning";
    openVisit(visit, [&] {
        type("Text1_0", "scritto");
        type("MaskEdBox1", "20-11-2026");
        EXPECT_EQ(boxOf(save), twice);
        type("MaskEdBox1", "31-02-2026");
        EXPECT_EQ(boxOf(save), invalid);
        EXPECT_TRUE(control("MaskEdBox1")->hasFocus());
        type("MaskEdBox1", "");
        EXPECT_EQ(boxOf(save), invalid);
        EXPECT_EQ(value("Text1_0"), "scritto");
        prompts.queue();
        type("MaskEdBox1", "");
        QTest::keyClick(control("MaskEdBox1"), Qt::Key_Tab);
        settle();
        EXPECT_EQ(prompts.last(), "Attenzione!|Data non valida !|warning") << "a visit has a date";
        EXPECT_TRUE(control("MaskEdBox1")->hasFocus());
        control("Text1_0")->setFocus(Qt::ActiveWindowFocusReason);
        control("MaskEdBox1")->setFocus();
        EXPECT_EQ(value("MaskEdBox1"), "21-11-2026");
        type("MaskEdBox1", "19-11-2026");
        click(save);
        EXPECT_FALSE(form.isVisible()) << "its own date";
    });
    EXPECT_EQ(stored("IdVisitaProbl, DataReg, anamnesi"),
              "1|2026-11-20 10:30:00|Null/2|2026-11-19 00:00:00|scritto/90|2026-11-21 00:00:00|Null");
    execute("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg) VALUES (80, 17, #11/19/2026#)");
    openVisit(visit, [&] {
        type("Text1_0", "modificato");
        click(save);
        EXPECT_FALSE(form.isVisible()) << "whatever else is of its day";
    });
    openVisit(0, [&] {
        click(save);
        EXPECT_FALSE(form.isVisible()) << "the other visit of today is another patient's";
    });
    EXPECT_EQ(asked.saved, 91);
}

TEST_F(Visita2Test, TheProblemIsChosenKeptAndTakenAway)
{
    const qint32 cough = addProblem("", "Tosse");
    const qint32 fever = addProblem("", "Febbre");
    const qint32 visit = addVisit(QString::number(cough), "#11/19/2026#");
    openVisit(visit, [&] {
        EXPECT_EQ(state.selected.id, cough);
        EXPECT_EQ(value("Problema"), "Tosse");
        forms.act = {}; // the chooser cannot be opened
        click("Problema");
        EXPECT_EQ(forms.take(), "SelezProblema");
        forms.act = [&] {
            EXPECT_EQ(state.selected.id, cough);
            state.selected.id = noProblem;
            state.selected.text.clear();
        };
        click("Problema");
        EXPECT_EQ(value("Problema"), "Tosse") << "whoever cancels keeps what was there";
        EXPECT_EQ(state.selected.id, cough);
        EXPECT_EQ(state.selected.text, "Tosse");
        forms.act = [&] { state.selected.id = fever; };
        QTest::keyClick(control("Problema"), Qt::Key_Space);
        EXPECT_EQ(value("Problema"), "Febbre");
        click(save);
    });
    EXPECT_EQ(stored("id_Probl"), std::to_string(fever));
    openVisit(visit, [&] {
        EXPECT_EQ(value("Problema"), "Febbre");
        click("Togli");
        EXPECT_EQ(value("Problema"), "");
        EXPECT_EQ(state.selected.id, noProblem);
        click(save);
    });
    EXPECT_EQ(stored("id_Probl"), "0");
}

TEST_F(Visita2Test, TheCallersSelectionComesBackOnEveryWayOut)
{
    const qint32 own = addProblem("", "Tosse");
    const qint32 visit = addVisit(QString::number(own), "#11/19/2026#");
    const std::function<void()> waysOut[] = {
        [&] { click(save); },  [&] { click(leave); },  [&] { QTest::keyClick(&form, Qt::Key_Escape); },
        [&] { form.close(); }, [&] { form.unload(); }, [&] { form.abandon(); },
    };
    for (const auto &wayOut : waysOut) {
        state.selected.id = 4711;
        state.selected.text = "di chi chiama";
        openVisit(visit, [&] {
            EXPECT_EQ(state.selected.id, own);
            type("Text1_0", "mai salvato");
            type("Text1_0", "");
            wayOut();
            EXPECT_FALSE(form.isVisible());
        });
        EXPECT_EQ(state.selected.id, 4711);
        EXPECT_EQ(state.selected.text, "di chi chiama");
    }
    prompts.queue();
    EXPECT_THROW(openVisit(99, [] {}), dao::Error);
    EXPECT_EQ(prompts.last(), "Attenzione!|La visita è stata eliminata da un'altra postazione.|warning");
    EXPECT_EQ(state.selected.id, 4711);
}

TEST_F(Visita2Test, ClosingWithoutSavingWritesNothing)
{
    for (const bool byKey : {true, false}) {
        openVisit(0, [&] {
            type("Text1_0", "mai salvato");
            type("MaskEdBox1", "31-02-2026"); // nor is anything asked
            if (byKey) {
                QTest::keyClick(control("MaskEdBox1"), Qt::Key_Escape);
            } else {
                control(leave)->setFocus(Qt::MouseFocusReason);
                click(leave);
            }
            settle();
            EXPECT_FALSE(form.isVisible());
        });
    }
    EXPECT_EQ(stored(), "");
}

// In the list that was not renewed, in the list of the chooser, while the visit is written, and while it is
// saved.
TEST_F(Visita2Test, AProblemThatWasDeletedElsewhereTakesNoVisit)
{
    const QString question = "Attenzione!|Il problema associato è stato eliminato da un'altra postazione.\n"
                             "Salvare la visita senza problema associato?\n"
                             "Con No resta aperta com'è, e se ne può scegliere un altro.|warning";
    const auto other = otherWorkstation();
    const auto remove = [&] { other->Execute("DELETE * FROM PROBLEMS WHERE descr_mal = 'Tosse'"); };
    std::optional<dao::Transaction> theirs;
    const qint32 fever = addProblem("", "Febbre");
    for (const std::string when : {"list", "chooser", "writing", "save"}) {
        const qint32 cough = addProblem("", "Tosse");
        state.selected.id = when == "chooser" ? fever : cough;
        if (when == "list")
            remove();
        openVisit(0, [&] {
            EXPECT_EQ(value("Problema"), when == "list" ? "" : when == "chooser" ? "Febbre" : "Tosse");
            type("Text1_0", "scritto");
            if (when == "chooser") {
                forms.act = [&] {
                    state.selected.id = cough;
                    remove();
                };
                click("Problema");
                forms.take();
                EXPECT_EQ(value("Problema"), "");
            } else if (when == "writing") {
                remove();
            } else if (when == "save") {
                theirs.emplace(otherWorkspace());
                remove();
                pauses.actAt = 1;
                pauses.during = [&] { theirs->commit(); };
            }
            EXPECT_TRUE(control("Togli")->isEnabled()) << when;
            EXPECT_EQ(QString::fromStdString(boxOf(save, PromptButton::No)), question) << when;
            EXPECT_TRUE(form.isVisible()) << when;
            EXPECT_EQ(value("Text1_0") + value("Problema"), "scritto") << when;
            EXPECT_TRUE(control("Problema")->hasFocus()) << when;
            EXPECT_EQ(stored(), "") << when;
            forms.act = [&] { state.selected.id = fever; };
            click("Problema");
            click(save);
            EXPECT_FALSE(form.isVisible()) << when;
        });
        EXPECT_EQ(stored("id_Probl, anamnesi"), std::to_string(fever) + "|scritto") << when;
        execute("DELETE * FROM VISITAPROBL");
        forms.take();
        forms.act = {};
    }
}

// Left by a program that does not look: it would be in the list of no problem.
TEST_F(Visita2Test, AVisitOfAProblemThatIsNotThePatientsSaysSo)
{
    state.header.patientCode = 18;
    const qint32 foreign = addProblem("", "di un altro");
    state.header.patientCode = 17;
    const qint32 visit = addVisit(QString::number(foreign), "#11/19/2026#");
    openVisit(visit, [&] {
        EXPECT_EQ(value("Problema"), "") << "another patient's diagnosis is nobody's business here";
        EXPECT_EQ(control("Problema")->accessibleDescription(), "⚠ problema eliminato: sceglierne un altro");
        type("Text1_0", "scritto");
        boxOf(save, PromptButton::Yes);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(stored("id_Probl, anamnesi"), "0|scritto");
}

TEST_F(Visita2Test, ADayThatIsTakenDuringTheSaveIsToldAtOnce)
{
    openVisit(0, [&] {
        type("Text1_0", "scritto");
        const auto other = otherWorkstation();
        dao::Transaction theirs(otherWorkspace());
        other->Execute(
            "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg) VALUES (5, 17, #11/21/2026#)");
        pauses.actAt = 1;
        pauses.during = [&] { theirs.commit(); };
        EXPECT_EQ(boxOf(save), "Attenzione!|Esiste già una visita nella data indicata.|information");
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(value("Text1_0"), "scritto");
    });
}

TEST_F(Visita2Test, WhatAnotherWorkstationWroteIsNotReplacedUnasked)
{
    execute("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg, dLastModifiedDate) "
            "VALUES (0, 17, #11/01/2026#, #11/01/2026#)"); // no new visit is taken for it
    openVisit(0, [&] {
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    execute("DELETE * FROM VISITAPROBL");
    const qint32 visit = addVisit("NULL", "#11/19/2026#", "anamnesi, esameob", "'prima', 'prima'");
    execute("UPDATE VISITAPROBL SET dLastModifiedDate = #11/20/2026 09:00:00#");
    environment.doctors->Execute("INSERT INTO medici_gruppo (cod_smi, cognome, nome, idRowGuid) VALUES (2, "
                                 "'Verdi', 'Bruno', '{6C4C00A9-60AC-45AF-B5C3-FD30774041A6}')");
    openVisit(visit, [&] {
        type("Text1_0", "scritto qui");
        type("Text1_4", "nota");
        otherWorkstation()->Execute(
            QStringLiteral("UPDATE VISITAPROBL SET anamnesi = 'di là', esameob = 'di là', idtipo = 2, "
                           "dLastModifiedDate = #11/21/2026 10:05:00#, sAuthorUid = '%1'")
                .arg(bruno));
        const std::string told =
            "La visita è stata salvata da Bruno Verdi il 21/11/2026 alle 10:05, da un'altra postazione, "
            "mentre era in questa finestra.\n"
            "Tipo|Visita ambulatoriale|Visita domiciliare\n"
            "Anamnesi|scritto qui|di là\n"
            "Esame obiettivo|prima|di là\n"
            "Note|nota|";
        EXPECT_EQ(conflictOf(save, ConflictChoice::BackToEditing), told);
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(value("Text1_0") + '|' + value("Text1_4"), "scritto qui|nota");
        EXPECT_EQ(stored("anamnesi, esameob, txtNote, idtipo"), "di là|di là|Null|2");
        EXPECT_EQ(conflictOf(save, ConflictChoice::Mine), told) << "asked as often as it is saved";
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(stored("anamnesi, esameob, txtNote, idtipo"), "scritto qui|di là|nota|2")
        << "where nothing was written here, what was written there stays";

    openVisit(visit, [&] {
        type("Text1_0", "di nuovo qui");
        otherWorkstation()->Execute("UPDATE VISITAPROBL SET anamnesi = 'ancora di là'");
        EXPECT_EQ(
            conflictOf(save, ConflictChoice::Theirs),
            "La visita è stata salvata da un'altra postazione mentre era in questa finestra. Chi e quando "
            "non è registrato.\nAnamnesi|di nuovo qui|ancora di là")
            << "a program that leaves no stamp";
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(stored("anamnesi"), "ancora di là");
}

// A third workstation writes while the doctor looks at the two versions.
TEST_F(Visita2Test, WhatChangesWhileTheDoctorChoosesIsShownToo)
{
    const qint32 visit = addVisit("NULL", "#11/19/2026#");
    openVisit(visit, [&] {
        type("Text1_0", "qui");
        otherWorkstation()->Execute("UPDATE VISITAPROBL SET anamnesi = 'seconda'");
        QStringList seen;
        forms.act = [&] {
            auto &call = forms.call<ConflictCall>();
            seen.append(call.conflict.fields[5].stored);
            otherWorkstation()->Execute("UPDATE VISITAPROBL SET anamnesi = 'terza', esameob = 'terza'");
            call.choice = ConflictChoice::Mine;
        };
        click(save);
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(seen, (QStringList{"seconda", "terza"}));
    });
    EXPECT_EQ(stored("anamnesi, esameob"), "qui|terza");
}

// The form of conflicts cannot be shown: the doctor is told all the same, and nothing is lost.
TEST_F(Visita2Test, WithoutTheFormOfConflictsNothingIsReplaced)
{
    const qint32 visit = addVisit("NULL", "#11/19/2026#");
    openVisit(visit, [&] {
        type("Text1_0", "qui");
        otherWorkstation()->Execute("UPDATE VISITAPROBL SET anamnesi = 'altrove'");
        EXPECT_EQ(boxOf(save),
                  "Attenzione!|La visita è stata salvata da un'altra postazione mentre era in questa "
                  "finestra. Chi e quando non è registrato.\nNiente è stato salvato.|warning");
        EXPECT_TRUE(form.isVisible());
    });
    EXPECT_EQ(stored("anamnesi"), "altrove");
}

TEST_F(Visita2Test, ASaveThatFailsKeepsTheDialogOpen)
{
    openVisit(0, [&] {
        type("Text1_0", "scritto");
        {
            const RefusedRows refused(database(), "VISITAPROBL");
            EXPECT_EQ(boxOf(save), notSaved);
        }
        EXPECT_TRUE(form.isVisible());
        EXPECT_FALSE(asked.saved);
        QTest::keyClick(control("Text1_0"), Qt::Key_S, Qt::ControlModifier);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(stored("anamnesi"), "scritto");
}

} // namespace
} // namespace clivara
