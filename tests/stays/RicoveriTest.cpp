// SPDX-License-Identifier: Apache-2.0
#include "controls/CompletingBox.h"
#include "controls/MaskedDateEdit.h"
#include "controls/ReportView.h"
#include "problems/DialogFixture.h"
#include "stays/Ricoveri_Gestione.h"
#include "stays/Ricoveri_Inserimento.h"

#include <QClipboard>
#include <QCompleter>

namespace clivara {
namespace {

class RicoveriTest : public DialogFixture {
protected:
    RicoveriTest()
    {
        environment.codes->Execute("INSERT INTO reparth VALUES ('01', 'Cardiologia')");
        execute("INSERT INTO sedericov (denominazione) VALUES ('Ospedale Sant''Anna')");
        execute("INSERT INTO sedericov (denominazione) VALUES ('Clinica Santa Lucia')");
    }
    void addStay(const char *admitted, const char *discharged, const char *hospital)
    {
        execute(QStringLiteral("INSERT INTO ricoveri2 (cod_paz, data_accesso, data_fineric, sede, reparto) "
                               "VALUES (17, %1, %2, '%3', 'Cardiologia')")
                    .arg(admitted, discharged, hospital));
    }
    void openStay(qint32 id, const std::function<void()> &act)
    {
        asked = {};
        if (id != 0)
            asked.stay = id;
        dialog.take(asked);
        open(dialog, act);
    }
    void typeHospital(const QString &text) const
    {
        auto *const field = control<QComboBox>("Combo1")->lineEdit();
        field->setFocus(Qt::TabFocusReason);
        field->selectAll();
        QApplication::clipboard()->setText(text);
        field->paste();
    }
    std::string stays()
    {
        return clinical("SELECT sede, reparto, data_accesso, data_fineric FROM ricoveri2 ORDER BY idRicovero")
            .join(u'/')
            .toStdString();
    }
    std::string hospitalList()
    {
        return clinical("SELECT denominazione FROM sedericov ORDER BY denominazione")
            .join(u'/')
            .toStdString();
    }

    static constexpr auto memorise = "Btm_Memorizza";
    Ricoveri_Inserimento dialog{state};
    StayCall asked;
};

TEST_F(RicoveriTest, TheListMarksWhoIsStillInHospitalAndTellsTheLength)
{
    addStay("#11/10/2026#", "Null", "Clinica Santa Lucia");
    addStay("#11/01/2026#", "#11/06/2026#", "Clinica Santa Lucia");
    addStay("#11/08/2026#", "#11/07/2026#", "Clinica Santa Lucia");
    addStay("#11/09/2026#", "Null", "Clinica Santa Lucia"); // and never closed
    addStay("Null", "Null", "Clinica Santa Lucia");
    execute("INSERT INTO ricoveri2 (cod_paz, data_accesso) VALUES (18, #11/01/2026#)"); // of another patient
    Ricoveri_Gestione form(state);
    open(form, [&] {
        EXPECT_EQ(form.windowTitle(), "Ricoveri");
        EXPECT_EQ(columns("Griglia_Ricoveri"),
                  (QStringList{"Data accesso", "Data uscita", "Sede", " reparto"}));
        EXPECT_EQ(rows("Griglia_Ricoveri"),
                  (QStringList{"||Clinica Santa Lucia|Cardiologia",
                               "01/11/2026|06/11/2026|Clinica Santa Lucia|Cardiologia",
                               "08/11/2026|07/11/2026|Clinica Santa Lucia|Cardiologia",
                               "09/11/2026||Clinica Santa Lucia|Cardiologia",
                               "10/11/2026||Clinica Santa Lucia|Cardiologia"}));
        const auto *const model = control<QTreeView>("Griglia_Ricoveri")->model();
        const auto cell = [&](int row, int column, int role) {
            return model->index(row, column).data(role).toString().section('\n', 0, 0).toStdString();
        };
        EXPECT_EQ(cell(1, 2, Qt::ToolTipRole), "Durata: 5 giorni.");
        EXPECT_EQ(cell(2, 0, Qt::ToolTipRole), "La fine del ricovero precede l'accesso.");
        EXPECT_EQ(cell(3, 0, Qt::ToolTipRole), "Uscita non indicata, accesso 12 giorni fa.");
        EXPECT_EQ(cell(4, 3, Qt::ToolTipRole), "Ancora in ospedale, da 11 giorni.");
        const char *const hints[]{"uscita non indicata", "", "", "uscita non indicata", "in ospedale"};
        for (int row = 0; row < 5; ++row)
            EXPECT_EQ(cell(row, 1, HintRole), hints[row]) << row;
        EXPECT_EQ(cell(4, 0, Qt::AccessibleTextRole), "10/11/2026, in ospedale");
        EXPECT_EQ(text("lblDurata"), "Ancora in ospedale, da 11 giorni.")
            << "of the selected stay, the newest";
        EXPECT_TRUE(control("Griglia_Ricoveri")->hasFocus());
        key("Griglia_Ricoveri", Qt::Key_Home);
        EXPECT_EQ(text("lblDurata"), "Date di accesso e di uscita non indicate.");
        clickRow("Griglia_Ricoveri", "2");
        forms.act = [&] { EXPECT_EQ(forms.call<StayCall>().stay, 3); };
        key("Griglia_Ricoveri", Qt::Key_Return);
        EXPECT_EQ(forms.take(), "Ricoveri_Inserimento");
        EXPECT_EQ(control<QTreeView>("Griglia_Ricoveri")->currentIndex().row(), 2);
        QTest::keyClick(control("Griglia_Ricoveri"), Qt::Key_Escape);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(settings.text("AGGIORNA_DIARIO"), "DIARIO");
}

TEST_F(RicoveriTest, ALongNameIsNeverCut)
{
    openStay(0, [&] {
        choose("Combo2", "Cardiologia");
        typeHospital(QString(200, 'x'));
        EXPECT_TRUE(control("lblSede")->isVisible());
        EXPECT_EQ(boxOf(memorise),
                  "Attenzione!|La sede ha 200 caratteri: può averne al massimo 80.\nAccorciarla.|warning");
        EXPECT_EQ(control<CompletingBox>("Combo1")->text().size(), 200);
        typeHospital(QString(80, 'x'));
        EXPECT_FALSE(control("lblSede")->isVisible());
        EXPECT_EQ(boxOf(memorise, PromptButton::Yes),
                  "Attenzione|Si desidera inserire l'elenco Sedi?|question");
        EXPECT_EQ(prompts.boxes.last().defaultButton, PromptButton::No);
    });
    EXPECT_EQ(stays(), std::string(80, 'x') + "|Cardiologia|2026-11-21 00:00:00|Null");
    EXPECT_EQ(hospitalList(), "Clinica Santa Lucia/Ospedale Sant'Anna/" + std::string(80, 'x'));
}

TEST_F(RicoveriTest, TheDialogSaysInHospitalOfTheNewestStayOnly)
{
    addStay("#11/01/2026#", "Null", "Clinica Santa Lucia");
    addStay("#11/10/2026#", "Null", "Clinica Santa Lucia");
    openStay(1, [&] {
        EXPECT_EQ(text("lblDurata"), "Uscita non indicata, accesso 20 giorni fa.");
        type("Data_Dom", "12/11/2026");
        EXPECT_EQ(text("lblDurata"), "Ancora in ospedale, da 9 giorni.");
        type("Data_Dom", "31/02/2026");
        EXPECT_EQ(boxOf(memorise), "Attenzione|E' necessario inserire la data.\n"
                                   "Quella scritta, 31/02/2026, è impossibile.|question");
        type("Data_Dom", "");
        EXPECT_EQ(boxOf(memorise), "Attenzione|E' necessario inserire la data.|question");
    });
    state.header.patientCode = 18; // who has no other stay
    openStay(0, [&] { EXPECT_EQ(text("lblDurata"), "Ancora in ospedale, da oggi."); });
    EXPECT_EQ(clinical("SELECT data_accesso FROM ricoveri2 ORDER BY idRicovero"),
              (QStringList{"2026-11-01 00:00:00", "2026-11-10 00:00:00"}));
}

// What the doctor answered for one patient's stay is not taken for another's.
TEST_F(RicoveriTest, TheNewestStayIsThatOfThisPatient)
{
    addStay("#11/10/2026#", "Null", "Clinica Santa Lucia");
    execute("INSERT INTO ricoveri2 (cod_paz, data_accesso) VALUES (18, #11/20/2026#)");
    for (const auto &[patient, length] : {std::pair(18, "Ancora in ospedale, da 1 giorno."),
                                          std::pair(17, "Ancora in ospedale, da 11 giorni.")}) {
        state.header.patientCode = patient;
        openStay(patient == 17 ? 1 : 2, [&] { EXPECT_EQ(text("lblDurata"), length) << patient; });
    }
}

// A stay that is not saved does not extend the list of hospitals; the answer holds for this stay only.
TEST_F(RicoveriTest, TheDoctorIsAskedOnceForEachStayWhetherToExtendTheList)
{
    const auto before = hospitalList();
    const auto trySaving = [&] {
        choose("Combo2", "Cardiologia");
        typeHospital("L'Aquila");
        const RefusedRows refused(database(), "ricoveri2");
        prompts.queue(PromptButton::Yes);
        prompts.queue();
        click(memorise);
        EXPECT_EQ(prompts.last().toStdString(), notSaved);
        EXPECT_EQ(hospitalList(), before);
        EXPECT_EQ(control<CompletingBox>("Combo1")->text(), "L'Aquila");
        EXPECT_FALSE(asked.saved);
    };
    openStay(0, [&] {
        trySaving();
        click("Btm_Esci");
    });
    state.header.patientCode = 18;
    openStay(0, [&] {
        choose("Combo2", "Cardiologia");
        typeHospital("L'Aquila");
        EXPECT_EQ(boxOf(memorise, PromptButton::No),
                  "Attenzione|Si desidera inserire l'elenco Sedi?|question");
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_EQ(hospitalList(), before);
    EXPECT_EQ(clinical("SELECT cod_paz, sede FROM ricoveri2"), QStringList("18|L'Aquila"));
    openStay(0, [&] {
        trySaving();
        click(memorise); // the doctor has answered already
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_EQ(hospitalList(), "Clinica Santa Lucia/L'Aquila/Ospedale Sant'Anna");
    EXPECT_EQ(asked.saved, 2);
}

TEST_F(RicoveriTest, TypingProposesTheHospitalsThatContainIt)
{
    openStay(0, [&] {
        auto *const box = control<QComboBox>("Combo1");
        box->lineEdit()->setFocus(Qt::TabFocusReason);
        QTest::keyClicks(box->lineEdit(), "SANT'");
        const QCompleter *const names = box->completer();
        EXPECT_EQ(names->completionCount(), 1);
        EXPECT_TRUE(names->popup()->isVisible());
        control("Combo2")->setFocus(Qt::ShortcutFocusReason);
        EXPECT_FALSE(names->popup()->isVisible()) << "it would take the keys of the next field";
        EXPECT_EQ(box->currentText(), "SANT'");
        click("Btm_Esci");
    });
    EXPECT_EQ(stays(), "");
}

TEST_F(RicoveriTest, WhatAnotherWorkstationWroteIsReplacedOnlyWhenTheDoctorSaysSo)
{
    addStay("#11/10/2026#", "Null", "Clinica Santa Lucia");
    openStay(1, [&] {
        typeHospital("Ospedale Sant'Anna");
        control("Data_Val")->setFocus(Qt::TabFocusReason);
        otherWorkstation()->Execute("UPDATE ricoveri2 SET data_fineric = #11/12/2026#, sede = 'Altrove', "
                                    "dLastModifiedDate = #11/21/2026 09:00:00#");
        const std::string told = "Il ricovero è stato salvato il 21/11/2026 alle 09:00, da un'altra "
                                 "postazione, mentre era in questa "
                                 "finestra. Chi non è registrato.\n"
                                 "Data fine ricovero||12/11/2026\n"
                                 "Sede|Ospedale Sant'Anna|Altrove";
        EXPECT_EQ(conflictOf(memorise, ConflictChoice::BackToEditing), told);
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(stays(), "Altrove|Cardiologia|2026-11-10 00:00:00|2026-11-12 00:00:00");
        EXPECT_EQ(conflictOf(memorise, ConflictChoice::Mine), told);
        EXPECT_FALSE(dialog.isVisible());
    });
    EXPECT_EQ(stays(), "Ospedale Sant'Anna|Cardiologia|2026-11-10 00:00:00|2026-11-12 00:00:00");
}

TEST_F(RicoveriTest, WhatAnotherWorkstationWroteIsNotDeletedUnseen)
{
    addStay("#11/10/2026#", "Null", "Clinica Santa Lucia");
    Ricoveri_Gestione list(state);
    open(list, [&] {
        otherWorkstation()->Execute("UPDATE ricoveri2 SET dLastModifiedDate = #11/21/2026 09:00:00#");
        prompts.queue(PromptButton::Ok);
        prompts.queue(PromptButton::No);
        click("Btm_Elimina");
        EXPECT_EQ(prompts.last().section('\n', 0, 0),
                  "Attenzione!|Il ricovero è stato salvato il 21/11/2026 alle 09:00, da un'altra postazione, "
                  "mentre era in questa finestra. Chi non è registrato.");
        EXPECT_EQ(clinical("ricoveri2").size(), 1);
        prompts.queue(PromptButton::Ok);
        click("Btm_Elimina");
        EXPECT_TRUE(clinical("ricoveri2").isEmpty());
        list.close();
    });
}

} // namespace
} // namespace clivara
