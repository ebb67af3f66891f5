// SPDX-License-Identifier: Apache-2.0
#include "problems/Problemi.h"

#include "ListFixture.h"
#include "problems/Probl1.h"
#include "problems/VisitCommands.h"

#include <QContextMenuEvent>
#include <QMenu>

namespace clivara {
namespace {

constexpr auto problems = "ReportControl1_0";
constexpr auto items = "ReportControl1_1";

class ProblemiTest : public ListFixture {
protected:
    ProblemiTest()
    {
        execute("INSERT INTO SPEFAR (CODSPE, SPECIALITA) VALUES ('M1', 'METFORMINA 500')");
        execute("INSERT INTO ESAMI VALUES (1, 'Esami di laboratorio')");
    }

    int selected() const { return control<QTreeView>(problems)->currentIndex().row(); }
    bool isShown(const char *name) const { return control(name)->isVisible(); }
    QStringList formTrace() const
    {
        QStringList lines;
        for (const QString &line : logged()) {
            if (line.startsWith("+---") || line.contains(" - Error "))
                lines.append(line);
        }
        return lines;
    }
    QString stateOf(qint32 problem)
    {
        return clinical(QStringLiteral("SELECT stato_probl FROM PROBLEMS WHERE idProblems = %1").arg(problem))
            .join(u' ');
    }
};

TEST_F(ProblemiTest, ShowsProblemsAndWhatIsFiledUnderTheSelectedOne)
{
    const qint32 diabetes = addProblem(" 250.00 ", "", QDate(2020, 5, 6));
    addProblem("466", " Bronchite ", QDate(2026, 1, 2), 2);
    const qint32 odd = addProblem("", "Caduta", QDate(2019, 1, 2), 2);
    execute(QStringLiteral("UPDATE PROBLEMS SET DataChiusura = #12/31/2018# WHERE idProblems = %1").arg(odd));
    execute("UPDATE PROBLEMS SET DataChiusura = #01/03/2026# WHERE CodICDSospetto = '466'");
    addProblem("250.00", "Senza inizio", {}, 0);
    const qint32 again = addProblem("401", "Riaperto", QDate(2018, 1, 2), 1);
    execute(
        QStringLiteral("UPDATE PROBLEMS SET DataChiusura = #12/31/2017# WHERE idProblems = %1").arg(again));
    const QString id = QString::number(diabetes);
    addVisit(id, "#03/04/2021#", "anamnesi, txtNote", "'Tosse', 'Rivedere'");
    addVisit(id, "#03/04/2022#");
    addDrug(70, "#05/06/2020#", "'250.00'");
    addDrug(71, "#05/05/2020#", "'250.00'"); // before the problem began
    execute("INSERT INTO riepil (cod_pre, cod_paz, tipo, minsan, da_pre, cod_dia) "
            "VALUES (72, 17, 1, 'E72', #06/07/2021#, '250.00')");
    execute("INSERT INTO riepil2 (idriepil2, cod_rie, esame, unita, data_eff) "
            "VALUES (1, 'E72', 'Glicemia', '126', #06/08/2021#)");
    addVisit("Null", "#01/01/2021#");
    state.selected.id = diabetes;
    state.doctor.region = "16";

    Problemi form(state);
    EXPECT_EQ(form.windowTitle(), "Gestione Problemi e Visite");
    open(form, [&] {
        EXPECT_EQ(columns(problems), (QStringList{"", "DATA", "ICD-9", "PROBLEMA", "DESCRIZIONE"}));
        EXPECT_EQ(rows(problems), (QStringList{
                                      "||| Elementi non associati a problemi|",
                                      "|02/01/26|466|Bronchite|chiuso il 03/01/26",
                                      "|06/05/20|250.00|Diabete mellito tipo 2|",
                                      "|02/01/19||Caduta|⚠ chiuso il 31/12/18, prima dell'inizio",
                                      "|02/01/18|401|Riaperto|",
                                      "||250.00|Senza inizio|Diabete mellito tipo 2",
                                  }));
        EXPECT_EQ(selected(), 2);
        EXPECT_TRUE(control(problems)->hasFocus());
        EXPECT_EQ(columns(items), (QStringList{"DATA", "DESCRIZIONE", "TIPO"}));
        EXPECT_EQ(rows(items), (QStringList{
                                   "04/03/22|Visita ambulatoriale|Visita",
                                   "04/03/21|Visita ambulatoriale|Visita",
                                   "  |Anamnesi: Tosse|",
                                   "  |Note: Rivedere|",
                                   "06/05/20|METFORMINA 500|Farmaco",
                                   "  |Num. confezioni: 2|",
                                   "07/06/21|Esami di laboratorio|Esami",
                                   "  08/06/21|Glicemia Esito: 126|",
                               }));
        const auto *view = control<QTreeView>(items);
        EXPECT_TRUE(view->isExpanded(view->model()->index(1, 0)));
        EXPECT_EQ(view->model()->index(2, 3).data(), 70) << "cod_pre, hidden";
        EXPECT_EQ(view->model()->index(2, 4).data(), "M1") << "minsan, hidden";
        EXPECT_EQ(view->model()->index(0, 3).data(), 2) << "the visit's key";
        EXPECT_FALSE(isShown("SSPanel1"));

        key(problems, Qt::Key_Home);
        EXPECT_EQ(state.selected.id, unassociated);
        EXPECT_EQ(rows(items), QStringList("01/01/21|Visita ambulatoriale|Visita"));
        key(problems, Qt::Key_Down);
        EXPECT_FALSE(isShown(items));
        EXPECT_TRUE(isShown("SSPanel1"));
        EXPECT_EQ(control<QLabel>("SSPanel1")->text(),
                  "Nessuna visita, terapia o accertamento effettuato per questo problema.");
        clickRow(problems, "2");
        EXPECT_EQ(rows(items).size(), 8) << "with the mouse, too";
        EXPECT_EQ(state.selected.id, diabetes);
        click("bt_Esci");
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(settings.text("AGGIORNA_DIARIO"), "PROBLEMI");
    EXPECT_EQ(
        formTrace().mid(0, 7),
        (QStringList{"+--- Clivara.Problemi begin", "+--- Clivara.Problemi CreaTab_Problemi",
                     "+--- Clivara.Problemi CaricaTab_Problemi",
                     "+--- Clivara.CaricaTab_Visite id_probl=" + id, "+--- Clivara.CaricaTab_Visite end",
                     "+--- Clivara.Problemi CreaTab_Visite", "+--- Clivara.Problemi end"}));
}

TEST_F(ProblemiTest, WithoutProblemsOnlyNewOnesCanBeMade)
{
    state.selected.id = 4711; // of the patient before
    Problemi form(state);
    open(form, [&] {
        EXPECT_EQ(rows(problems), QStringList("||| Elementi non associati a problemi|"));
        EXPECT_EQ(state.selected.id, unassociated);
        EXPECT_TRUE(isShown("SSPanel1"));
        EXPECT_GT(control("itemsPart")->height(), control("problemsPart")->height())
            << "the room for what is to come";
        for (const char *button : {"bt_Probl_2", "bt_Probl_3", "bt_Probl_4", "bt_Visita_2", "bt_Visita_3"})
            click(button);
        key(problems, Qt::Key_Return);
        key(problems, Qt::Key_Delete);
        clickRow(problems, "0", true);
        EXPECT_EQ(forms.take(), "") << "there is no problem and no visit";

        forms.act = [&] {
            auto &call = forms.call<ProblemCall>();
            EXPECT_FALSE(call.problem);
            call.saved = addProblem("466", "Bronchite", clock.today());
        };
        key(problems, Qt::Key_Insert);
        EXPECT_EQ(forms.take(), "Probl1");
        EXPECT_EQ(rows(problems).last(), "|21/11/26|466|Bronchite|");
        EXPECT_EQ(selected(), 1) << "the new one";
        forms.act = {}; // cancelled
        click("bt_Probl_1");
        trigger("nuovo0");
        EXPECT_EQ(forms.take(), "Probl1 Probl1");
        EXPECT_EQ(selected(), 1);
    });
}

TEST_F(ProblemiTest, EveryWayOpensTheSelectedProblemAndKeepsIt)
{
    const qint32 problem = addProblem("466", "Bronchite", QDate(2026, 1, 2));
    addProblem("250.00", "Diabete", QDate(2026, 1, 3));
    state.selected.id = problem;
    Problemi form(state);
    open(form, [&] {
        const std::pair<const char *, std::function<void()>> ways[]{
            {"button", [&] { click("bt_Probl_2"); }},
            {"menu", [&] { trigger("modifica0"); }},
            {"key", [&] { key(problems, Qt::Key_Return); }},
            {"double click", [&] { clickRow(problems, "2", true); }},
        };
        int edits = 0;
        forms.act = [&] {
            EXPECT_EQ(forms.call<ProblemCall>().problem, problem);
            execute(QStringLiteral("UPDATE PROBLEMS SET descr_mal = 'B%1' WHERE CodICDSospetto = '466'")
                        .arg(++edits));
        };
        for (const auto &[name, way] : ways) {
            way();
            EXPECT_EQ(forms.take(), "Probl1") << name;
            EXPECT_EQ(rows(problems).at(2), QStringLiteral("|02/01/26|466|B%1|").arg(edits)) << name;
            EXPECT_EQ(selected(), 2) << name;
        }
    });
}

TEST_F(ProblemiTest, ADeletedProblemLeavesItsVisits)
{
    const qint32 problem = addProblem("466", "L'altra 50%", QDate(2026, 1, 2));
    addVisit(QString::number(problem), "#01/03/2026#");
    state.selected.id = problem;
    Problemi form(state);
    open(form, [&] {
        prompts.queue(PromptButton::No);
        key(problems, Qt::Key_Delete);
        EXPECT_EQ(prompts.last(), "Attenzione!|Cancellare il problema\nL'altra 50%?|question");
        EXPECT_EQ(prompts.boxes.last().defaultButton, PromptButton::No);
        EXPECT_EQ(rows(problems).size(), 2);

        prompts.queue(PromptButton::Yes);
        trigger("elimina0");
        EXPECT_EQ(rows(problems).size(), 1);
        EXPECT_EQ(rows(items), QStringList("03/01/26|Visita ambulatoriale|Visita"))
            << "listed under no problem";
        EXPECT_EQ(clinical("SELECT id_Probl FROM VISITAPROBL"), QStringList("Null"));
        EXPECT_EQ(clinical("SELECT sTableCode FROM DELETIONS"), QStringList("DP"));
    });
}

TEST_F(ProblemiTest, OnlyOpenProblemsAreClosed)
{
    const qint32 open_ = addProblem("466", "Bronchite", QDate(2026, 1, 4), 1);
    for (const qint16 other : {0, 2, 3})
        addProblem("401", "Altro", QDate(2026, 1, 1), other);
    state.selected.id = open_;
    Problemi form(state);
    open(form, [&] {
        for (const char *row : {"2", "3", "4"}) {
            clickRow(problems, row);
            prompts.queue();
            click("bt_Probl_4");
            EXPECT_EQ(prompts.last(), "Attenzione|E' possibile chiudere solo i problemi aperti.|warning");
        }
        clickRow(problems, "1");
        prompts.queue(PromptButton::No);
        click("bt_Probl_4");
        EXPECT_EQ(prompts.last(), "Attenzione!|Chiudere il problema\nBronchite?|question");
        EXPECT_EQ(stateOf(open_), "1");
        prompts.queue(PromptButton::Yes);
        trigger("chiudi0");
        EXPECT_EQ(stateOf(open_), "2");
        EXPECT_EQ(rows(problems).at(1), "|04/01/26|466|Bronchite|chiuso");
        EXPECT_EQ(selected(), 1);
        prompts.queue();
        click("bt_Probl_4");
        EXPECT_EQ(stateOf(open_), "2") << "and not again";
    });
}

TEST_F(ProblemiTest, WhatAnotherWorkstationSavedIsNotClosedUnseen)
{
    const qint32 problem = addProblem("466", "Bronchite", QDate(2026, 1, 4), 1);
    environment.doctors->Execute("INSERT INTO medici_gruppo (cod_smi, cognome, nome, idRowGuid) VALUES (2, "
                                 "'Verdi', 'Bruno', '{6C4C00A9-60AC-45AF-B5C3-FD30774041A6}')");
    state.selected.id = problem;
    Problemi form(state);
    open(form, [&] {
        const auto close = [&](const char *stateElsewhere, const char *stamp) {
            otherWorkstation()->Execute(QStringLiteral("UPDATE PROBLEMS SET stato_probl = %1%2")
                                            .arg(stateElsewhere)
                                            .arg(QString(stamp).replace("BRUNO", bruno)));
            prompts.queue(PromptButton::Yes);
            prompts.queue();
            click("bt_Probl_4");
            return prompts.last().toStdString();
        };
        EXPECT_EQ(
            close("1", ", dLastModifiedDate = #11/21/2026 10:05:00#, sAuthorUid = 'BRUNO'"),
            "Attenzione!|Il problema è stato salvato da Bruno Verdi il 21/11/2026 alle 10:05, da un'altra "
            "postazione, mentre era in questa finestra.\n"
            "Non è stato chiuso: l'elenco lo mostra com'è adesso, e da lì si può chiudere.|warning");
        EXPECT_EQ(
            close("3", ""),
            "Attenzione!|Il problema è stato salvato da un'altra postazione mentre era in questa finestra. "
            "Chi e quando non è registrato.\nNon è stato chiuso: il suo stato è ora «Cronico».|warning");
        EXPECT_EQ(stateOf(problem), "3");
        EXPECT_EQ(rows(problems).at(1), "|04/01/26|466|Bronchite|cronico") << "the list is read again";
    });
}

TEST_F(ProblemiTest, TellsWhatCouldNotBeDone)
{
    const qint32 problem = addProblem("466", "Bronchite", QDate(2026, 1, 4), 1);
    addVisit(QString::number(problem), "#01/05/2026#");
    state.selected.id = problem;
    Problemi form(state);
    open(form, [&] {
        execute("DROP TABLE DELETIONS"); // without its trace nothing is deleted
        const auto expectFailure = [&](const char *button, const QString &text) {
            prompts.queue(PromptButton::Yes);
            prompts.queue();
            click(button);
            EXPECT_EQ(prompts.last(),
                      "Attenzione!|" + text
                          + ": l'archivio non si può scrivere (errore 3078).\nNessun dato è stato "
                            "modificato: riprovare tra poco.|warning");
        };
        expectFailure("bt_Probl_3", "Non è stato possibile cancellare il problema");
        clickRow(items, "0");
        expectFailure("bt_Visita_3", "Non è stato possibile cancellare la visita");
        EXPECT_EQ(rows(items).size(), 1);
    });
}

TEST_F(ProblemiTest, WhatAnotherWorkstationSavedIsNotDeletedUnseen)
{
    const qint32 problem = addProblem("466", "Tosse", QDate(2026, 1, 2));
    addVisit(QString::number(problem), "#01/03/2026#");
    state.selected.id = problem;
    Problemi form(state);
    open(form, [&] {
        const auto saveElsewhere = [&](const char *table, int minute) {
            otherWorkstation()->Execute(
                QStringLiteral("UPDATE %1 SET dLastModifiedDate = #11/21/2026 09:%2:00#")
                    .arg(table)
                    .arg(minute));
        };
        const auto told = [](const char *record, int minute) {
            return QStringLiteral(
                       "Attenzione!|%1 il 21/11/2026 alle 09:%2, da un'altra postazione, mentre era in "
                       "questa finestra. Chi non è registrato.\n"
                       "L'elenco mostra ancora com'era prima. Eliminare lo stesso?|warning")
                .arg(record)
                .arg(minute);
        };
        saveElsewhere("VISITAPROBL", 10);
        clickRow(items, "0");
        prompts.queue(PromptButton::Yes);
        prompts.queue(PromptButton::No);
        key(items, Qt::Key_Delete);
        EXPECT_EQ(prompts.last(), told("La visita è stata salvata", 10));
        EXPECT_EQ(prompts.boxes.last().defaultButton, PromptButton::No);
        EXPECT_EQ(clinical("VISITAPROBL").size(), 1);
        prompts.queue(PromptButton::Yes); // the list has been read again
        key(items, Qt::Key_Delete);
        EXPECT_TRUE(clinical("VISITAPROBL").isEmpty());

        saveElsewhere("PROBLEMS", 20);
        clickRow(problems, "1");
        prompts.queue(PromptButton::Yes);
        prompts.queue(PromptButton::Yes);
        key(problems, Qt::Key_Delete);
        EXPECT_EQ(prompts.last(), told("Il problema è stato salvato", 20));
        EXPECT_TRUE(clinical("PROBLEMS").isEmpty());
    });
}

TEST_F(ProblemiTest, VisitsAreMadeOpenedAndDeletedFromTheLowerList)
{
    const qint32 problem = addProblem("250.00", "Diabete", QDate(2020, 1, 2));
    const QString id = QString::number(problem);
    const qint32 older = addVisit(id, "#01/03/2021#", "conclusioni", "'Bene'");
    addVisit(id, "#01/03/2022#");
    addDrug(70, "#05/06/2021#", "'250.00'");
    state.selected.id = problem;
    Problemi form(state);
    open(form, [&] {
        forms.act = [&] {
            EXPECT_EQ(state.visitMode, "10");
            auto &call = forms.call<VisitCall>();
            EXPECT_EQ(call.problem.id, problem);
            EXPECT_EQ(call.problem.text, "Diabete");
            call.saved = addVisit(id, "#01/03/2023#");
        };
        click("bt_Visita_1");
        EXPECT_EQ(forms.take(), "Visita2");
        EXPECT_EQ(rows(items).first(), "03/01/23|Visita ambulatoriale|Visita");
        EXPECT_EQ(control<QTreeView>(items)->currentIndex().row(), 0) << "the new one is selected";

        forms.act = [&] {
            EXPECT_EQ(state.visitMode, "11");
            EXPECT_EQ(forms.call<VisitCall>().visit, older);
        };
        clickRow(items, "2", true);
        EXPECT_EQ(forms.take(), "Visita2");
        clickRow(items, "2.0");
        click("bt_Visita_2");
        key(items, Qt::Key_Return);
        trigger("modifica1");
        EXPECT_EQ(forms.take(), "Visita2 Visita2 Visita2") << "a line stands for its visit";

        clickRow(items, "3", true);
        key(items, Qt::Key_Delete);
        EXPECT_EQ(forms.take(), "") << "a drug is no visit";

        clickRow(items, "2");
        prompts.queue(PromptButton::No);
        click("bt_Visita_3");
        EXPECT_EQ(prompts.last(), "Attenzione!|Cancellare la voce?|question");
        EXPECT_EQ(rows(items).size(), 6);
        prompts.queue(PromptButton::Yes);
        trigger("elimina1");
        EXPECT_EQ(rows(items).size(), 4);
        EXPECT_EQ(clinical("SELECT IdVisitaProbl FROM VISITAPROBL ORDER BY IdVisitaProbl"),
                  (QStringList{"2", "3"}));
    });
}

TEST_F(ProblemiTest, MenusAndTheIdentifierFormGoByTheRow)
{
    const qint32 problem = addProblem("250.00", "Diabete", QDate(2020, 1, 2));
    const qint32 visit = addVisit(QString::number(problem), "#01/03/2021#");
    addDrug(70, "#05/06/2021#", "'250.00'");
    state.selected.id = problem;
    Problemi form(state);
    open(form, [&] {
        const auto menu = [&](const char *list, const char *name) {
            QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
            QApplication::sendEvent(control<QTreeView>(list)->viewport(), &event);
            auto *popup = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            EXPECT_TRUE(popup && popup->objectName() == name) << name;
            QStringList entries;
            if (popup) {
                for (const QAction *action : popup->actions())
                    entries.append(action->text().remove('&'));
                popup->close();
            }
            return entries;
        };
        EXPECT_EQ(menu(problems, "mnMenu0"),
                  (QStringList{"Nuovo problema", "Modifica", "Chiudi", "Elimina"}));
        EXPECT_EQ(menu(items, "mnMenu1"), (QStringList{"Nuova visita", "Modifica visita", "Elimina visita"}));

        constexpr auto all = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier;
        const std::tuple<const char *, const char *, qint32, const char *> rowsOfTables[]{
            {problems, "1", problem, "150"}, {items, "0", visit, "103"}, {items, "1", 70, "F"}};
        for (const auto &[list, row, identifier, table] : rowsOfTables) {
            forms.act = [&, key = identifier, letter = table] {
                const auto &call = forms.call<IdentifierCall>();
                EXPECT_EQ(call.key, key);
                EXPECT_EQ(call.table, letter);
            };
            clickRow(list, row, false, all);
            EXPECT_EQ(forms.take(), "RM_Identificativi") << table;
        }
        clickRow(problems, "0", false, all);
        EXPECT_EQ(forms.take(), "") << "no row of a table";
    });
}

TEST_F(ProblemiTest, TheDiabetesChartIsTheRegions)
{
    const std::pair<const char *, const char *> charts[]{{"03", "Diabete_Lombardia"},
                                                         {"15", "Diabete_Campania"},
                                                         {"16", "DiabeteM"},
                                                         {"19", "Diabete_Sicilia"},
                                                         {"01", ""},
                                                         {"", ""}};
    Problemi form(state);
    for (const auto &[region, chart] : charts) {
        state.doctor.region = region;
        forms.built = FormRegistry({{.name = chart, .create = createForm<Problemi>}});
        open(form, [&, name = QString(chart)] {
            EXPECT_EQ(isShown("BtnSchedaDiabete"), !name.isEmpty());
            if (!name.isEmpty())
                click("BtnSchedaDiabete");
            EXPECT_EQ(forms.take(), name);
        });
        if (!*chart)
            continue;
        forms.built = {};
        open(form, [&] {
            QWidget &button = *control("BtnSchedaDiabete");
            EXPECT_FALSE(button.isEnabled()) << chart;
            EXPECT_EQ(button.toolTip(), "La scheda del diabete della regione non è ancora disponibile");
            EXPECT_EQ(button.accessibleDescription(), button.toolTip());
        });
    }
}

TEST_F(ProblemiTest, OpensOnWhatCanBeReadAndLogsTheRest)
{
    addProblem("466", "Bronchite", QDate(2026, 1, 2));
    execute("DROP TABLE VISITAPROBL");
    Problemi form(state);
    open(form, [&] {
        EXPECT_EQ(rows(problems).size(), 2);
        EXPECT_FALSE(isShown("SSPanel1")); // it would say that there is nothing
        execute("DROP TABLE PROBLEMS");
        click("bt_Probl_1");
        EXPECT_EQ(rows(problems).size(), 1);
    });
    const QString trace = formTrace().join(u'\n');
    EXPECT_TRUE(trace.contains("Clivara.Problemi.CaricaTab_Visite - Error 3078 - ")) << qPrintable(trace);
    EXPECT_TRUE(trace.contains("Clivara.Problemi.CaricaTab_Problemi - Error 3078 - ")) << qPrintable(trace);
}

} // namespace
} // namespace clivara
