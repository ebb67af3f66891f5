// SPDX-License-Identifier: Apache-2.0
#include "problems/DialogFixture.h"
#include "stays/Domiciliari_Gestione.h"

#include <QGroupBox>

namespace clivara {
namespace {

constexpr auto grid = "Griglia_Domiciliari";

class DomiciliariTest : public DialogFixture {
protected:
    DomiciliariTest()
    {
        for (const char *row : {"(7, 'Assistenza', 'ADI01', 'ADI')", "(9, 'Vaccinazione', 'VAC10', 'VAC')",
                                "(10, 'Senza codice', '', 'X')"})
            environment.codes->Execute(
                QStringLiteral("INSERT INTO TIPOVISITA (IdTipo, descr_tipo, CodiceReg, codice) VALUES ")
                + row);
    }
    void addEntry(int id, const char *date, const char *type, const char *note = "Null")
    {
        execute(QStringLiteral("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg, idtipo, txtNote) "
                               "VALUES (%1, 17, %2, %3, %4)")
                    .arg(id)
                    .arg(date)
                    .arg(type)
                    .arg(note));
    }
    std::string entries()
    {
        return clinical(
                   "SELECT IdVisitaProbl, DataReg, validita, idtipo FROM VISITAPROBL ORDER BY IdVisitaProbl")
            .join(u'/')
            .toStdString();
    }
    static constexpr auto fresh = "btGestione_0", edit = "btGestione_1", remove = "btGestione_2",
                          store = "btGestione_3", cancel = "btGestione_4";
    Domiciliari_Gestione form{state};
};

TEST_F(DomiciliariTest, TheKeyIsTakenWhenTheEntryIsWritten)
{
    open(form, [&] {
        key(grid, Qt::Key_Insert);
        EXPECT_FALSE(control("Frame1")->isEnabled());
        EXPECT_EQ(control<QGroupBox>("frDati")->title(), "Nuovo domiciliare");
        EXPECT_TRUE(control("dtEdit")->hasFocus());
        choose("cbTipoDomiciliare", "Assistenza");
        otherWorkstation()->Execute("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz) VALUES (90, 18)");
        {
            const RefusedRows refused(database(), "VISITAPROBL");
            EXPECT_EQ(boxOf(store), notSaved);
        }
        EXPECT_EQ(value("cbTipoDomiciliare"), "Assistenza");
        QTest::keyClick(&form, Qt::Key_S, Qt::ControlModifier);
        EXPECT_TRUE(control("Frame1")->isEnabled());
        EXPECT_TRUE(control(grid)->hasFocus());
        click("Btm_Uscita");
    });
    EXPECT_EQ(clinical("SELECT IdVisitaProbl, idtipo FROM VISITAPROBL WHERE cod_paz = 17"),
              QStringList("91|7"));
}

TEST_F(DomiciliariTest, BothValuesReachTheMailbox)
{
    struct Written : SettingsStore {
        QVariant read(const QString &, const QVariant &fallback) const override { return fallback; }
        void write(const QString &, const QVariant &value) override { values += value.toString(); }
        QStringList values;
    } mailbox;
    WorkingState other(Services{mailbox, clock, prompts, pauses, guids, middleware});
    other.environment = &environment;
    other.header = state.header;
    Domiciliari_Gestione watched(other);
    open(watched, [&] { click("Btm_Uscita"); });
    EXPECT_EQ(mailbox.values, (QStringList{"DIARIO", "PREVENZIONE"}));
    mailbox.values.clear();
    open(watched, [&] { watched.close(); });
    EXPECT_EQ(mailbox.values, QStringList("PREVENZIONE"));
}

TEST_F(DomiciliariTest, AnHourOfTheDayIsKeptAndMakesNoOtherEntry)
{
    addEntry(1, "#11/01/2026 15:30:00#", "7");
    open(form, [&] {
        click(edit);
        click(store);
        EXPECT_EQ(entries(), "1|2026-11-01 15:30:00|Null|7");
        click(fresh);
        control<QLineEdit>("dtEdit")->setText("01/11/2026");
        choose("cbTipoDomiciliare", "Assistenza");
        EXPECT_EQ(boxOf(store), "Attenzione!|Elemento già presente in elenco!|information");
        click(cancel);
        EXPECT_EQ(boxOf(remove, PromptButton::No),
                  "Attenzione!|Sei sicuro di voler eliminare l'elemento selezionato?|question");
        EXPECT_EQ(prompts.boxes.last().defaultButton, PromptButton::No);
        form.close();
    });
    EXPECT_EQ(entries(), "1|2026-11-01 15:30:00|Null|7");
}

TEST_F(DomiciliariTest, WhatAnotherWorkstationWroteSinceTheListWasReadIsShown)
{
    addEntry(1, "#11/01/2026#", "7");
    open(form, [&] {
        otherWorkstation()->Execute(
            "UPDATE VISITAPROBL SET idtipo = 9, validita = #12/01/2026#, txtNote = 'nota'");
        click(edit);
        control<QLineEdit>("dtEdit")->setText("02/11/2026");
        const std::string told = "L'elemento è stato salvato da un'altra postazione mentre era in questa "
                                 "finestra. Chi e quando non è "
                                 "registrato.\n"
                                 "Data Domiciliare|02/11/2026|01/11/2026\n"
                                 "Data Inizio Validità||01/12/2026\n"
                                 "Tipo|Assistenza|Vaccinazione";
        EXPECT_EQ(conflictOf(store, ConflictChoice::BackToEditing), told);
        EXPECT_TRUE(control("frDati")->isEnabled());
        EXPECT_EQ(conflictOf(store, ConflictChoice::Theirs), told);
        EXPECT_FALSE(control("frDati")->isEnabled());
        EXPECT_EQ(entries(), "1|2026-11-01 00:00:00|2026-12-01 00:00:00|9");
        EXPECT_EQ(rows(grid), QStringList("01/11/2026|Vaccinazione|01/12/2026")) << "the list is read again";

        // By its dialog a visit gets other types, too.
        otherWorkstation()->Execute("UPDATE VISITAPROBL SET idtipo = 1");
        click(edit);
        choose("cbTipoDomiciliare", "Assistenza");
        EXPECT_TRUE(conflictOf(store, ConflictChoice::BackToEditing)
                        .ends_with("\nTipo|Assistenza|Tipo 1 (non è una prestazione)"));
        click(cancel);

        otherWorkstation()->Execute("UPDATE VISITAPROBL SET idtipo = 7");
        click(edit);
        control<QLineEdit>("dtEdit")->setText("03/11/2026");
        conflictOf(store, ConflictChoice::Mine);
        EXPECT_FALSE(control("frDati")->isEnabled());
        form.close();
    });
    EXPECT_EQ(entries(), "1|2026-11-03 00:00:00|2026-12-01 00:00:00|7");
}

// The other one stores the same while this save waits to begin.
TEST_F(DomiciliariTest, TwoWorkstationsDoNotStoreTheSameTypeAndDay)
{
    const auto other = otherWorkstation();
    open(form, [&] {
        click(fresh);
        choose("cbTipoDomiciliare", "Assistenza");
        std::optional<dao::Transaction> theirs(std::in_place, otherWorkspace());
        other->Execute("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg, idtipo) "
                       "VALUES (5, 17, #11/21/2026 08:00:00#, 7)");
        pauses.actAt = 1;
        pauses.during = [&] { theirs->commit(); };
        EXPECT_EQ(boxOf(store), "Attenzione!|Elemento già presente in elenco!|information");
        EXPECT_EQ(rows(grid), QStringList("21/11/2026|Assistenza|")) << "as the message says";
        EXPECT_TRUE(control("frDati")->isEnabled());
        EXPECT_TRUE(control("dtEdit")->hasFocus());
        choose("cbTipoDomiciliare", "Vaccinazione");
        click(store);
        EXPECT_EQ(rows(grid).size(), 2) << "another type is another entry";
        form.close();
    });
    EXPECT_EQ(entries(), "5|2026-11-21 08:00:00|Null|7/6|2026-11-21 00:00:00|Null|9");
}

TEST_F(DomiciliariTest, WhatAVisitHoldsBesidesIsNotDeletedUnsaid)
{
    const QString plain = "Attenzione!|Sei sicuro di voler eliminare l'elemento selezionato?";
    const QString besides = "\nÈ anche una visita, e con l'elemento si elimina quanto vi è scritto: ";
    addEntry(1, "#11/01/2026#", "7");
    const std::pair<const char *, QString> cases[]{
        {"anamnesi = ' '", plain}, // nothing but blanks
        {"id_Probl = 3", plain + besides + "Problema associato."},
        {"id_Probl = 0, anamnesi = 'a', txtNote = 'n', SINTOMO = 'S01'",
         plain + besides + "Sintomo, Anamnesi, Note."},
    };
    open(form, [&] {
        for (const auto &[set, question] : cases) {
            otherWorkstation()->Execute(QStringLiteral("UPDATE VISITAPROBL SET ") + QString::fromUtf8(set));
            EXPECT_EQ(QString::fromStdString(boxOf(remove, PromptButton::No)), question + "|question");
            EXPECT_EQ(prompts.boxes.last().defaultButton, PromptButton::No);
        }
        // More is written while the doctor is asked, without a stamp.
        QStringList told = visitContents(database(), 1);
        otherWorkstation()->Execute("UPDATE VISITAPROBL SET esameob = 'e'");
        LastWrite seen;
        EXPECT_EQ(deleteHomeCare(state, 1, seen, told), WriteResult::Changed);
        EXPECT_EQ(told, (QStringList{"Sintomo", "Anamnesi", "Esame obiettivo", "Note"}));
        state.header.patientCode = 18;
        EXPECT_EQ(deleteHomeCare(state, 1, seen, told), WriteResult::Vanished) << "not this patient's";
        state.header.patientCode = 17;
        boxOf(remove, PromptButton::Yes);
        EXPECT_EQ(entries(), "");
        form.close();
    });
}

} // namespace
} // namespace clivara
