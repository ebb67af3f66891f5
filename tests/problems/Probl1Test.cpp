// SPDX-License-Identifier: Apache-2.0
#include "problems/Probl1.h"

#include "DialogFixture.h"

namespace clivara {
namespace {

// Notes what it is sent and answers as told.
struct NotedConnector : RegionalConnector {
    QString send(qint32 key, qint32 patientCode, const QString &reference) override
    {
        sent.append(QStringLiteral("%1|%2|%3").arg(key).arg(patientCode).arg(reference));
        return answer;
    }
    QStringList sent;
    QString answer;
};

class Probl1Test : public DialogFixture {
protected:
    void open(Probl1 &form, const std::function<void()> &act)
    {
        form.take(asked);
        DialogFixture::open(form, act);
    }
    // The problems' own fields, as they are stored; a line each.
    std::string stored()
    {
        return clinical(
                   "SELECT descr_mal, CodICDSospetto, stato_probl, dataapertura, dataInizio, datachiusura, "
                   "anamnesi, esameob, conclusioni, pianificazione FROM PROBLEMS ORDER BY idProblems")
            .join(u'/')
            .toStdString();
    }
    qsizetype count() { return clinical("SELECT idProblems FROM PROBLEMS").size(); }
    std::string diagnosis() const { return value("Problema"); }
    // The picker's answer.
    void answer(const char *code, const char *name)
    {
        forms.act = [this, code, name] {
            settings.write("CODICE DIAGNOSI", code);
            settings.write("DIAGNOSI", name);
        };
    }

    ProblemCall asked;
};

TEST_F(Probl1Test, ANewProblemIsOpenAndOfToday)
{
    Probl1 form(state);
    open(form, [&] {
        EXPECT_EQ(form.windowTitle(), "Nuovo problema");
        EXPECT_EQ(values("MaskEdBox1 MaskEdBox2 MaskEdBox3 Combo1"),
                  "21-11-2026|21-11-2026|__-__-____|Aperto");
        QStringList states;
        for (int i = 0; i < control<QComboBox>("Combo1")->count(); ++i)
            states.append(control<QComboBox>("Combo1")->itemText(i));
        EXPECT_EQ(states, (QStringList{"<non specificato>", "Aperto", "Chiuso", "Cronico"}));
        EXPECT_EQ(diagnosis() + value("txtDescr") + value("Text1_0") + value("Text1_3"), "");

        type("txtDescr", "Dolore all'anca 100% *[x]");
        type("Text1_0", "prima riga\rseconda");
        type("Text1_1", "  ");
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(
        stored(),
        "Dolore all'anca 100% *[x]||1|2026-11-21 00:00:00|2026-11-21 00:00:00|Null|prima riga\r\nseconda|||");
    EXPECT_EQ(clinical("SELECT cod_paz, idProblems FROM PROBLEMS"),
              QStringList(QStringLiteral("17|%1").arg(*asked.saved)))
        << "the caller is told which one it is";

    asked.problem.reset();
    open(form, [&] {
        EXPECT_EQ(value("txtDescr") + value("Text1_0"), "") << "opened again it is another new one";
        QTest::keyClick(&form, Qt::Key_Escape);
    });
    EXPECT_EQ(count(), 1);
}

TEST_F(Probl1Test, WhatTheDoctorDoesNotEditStaysAsItIs)
{
    asked.problem = addProblem("zzz", "due\r\nrighe", {}, 7);
    const auto table = environment.clinical->OpenRecordset("PROBLEMS");
    table->Edit();
    table->Fields("anamnesi").setValue(awkwardText());
    table->Fields("esameob").setValue("solo\nLF\u00a0e\tblanks  ");
    table->Fields("conclusioni").setValue("da\r\nmodificare");
    table->Fields("pianificazione").setValue(QString());
    table->Fields("datachiusura").setValue(jet::dateTime(QDate(1925, 6, 7)));
    table->Update();
    const std::string before = stored();

    Probl1 form(state);
    open(form, [&] {
        EXPECT_EQ(form.windowTitle(), "Modifica dati problema");
        EXPECT_EQ(diagnosis(), "zzz") << "a code that no list has";
        EXPECT_EQ(values("MaskEdBox1 MaskEdBox2 MaskEdBox3"), "01-01-1980|01-01-1980|07-06-1925");
        EXPECT_EQ(value("Combo1"), "") << "a state that the list does not have";
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(stored(), before);

    open(form, [&] {
        type("Text1_2", "e' nuovo\rtesto");
        control<QPlainTextEdit>("Text1_2")->insertPlainText(" «è»\u00a0");
        type("MaskEdBox1", "01-01-1980"); // typed, it is a date like another
        choose("Combo1", "Cronico");
        click(save);
    });
    EXPECT_EQ(clinical("SELECT descr_mal, stato_probl, dataapertura, dataInizio, conclusioni FROM PROBLEMS"),
              QStringList("due\r\nrighe|3|1980-01-01 00:00:00|Null|e' nuovo\r\ntesto «è»\u00a0"));
    EXPECT_EQ(clinical("SELECT anamnesi, esameob FROM PROBLEMS"),
              QStringList(awkwardText() + QStringLiteral("|solo\nLF\u00a0e\tblanks  ")));
}

TEST_F(Probl1Test, LongAwkwardTextsAreSavedAsTheyWerePasted)
{
    Probl1 form(state);
    const QString text = awkwardText().trimmed();
    open(form, [&] {
        control<QLineEdit>("txtDescr")->insert(QString(255, '%'));
        for (const char *field : {"Text1_0", "Text1_1", "Text1_2", "Text1_3"})
            control<QPlainTextEdit>(field)->insertPlainText(text);
        click(save);
    });
    EXPECT_EQ(clinical("SELECT anamnesi, esameob, conclusioni, pianificazione, descr_mal FROM PROBLEMS"),
              QStringList((text + u'|').repeated(4) + QString(255, '%')));
}

TEST_F(Probl1Test, NothingOfATooLongDescriptionIsLostUnseen)
{
    Probl1 form(state);
    open(form, [&] {
        auto *const description = control<QLineEdit>("txtDescr");
        description->insert(QString(60000, 'x'));
        EXPECT_TRUE(control("descriptionNote")->isVisible());
        const std::string box = boxOf(save);
        EXPECT_NE(box.find("può averne al massimo 255."), std::string::npos) << box;
        EXPECT_NE(box.find("|warning"), std::string::npos) << box;
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(description->text().size(), 60000);
        description->setSelection(255, 60000);
        description->insert({});
        EXPECT_FALSE(control("descriptionNote")->isVisible());
        click(save);
    });
    EXPECT_EQ(clinical("SELECT descr_mal FROM PROBLEMS"), QStringList(QString(255, 'x')));
}

TEST_F(Probl1Test, RefusesNothingAndTheSameTwice)
{
    addProblem("250.00", "Diabete");
    const qint32 described = addProblem("", "Dolore dell'anca");
    execute("INSERT INTO PROBLEMS (cod_paz, CodICDSospetto) VALUES (18, '401.9')");
    const auto known = "Attenzione!|Il problema selezionato è già stato inserito.|information";
    Probl1 form(state);
    open(form, [&] {
        type("Text1_3", "piano");
        type("txtDescr", "  ");
        EXPECT_EQ(boxOf(save),
                  "Attenzione!|E' necessario selezionare un problema o inserire una descrizione!|warning");
        type("txtDescr", "dolore DELL'anca");
        EXPECT_EQ(boxOf(save), known);
        answer("250.00", "Diabete mellito tipo 2");
        click("Problema");
        EXPECT_EQ(boxOf(save), known);
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(diagnosis() + '|' + value("txtDescr") + '|' + value("Text1_3"),
                  "Diabete mellito tipo 2|dolore DELL'anca|piano");
        answer("401.9", "Ipertensione"); // another patient's
        click("Problema");
        type("txtDescr", "");
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    asked.problem = described;
    open(form, [&] { click(save); });
    EXPECT_FALSE(form.isVisible()) << "a problem is no duplicate of itself";
    EXPECT_EQ(count(), 4);
}

TEST_F(Probl1Test, TheDiagnosisIsPickedKeptAndTakenAway)
{
    asked.problem = addProblem("ML001", "");
    Probl1 form(state);
    open(form, [&] {
        EXPECT_EQ(diagnosis(), "CATARRO D'ESTATE");
        forms.act = {}; // the picker cannot be opened
        click("Problema");
        EXPECT_EQ(forms.take(), "RicercaDiagnosi");
        EXPECT_EQ(settings.text("CODICE DIAGNOSI"), "ML001") << "where the picker starts";
        EXPECT_EQ(diagnosis(), "CATARRO D'ESTATE");
        forms.act = [&] { settings.write("DIAGNOSI", "*ABORT*"); };
        QTest::keyClick(control("Problema"), Qt::Key_Return);
        EXPECT_EQ(diagnosis(), "CATARRO D'ESTATE") << "whoever cancels keeps what was there";
        answer("250.00", "Febbre & tosse");
        click("Problema");
        EXPECT_EQ(diagnosis(), "Febbre && tosse");
        click("Togli");
        EXPECT_EQ(diagnosis(), "");
        EXPECT_FALSE(control("Togli")->isEnabled());
        boxOf(save);
        answer("250.00", "Diabete");
        click("Problema");
        click(save);
    });
    EXPECT_EQ(clinical("SELECT CodICDSospetto FROM PROBLEMS"), QStringList("250.00"));
}

TEST_F(Probl1Test, OnlyAClosedProblemTakesAClosingDate)
{
    asked.problem = addProblem("", "Frattura", QDate(2026, 5, 5));
    Probl1 form(state);
    open(form, [&] {
        EXPECT_FALSE(control("MaskEdBox3")->isEnabled());
        choose("Combo1", "Cronico");
        EXPECT_FALSE(control("MaskEdBox3")->isEnabled());
        choose("Combo1", "Chiuso");
        control("MaskEdBox3")->setFocus(Qt::TabFocusReason);
        EXPECT_EQ(value("MaskEdBox3"), "21-11-2026") << "today, when it is entered empty";
        type("MaskEdBox3", "1-5-26");
        control("Text1_0")->setFocus();
        EXPECT_EQ(value("MaskEdBox3"), "01-05-2026");
        click(save);
    });
    EXPECT_EQ(stored(), "Frattura||2|Null|2026-05-05 00:00:00|2026-05-01 00:00:00||||")
        << "before its start is accepted, and no other date came up";
    open(form, [&] {
        type("MaskEdBox3", "");
        control("Text1_0")->setFocus();
        settle();
        EXPECT_EQ(value("MaskEdBox3"), "__-__-____") << "an unknown date is no wrong one";
        click(save);
    });
    EXPECT_EQ(stored(), "Frattura||2|Null|2026-05-05 00:00:00|Null||||");
}

TEST_F(Probl1Test, AWrongDateIsToldOnceAndLedBackTo)
{
    const auto wrong = std::string("Attenzione!|Data non valida !|warning");
    Probl1 form(state);
    open(form, [&] {
        choose("Combo1", "Chiuso");
        type("txtDescr", "Tosse");
        for (const char *text : {"31-02-2026", "29-02-2023", "12-31-2026", "5-", "01-01-0"}) {
            type("MaskEdBox2", text);
            prompts.queue();
            QTest::keyClick(control("MaskEdBox2"), Qt::Key_Tab);
            settle();
            EXPECT_EQ(prompts.last().toStdString(), wrong) << text;
            EXPECT_TRUE(control("MaskEdBox2")->hasFocus()) << text;
            EXPECT_EQ(value("MaskEdBox3"), "__-__-____") << "passed by on the way, not entered";
        }
        EXPECT_EQ(boxOf(save), wrong);
        EXPECT_TRUE(control("MaskEdBox2")->hasFocus());
        EXPECT_TRUE(form.isVisible());
        control(leave)->setFocus(Qt::MouseFocusReason); // asks nothing any more
        control("MaskEdBox2")->setFocus();
        QTest::keyClick(&form, Qt::Key_Escape);
        settle();
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(prompts.boxes.size(), 6);
    EXPECT_EQ(count(), 0);
}

TEST_F(Probl1Test, TheKeyboardWritesAndSaves)
{
    Probl1 form(state);
    open(form, [&] {
        QTest::keyClick(control("Problema"), Qt::Key_Tab);
        QTest::keyClicks(control("txtDescr"), "Tosse");
        EXPECT_TRUE(control("txtDescr")->hasFocus()) << "there is nothing to take away";
        QTest::keyClick(control("txtDescr"), Qt::Key_Return);
        EXPECT_TRUE(form.isVisible()) << "Enter does not save half a problem";
        EXPECT_TRUE(control("Combo1")->hasFocus());
        for (const char *text : {"Text1_0", "Text1_1", "Text1_2"}) {
            control(text)->setFocus();
            QTest::keyClick(control(text), Qt::Key_Tab);
        }
        EXPECT_TRUE(control("Text1_3")->hasFocus());
        QTest::keyClicks(control("Text1_3"), "a");
        QTest::keyClick(control("Text1_3"), Qt::Key_Return);
        QTest::keyClicks(control("Text1_3"), "b");
        QTest::keyClick(control("Text1_3"), Qt::Key_S, Qt::ControlModifier);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(clinical("SELECT descr_mal, pianificazione FROM PROBLEMS"), QStringList("Tosse|a\r\nb"));
    asked.problem = asked.saved;
    open(form, [&] {
        type("Text1_3", "c");
        QTest::keyClick(control("Text1_3"), Qt::Key_Return, Qt::ControlModifier);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(clinical("SELECT pianificazione FROM PROBLEMS"), QStringList("c"));
}

TEST_F(Probl1Test, AProblemDeletedBeforeItIsOpenedIsSaidToBe)
{
    asked.problem = 4711;
    Probl1 form(state);
    form.take(asked);
    prompts.queue();
    EXPECT_THROW(form.showModal(), dao::Error);
    EXPECT_EQ(prompts.last(), "Attenzione!|Il problema è stato eliminato da un'altra postazione.|warning");
    EXPECT_FALSE(form.isVisible());
}

TEST_F(Probl1Test, WhatAnotherWorkstationWroteIsNotReplacedUnasked)
{
    asked.problem = addProblem("", "Tosse", QDate(2026, 5, 5));
    Probl1 form(state);
    open(form, [&] {
        type("Text1_0", "di qua");
        answer("ML001", "Catarro");
        click("Problema");
        forms.take();
        otherWorkstation()->Execute("UPDATE PROBLEMS SET anamnesi = 'di là', stato_probl = 2, dataChiusura = "
                                    "#11/20/2026#, CodICDSospetto = '250.00', pianificazione = 'controllo', "
                                    "dLastModifiedDate = #11/21/2026 10:10:00#");
        const std::string told =
            "Il problema è stato salvato il 21/11/2026 alle 10:10, da un'altra postazione, mentre era in "
            "questa finestra. Chi non è registrato.\n"
            "Problema|[ML001] CATARRO D'ESTATE|[250.00] Diabete mellito tipo 2\n"
            "Stato|Aperto|Chiuso\n"
            "Data chiusura||20-11-2026\n"
            "Sintomi|di qua|di là\n"
            "Pianificazione||controllo";
        EXPECT_EQ(conflictOf(save, ConflictChoice::BackToEditing), told);
        EXPECT_EQ(value("Text1_0") + '|' + value("Text1_3"), "di qua|") << "as it was";
        EXPECT_EQ(clinical("SELECT anamnesi FROM PROBLEMS"), QStringList("di là"));
        {
            // What the doctor chose cannot be written yet: the dialog shows what will be.
            const RefusedRows refused(database(), "PROBLEMS");
            prompts.queue();
            EXPECT_EQ(conflictOf(save, ConflictChoice::Mine), told);
            EXPECT_EQ(prompts.last().toStdString(), notSaved);
        }
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(values("Text1_0 Text1_3 Combo1 MaskEdBox3"), "di qua|controllo|Chiuso|20-11-2026");
        click(save);
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(forms.take(), "") << "both versions were seen";
    });
    EXPECT_EQ(stored(), "Tosse|ML001|2|Null|2026-05-05 00:00:00|2026-11-20 00:00:00|di qua|||controllo");

    // A second problem of the same description, written elsewhere while this save was waiting.
    asked.problem.reset();
    const auto other = otherWorkstation();
    std::optional<dao::Transaction> theirs;
    pauses.taken.clear();
    pauses.actAt = 1;
    pauses.during = [&] { theirs->commit(); };
    open(form, [&] {
        type("txtDescr", "Febbre");
        theirs.emplace(otherWorkspace());
        other->Execute("INSERT INTO PROBLEMS (cod_paz, descr_mal) VALUES (17, 'febbre')");
        EXPECT_EQ(boxOf(save), "Attenzione!|Il problema selezionato è già stato inserito.|information");
        EXPECT_TRUE(form.isVisible());
    });
    EXPECT_EQ(count(), 2);
    asked.problem = addProblem("", "FEBBRE"); // there twice by now
    open(form, [&] {
        type("Text1_0", "modificato");
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
}

TEST_F(Probl1Test, ASaveThatFailsKeepsTheDialogOpen)
{
    Probl1 form(state);
    open(form, [&] {
        type("txtDescr", "Tosse");
        type("Text1_0", "scritto");
        {
            const RefusedRows refused(database(), "PROBLEMS");
            EXPECT_EQ(boxOf(save), notSaved);
        }
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(value("txtDescr") + value("Text1_0"), "Tossescritto");
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
        state.environment = nullptr; // an error already while looking for duplicates
        EXPECT_NE(boxOf(save).find("Salvataggio non riuscito: l'archivio non si può scrivere (errore 3219)"),
                  std::string::npos);
        state.environment = &environment;
        click(save);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(logged().filter("Clivara.Probl1.Salva - Error ").size(), 1);
}

TEST_F(Probl1Test, TellsTheRegionOfASavedProblem)
{
    NotedConnector connector;
    WorkingState networked{Services{settings, clock, prompts, pauses, guids, middleware, &connector}};
    networked.environment = &environment;
    networked.header = state.header;
    networked.forms = &forms;
    settings.write("OSM_ASRIFT", "RIF1");
    Probl1 form(networked);
    const auto saveNew = [&](const char *network, const char *active) {
        settings.write("TIPORETE", network);
        settings.write("MIR_ATTIVO", active);
        asked = {};
        open(form, [&] {
            type("txtDescr", QString("%1 %2").arg(network, active));
            click(save);
            EXPECT_FALSE(form.isVisible());
        });
    };
    saveNew("0", "-1");
    saveNew("1", "0");
    saveNew("1", "");
    saveNew("2", "vero");
    EXPECT_TRUE(connector.sent.isEmpty());

    prompts.queue();
    saveNew("1", "-1");
    EXPECT_EQ(connector.sent, QStringList(QStringLiteral("%1|17|RIF1").arg(*asked.saved)));
    EXPECT_EQ(prompts.last(), "OSM connector|Operazione effettuata con successo.|information");
    connector.answer = "Servizio non raggiungibile";
    prompts.queue();
    saveNew("1", "vero");
    EXPECT_EQ(prompts.last(), "OSM connector|Servizio non raggiungibile|warning");
    EXPECT_EQ(count(), 6) << "saved all the same";
}

} // namespace
} // namespace clivara
