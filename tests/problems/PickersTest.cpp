// SPDX-License-Identifier: Apache-2.0
#include "problems/MatchDelegate.h"
#include "problems/RicercaDiagnosi.h"
#include "problems/SelezProblema.h"

#include "DialogFixture.h"
#include "problems/Probl1.h"

namespace clivara {
namespace {

constexpr auto list = "ReportControl1";

class PickersTest : public DialogFixture {
protected:
    // What the host and the forms read.
    std::string mailbox() const
    {
        return (settings.text("DIAGNOSI") + u'|' + settings.text("CODICE DIAGNOSI")).toStdString();
    }
    std::string selection() const
    {
        return QStringLiteral("%1|%2").arg(state.selected.id).arg(state.selected.text).toStdString();
    }
    int row() const { return control<QTreeView>(list)->currentIndex().row(); }
};

TEST_F(PickersTest, ListsThePatientsProblemsNewestFirst)
{
    addProblem("250.00", "");
    addProblem("", "Dolore dell'anca", QDate(1925, 3, 4));
    const qint32 both = addProblem("487.1", "Influenza", QDate(2026, 3, 4), 2);
    execute(QStringLiteral("UPDATE PROBLEMS SET CodICDFinale = '466' WHERE idProblems = %1").arg(both));
    addProblem("zzz", "", QDate(2026, 5, 6));
    execute("INSERT INTO PROBLEMS (cod_paz, descr_mal) VALUES (18, 'di un altro')");
    state.selected.id = both;
    SelezProblema form(state);
    open(form, [&] {
        EXPECT_EQ(columns(list), (QStringList{"DATA", "ICD-9", "PROBLEMA"}));
        EXPECT_EQ(rows(list),
                  (QStringList{"06/05/26|zzz|zzz", "04/03/26|466|Influenza", "04/03/25||Dolore dell'anca",
                               "1/1/1010|250.00|Diabete mellito tipo 2"}));
        EXPECT_EQ(selection(), "0|");
        EXPECT_EQ(row(), 1) << "starts at the problem that was selected";
        key(list, Qt::Key_Down);
        key(list, Qt::Key_Down);
        key(list, Qt::Key_Return);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(mailbox(), "Diabete mellito tipo 2|250.00");
    EXPECT_EQ(selection(), "1|Diabete mellito tipo 2");
}

TEST_F(PickersTest, AProblemIsChosenOrNot)
{
    addProblem("250.00", "Diabete", QDate(2026, 1, 2));
    addProblem("", "Tosse", QDate(2026, 1, 1));
    SelezProblema form(state);
    const struct {
        std::function<void()> act;
        const char *mailbox;
        const char *selection;
    } ways[] = {
        {[&] { clickRow(list, "1", true); }, "Tosse|", "2|Tosse"},
        {[&] { click("OKButton"); }, "Diabete|250.00", "1|Diabete"},
        {[&] { click("CancelButton"); }, "*ABORT*|", "0|"},
        {[&] { click("OKButton"); }, "Diabete|250.00", "1|Diabete"},
        {[&] { key(list, Qt::Key_Escape); }, "*ABORT*|", "0|"},
        {[&] { click("OKButton"); }, "Diabete|250.00", "1|Diabete"},
        {[&] { form.close(); }, "*ABORT*|", "0|"},
    };
    for (const auto &way : ways) {
        state.selected.id = noProblem;
        open(form, [&] {
            way.act();
            EXPECT_FALSE(form.isVisible());
        });
        EXPECT_EQ(mailbox(), way.mailbox);
        EXPECT_EQ(selection(), way.selection);
    }
    settings.write("DIAGNOSI", "di prima");
    settings.write("CODICE DIAGNOSI", "999");
    state.environment = nullptr;
    EXPECT_THROW(form.showModal(), dao::Error);
    EXPECT_EQ(mailbox(), "*ABORT*|") << "a form that cannot be opened leaves no older answer";
}

TEST_F(PickersTest, ANewProblemCanBeWrittenAndIsTheOneToChoose)
{
    SelezProblema form(state);
    open(form, [&] {
        EXPECT_FALSE(control("OKButton")->isEnabled());
        key(list, Qt::Key_Return);
        EXPECT_TRUE(form.isVisible()) << "there is nothing to choose";
        forms.act = [&] {
            auto &call = forms.call<ProblemCall>();
            EXPECT_FALSE(call.problem);
            addProblem("", "Febbre", QDate(2026, 2, 2));
            call.saved = addProblem("", "Tosse", QDate(2026, 1, 1));
        };
        key(list, Qt::Key_Insert);
        EXPECT_EQ(forms.take(), "Probl1");
        EXPECT_EQ(row(), 1);
        EXPECT_EQ(selection(), "0|") << "not chosen yet";
        forms.act = [] {}; // cancelled
        click("NewButton");
        EXPECT_EQ(row(), 1);
        click("OKButton");
    });
    EXPECT_EQ(mailbox(), "Tosse|");
    EXPECT_EQ(selection(), "2|Tosse");
}

TEST_F(PickersTest, DiagnosesFollowTheTyping)
{
    environment.codes->Execute("INSERT INTO icd9 VALUES ('401.9', 'Ipertensione')");
    settings.write("CODICE DIAGNOSI", "401.9");
    RicercaDiagnosi form(state);
    const auto found = [&] { return text("lblTrovate"); };
    open(form, [&] {
        EXPECT_EQ(columns(list), (QStringList{"CODICE", "DIAGNOSI"}));
        EXPECT_EQ(rows(list), (QStringList{"ML001|CATARRO D'ESTATE", "250.00|Diabete mellito tipo 2",
                                           "401.9|Ipertensione"}));
        EXPECT_EQ(found(), "3 diagnosi");
        EXPECT_EQ(row(), 2) << "starts at the code that the caller has";

        type("txtCerca", "mel DI");
        EXPECT_EQ(rows(list), QStringList("250.00|Diabete mellito tipo 2"));
        EXPECT_EQ(found(), "1 diagnosi");
        type("txtCerca", "4");
        EXPECT_EQ(rows(list), QStringList("401.9|Ipertensione"));
        type("txtCerca", "xyz");
        EXPECT_EQ(found(), "Nessuna diagnosi: provare con meno lettere.");
        EXPECT_FALSE(control("OKButton")->isEnabled());
        key("txtCerca", Qt::Key_Down);
        key("txtCerca", Qt::Key_Return);
        EXPECT_TRUE(form.isVisible()) << "there is nothing to choose";

        type("txtCerca", "");
        EXPECT_EQ(row(), 0);
        key("txtCerca", Qt::Key_Down);
        key("txtCerca", Qt::Key_Down);
        key("txtCerca", Qt::Key_Up);
        EXPECT_EQ(row(), 1);
        EXPECT_TRUE(control("txtCerca")->hasFocus());
        key("txtCerca", Qt::Key_Return);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(mailbox(), "Diabete mellito tipo 2|250.00");
}

TEST_F(PickersTest, ADiagnosisThatIsNotChosenLeavesTheCode)
{
    RicercaDiagnosi form(state);
    const std::function<void()> waysOut[] = {
        [&] { click("CancelButton"); },
        [&] { key("txtCerca", Qt::Key_Escape); },
        [&] { form.close(); },
    };
    for (const auto &wayOut : waysOut) {
        settings.write("CODICE DIAGNOSI", "401.9");
        settings.write("DIAGNOSI", "vecchia");
        open(form, [&] {
            type("txtCerca", "catarro");
            wayOut();
            EXPECT_FALSE(form.isVisible());
        });
        EXPECT_EQ(mailbox(), "*ABORT*|401.9");
    }
    open(form, [&] {
        EXPECT_EQ(value("txtCerca"), "") << "opened again it starts anew";
        clickRow(list, "0", true);
        EXPECT_FALSE(form.isVisible());
    });
    EXPECT_EQ(mailbox(), "CATARRO D'ESTATE|ML001");
}

TEST(WordMatches, AreTheBeginningsOfWords)
{
    const struct {
        const char *text, *searched;
        QList<Match> matches;
    } cases[] = {
        {"Diabete mellito", "dia MEL", {{0, 3}, {8, 3}}},
        {"Diabete mellito", "abete ito", {}},
        {"Morbo di Ménière", "meni", {{9, 4}}},
        {"Catarro d'estate", "est cat", {{0, 3}, {10, 3}}},
        {"Dia diabete", "dia diabete", {{0, 3}, {4, 7}}},
        {"250.00", "250.0", {{0, 5}}},
        {"Diabete", "  ", {}},
        {"", "a", {}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(wordMatches(c.text, c.searched), c.matches) << c.text;
}

} // namespace
} // namespace clivara
