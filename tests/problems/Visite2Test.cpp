// SPDX-License-Identifier: Apache-2.0
#include "problems/Visite2.h"

#include "ListFixture.h"
#include "problems/VisitCommands.h"

namespace clivara {
namespace {

constexpr auto visits = "ReportControl1";

class Visite2Test : public ListFixture { };

TEST_F(Visite2Test, ListsAllVisitsWhateverTheirProblem)
{
    const qint32 problem = addProblem("466", "Bronchite", QDate(2026, 1, 2));
    addVisit("Null", "#02/01/2026#", "esameob, pianificazione", "'Torace libero', 'Rx'");
    addVisit(QString::number(problem), "#02/03/2026#");
    addVisit("4711", "#02/02/2026#"); // its problem was deleted
    Visite2 form(state);
    EXPECT_EQ(form.windowTitle(), "Gestione Visite");
    open(form, [&] {
        EXPECT_EQ(columns(visits), (QStringList{"DATA", "DESCRIZIONE", "Problema"}));
        EXPECT_EQ(rows(visits), (QStringList{
                                    "03/02/26|Visita ambulatoriale|466",
                                    "02/02/26|Visita ambulatoriale|",
                                    "01/02/26|Visita ambulatoriale|",
                                    "  |Esame obiett.: Torace libero|",
                                    "  |Pianificazione: Rx|",
                                }));
        EXPECT_TRUE(control(visits)->hasFocus());
        QTest::keyClick(control(visits), Qt::Key_Escape);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(settings.text("AGGIORNA_DIARIO"), "COMMAND1");
}

TEST_F(Visite2Test, MakesOpensAndDeletesVisits)
{
    const qint32 visit = addVisit("Null", "#02/01/2026#", "txtNote", "'Una nota'");
    state.selected.id = 4711; // what another form has selected
    state.selected.text = "Altro";
    Visite2 form(state);
    open(form, [&] {
        forms.act = [&] {
            EXPECT_EQ(state.visitMode, "10");
            auto &call = forms.call<VisitCall>();
            EXPECT_FALSE(call.visit);
            EXPECT_EQ(call.problem.id, noProblem) << "may be another patient's problem";
            EXPECT_EQ(call.problem.text, "");
            call.saved = addVisit("0", "#02/05/2026#");
        };
        key(visits, Qt::Key_Insert);
        EXPECT_EQ(forms.take(), "Visita2");
        EXPECT_EQ(state.selected.id, 4711);
        EXPECT_EQ(state.selected.text, "Altro");
        EXPECT_EQ(control<QTreeView>(visits)->currentIndex().row(), 0);

        forms.act = [&] {
            EXPECT_EQ(state.visitMode, "11");
            EXPECT_EQ(forms.call<VisitCall>().visit, visit);
            execute("UPDATE VISITAPROBL SET txtNote = 'Altra nota' WHERE IdVisitaProbl = 1");
        };
        clickRow(visits, "1.0", true);
        EXPECT_EQ(forms.take(), "Visita2");
        EXPECT_EQ(rows(visits).last(), "  |Note: Altra nota|");
        click("bt_Visita_2");
        trigger("modifica1");
        EXPECT_EQ(forms.take(), "Visita2 Visita2") << "the visit stays selected";

        prompts.queue(PromptButton::Yes);
        key(visits, Qt::Key_Delete);
        EXPECT_EQ(prompts.last(), "Attenzione!|Cancellare la voce?|question");
        EXPECT_EQ(rows(visits), QStringList("05/02/26|Visita ambulatoriale|"));
    });
}

TEST_F(Visite2Test, WithoutVisitsNothingCanBeOpenedOrDeleted)
{
    Visite2 form(state);
    open(form, [&] {
        click("bt_Visita_2");
        click("bt_Visita_3");
        key(visits, Qt::Key_Return);
        key(visits, Qt::Key_Delete);
        EXPECT_EQ(forms.take(), "");
        trigger("nuovo1");
        EXPECT_EQ(forms.take(), "Visita2");
    });
}

} // namespace
} // namespace clivara
