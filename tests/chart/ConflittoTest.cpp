// SPDX-License-Identifier: Apache-2.0
#include "chart/Conflitto.h"

#include "ChartFixture.h"
#include "FormDriver.h"
#include "TestConflicts.h"
#include "chart/VersionPane.h"

#include <QPushButton>

namespace clivara {
namespace {

class ConflittoTest : public ChartFixture, protected FormDriver {
protected:
    ConflittoTest()
    {
        asked.conflict.event = "La visita è stata salvata";
        asked.conflict.there.when = QDateTime(QDate(2026, 11, 21), QTime(10, 5), Qt::UTC);
        asked.conflict.fields = {{"Data", "01-11-2026", "01-11-2026", "01-11-2026"},
                                 {"Anamnesi", "prima", "tosse secca", "tosse grassa"},
                                 {"Note", "nota", "nota", "altra\r\nnota"},
                                 {"Conclusioni", "", "mie", ""}};
        form.take(asked);
    }
    std::string pane(const char *name) const
    {
        return control<VersionPane>(name)->toPlainText().toStdString();
    }

    ConflictCall asked;
    Conflitto form{state};
};

TEST_F(ConflittoTest, ShowsWhoAndWhenAndOnlyWhatDiffers)
{
    open(form, [&] {
        EXPECT_EQ(text("avviso"),
                  "⚠  La visita è stata salvata il 21/11/2026 alle 10:05, da un'altra postazione, "
                  "mentre era in questa finestra. Chi non è registrato. Niente è stato ancora "
                  "sostituito.");
        EXPECT_EQ(form.findChildren<VersionPane *>().size(), 6) << "the date is the same";
        EXPECT_EQ(pane("mio_0") + '|' + pane("altro_0"), "tosse secca|tosse grassa");
        EXPECT_EQ(pane("mio_1") + '|' + pane("altro_1"), "nota|altra\nnota");
        EXPECT_EQ(pane("mio_2") + '|' + pane("altro_2"), "mie|");
        EXPECT_NE(text("campo_0").find("da entrambe le postazioni"), std::string::npos);
        EXPECT_NE(text("campo_1").find("resta con entrambe le scelte"), std::string::npos);
        EXPECT_NE(text("campo_2").find("modificato solo qui"), std::string::npos);
        EXPECT_EQ(control<VersionPane>("mio_0")->extraSelections().size(), 1);
        EXPECT_EQ(control<VersionPane>("mio_0")->extraSelections().first().cursor.selectedText(), "secca");
        QTest::keyClick(&form, Qt::Key_F3);
        QTest::keyClick(&form, Qt::Key_F3);
        EXPECT_EQ(control<VersionPane>("altro_1")->textCursor().position(), 0);
        EXPECT_TRUE(control<VersionPane>("mio_0")->isReadOnly());
    });
    asked.conflict.fields = {{"Rischio", "10%", "12%", "11%"}};
    asked.conflict.mergesFields = false;
    open(form, [&] {
        EXPECT_EQ(form.findChildren<VersionPane *>().size(), 2) << "nothing is left of the conflict before";
        EXPECT_EQ(text("spiegazione").find("dove qui non si è modificato niente"), std::string::npos);
    });
}

TEST_F(ConflittoTest, EveryWayOutIsAChoice)
{
    struct Case {
        const char *name;
        std::function<void()> leave;
        ConflictChoice choice;
    };
    const Case cases[]{
        {"mine", [&] { control<QPushButton>("TieniMio")->click(); }, ConflictChoice::Mine},
        {"theirs", [&] { control<QPushButton>("TieniAltro")->click(); }, ConflictChoice::Theirs},
        {"back", [&] { control<QPushButton>("TornaModifica")->click(); }, ConflictChoice::BackToEditing},
        {"Esc", [&] { QTest::keyClick(&form, Qt::Key_Escape); }, ConflictChoice::BackToEditing},
        {"Enter", [&] { QTest::keyClick(form.focusWidget(), Qt::Key_Return); },
         ConflictChoice::BackToEditing},
        {"the window", [&] { form.close(); }, ConflictChoice::BackToEditing},
        {"Alt+M",
         [&] {
             QTest::keyClick(&form, Qt::Key_M, Qt::AltModifier);
             QTest::qWait(200);
         },
         ConflictChoice::Mine},
    };
    for (const Case &c : cases) {
        asked.choice = ConflictChoice::BackToEditing;
        open(form, [&] {
            c.leave();
            EXPECT_FALSE(form.isVisible()) << c.name;
        });
        EXPECT_EQ(asked.choice, c.choice) << c.name;
    }
}

TEST_F(ConflittoTest, TheSentenceSaysOnlyWhatIsKnown)
{
    const auto day = QDateTime(QDate(2026, 11, 20), QTime(0, 0), Qt::UTC);
    const LastWrite early{"0f8fad5b-d9cb-469f-a165-70867728950e", day.addSecs(34200)};
    struct Case {
        LastWrite before, there;
        const char *sentence;
    };
    const Case cases[]{
        {{}, {}, " da un'altra postazione mentre era in questa finestra. Chi e quando non è registrato."},
        {early, early,
         " da un'altra postazione mentre era in questa finestra. Chi e quando non è registrato."},
        {early,
         {{}, day},
         " il 20/11/2026, da un'altra postazione, mentre era in questa finestra. Chi non è "
         "registrato."},
        {{},
         early,
         " il 20/11/2026 alle 09:30, da un'altra postazione, mentre era in questa finestra. Chi non è "
         "registrato."},
    };
    for (const Case &c : cases) {
        asked.conflict.before = c.before;
        asked.conflict.there = c.there;
        EXPECT_EQ(conflictSentence(state, asked.conflict).toStdString(),
                  "La visita è stata salvata" + std::string(c.sentence));
    }
}

// A text of the length of a whole chart opens where it differs.
TEST_F(ConflittoTest, ALongTextOpensAtItsDifference)
{
    const QString text = QStringLiteral("Riga di una lunga anamnesi.\r\n").repeated(2000);
    QString changed = text;
    changed.replace(text.size() / 2, 4, "ecco");
    asked.conflict.fields = {{"Anamnesi", text, text, changed}};
    open(form, [&] {
        auto *const theirs = control<VersionPane>("altro_0");
        ASSERT_EQ(theirs->extraSelections().size(), 1);
        EXPECT_TRUE(theirs->rect().intersects(theirs->cursorRect(theirs->extraSelections().first().cursor)));
        EXPECT_LT(theirs->height(), form.height() / 2);
    });
}

} // namespace
} // namespace clivara
