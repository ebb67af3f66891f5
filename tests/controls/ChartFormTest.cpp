// SPDX-License-Identifier: Apache-2.0
#include "FormDriver.h"
#include "support/Clock.h"
#include "support/PatientHeader.h"
#include "support/ui/PatientStrip.h"
#include "support/ui/WidgetPrompts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <gtest/gtest.h>

namespace clivara {
namespace {

class TestForm final : public ChartForm {
public:
    using ChartForm::ChartForm;
    using ChartForm::setUsualSize;
    QStringList events;
    bool mayClose = true;
    const char *failIn = "";

protected:
    void load() override { note("load"); }
    bool queryUnload() override
    {
        note("query");
        return mayClose;
    }
    void unloading() override { note("unloading"); }

private:
    void note(const char *event)
    {
        events.append(event);
        if (event == failIn)
            throw std::runtime_error(event);
    }
};

struct ChartFormTest : ::testing::Test {
    PatientHeader header;
    FixedClock clock{QDate(2026, 11, 21)};
    TestForm form{"prova", header, clock};
    const QStringList wholeLife{"load", "query", "unloading"};
};

TEST_F(ChartFormTest, ClosesInOneWay)
{
    const std::pair<const char *, std::function<void()>> ways[] = {
        {"Esc", [this] { QTest::keyClick(&form, Qt::Key_Escape); }},
        {"window", [this] { form.close(); }},
    };
    for (const auto &[name, close] : ways) {
        form.events.clear();
        bool visible = true;
        inside(form, [&, act = close] {
            EXPECT_TRUE(form.isVisible() && form.isLoaded());
            act();
            visible = form.isVisible();
        });
        form.showModal();
        EXPECT_FALSE(visible || form.isLoaded()) << name;
        EXPECT_EQ(form.events, wholeLife) << name;
    }
}

TEST_F(ChartFormTest, IsAsLargeAsItUsuallyIsOrAsTheScreenHasRoomFor)
{
    const QSize screen = form.screen()->availableSize();
    const auto shown = [this](const std::function<void()> &act = [] {}) {
        QSize size;
        inside(form, [&] {
            size = form.size();
            act();
            form.close();
        });
        form.showModal();
        return size;
    };
    form.setUsualSize({400, 300});
    EXPECT_EQ(shown([this] { form.resize(420, 350); }), QSize(400, 300));
    EXPECT_EQ(shown(), QSize(420, 350)) << "as the doctor left it";
    form.setUsualSize(2 * screen);
    EXPECT_EQ(form.sizeHint(), 2 * screen);
    const QSize fitted = shown();
    EXPECT_EQ(fitted.expandedTo(screen), screen);
    EXPECT_NEAR(fitted.width(), screen.width(), 20);
    EXPECT_LT(fitted.height(), screen.height()) << "the title bar needs room too";
}

TEST_F(ChartFormTest, BelongsToTheWindowThatItIsOpenedFromWhileItIsOpen)
{
    TestForm other{QStringLiteral("altra"), header, clock};
    const auto openFrom = [](TestForm &outer, TestForm &inner) {
        inside(outer, [&] {
            QApplication::setActiveWindow(&outer);
            inside(inner, [&] { EXPECT_EQ(inner.windowHandle()->transientParent(), outer.windowHandle()); });
            inner.showModal();
        });
        outer.showModal();
        EXPECT_EQ(inner.windowHandle()->transientParent(), nullptr);
    };
    openFrom(form, other);
    openFrom(other, form); // owners of each other would be a circle
}

TEST_F(ChartFormTest, StaysOpenWhenItMayNotClose)
{
    form.mayClose = false;
    inside(form, [this] {
        QTest::keyClick(&form, Qt::Key_Escape);
        form.close();
        EXPECT_TRUE(form.isVisible() && form.isLoaded());
    });
    form.showModal();
    EXPECT_EQ(form.events, (QStringList{"load", "query", "query"})) << "abandoning saves nothing";
    EXPECT_FALSE(form.isLoaded());
}

TEST_F(ChartFormTest, UnloadsWithoutAskingAndWithoutAWindow)
{
    form.unload();
    EXPECT_TRUE(form.events.isEmpty()) << "what was never loaded has nothing to save";
    form.mayClose = false;
    inside(form, [this] { form.unload(); });
    form.showModal();
    EXPECT_EQ(form.events, (QStringList{"load", "unloading"}));
}

TEST_F(ChartFormTest, PassesErrorsToTheCaller)
{
    for (const char *const stage : {"load", "query", "unloading"}) {
        form.events.clear();
        form.failIn = stage;
        if (stage != QLatin1String("load"))
            inside(form, [this] { form.close(); });
        EXPECT_THROW(form.showModal(), std::runtime_error) << stage;
        EXPECT_FALSE(form.isLoaded() || form.isVisible()) << stage;
        EXPECT_EQ(form.events.last(), stage);
    }
    form.events.clear();
    form.failIn = "";
    inside(form, [this] { form.close(); });
    form.showModal();
    EXPECT_EQ(form.events, wholeLife) << "usable again";
}

TEST(PatientStrip, CountsTheAgeToTheDay)
{
    const QDate today(2026, 11, 21);
    const std::pair<QDate, const char *> ages[] = {
        {QDate(1968, 11, 21), "58 anni"}, {QDate(1968, 11, 22), "57 anni"},
        {QDate(2025, 11, 21), "1 anno"},  {QDate(2025, 11, 22), "11 mesi"},
        {QDate(2026, 10, 21), "1 mese"},  {QDate(2026, 11, 20), "0 mesi"},
        {QDate(2026, 11, 22), ""},        {QDate(), ""},
    };
    for (const auto &[birth, text] : ages)
        EXPECT_EQ(ageText(birth, today), text) << text;
}

TEST(PatientStrip, TellsInFullWhatItElides)
{
    PatientHeader header;
    header.patientCode = 17;
    header.identified = true;
    PatientStrip strip;
    strip.resize(300, 60);
    auto *name = strip.findChild<QLabel *>("lblPaziente");
    strip.show();
    const QString longName = QStringLiteral("Della Valle ").repeated(8).trimmed();
    for (const QString &surname : {QStringLiteral("Rossi"), longName, QStringLiteral("Verdi")}) {
        header.identity.surname = surname;
        strip.showPatient(header, QDate(2026, 11, 21));
        QHelpEvent hover(QEvent::ToolTip, QPoint(1, 1), QPoint(1, 1));
        QApplication::sendEvent(name, &hover);
        EXPECT_EQ(name->toolTip(), surname == longName ? longName : QString());
        EXPECT_TRUE(
            strip.accessibleName().contains(surname + ", sesso non indicato, data di nascita mancante"));
    }
    header.identified = false; // the texts may be another patient's
    strip.showPatient(header, QDate(2026, 11, 21));
    EXPECT_EQ(name->text(), "Paziente 17");
}

TEST(PatientStrip, TellsTheAllergiesOfTheIdentifiedPatientOnly)
{
    PatientHeader header;
    header.patientCode = 17;
    header.identified = true;
    PatientStrip strip;
    strip.resize(300, 90);
    strip.show();
    const auto *line = strip.findChild<QLabel *>("lblAllergie");
    QStringList many;
    for (int i = 0; i < 40; ++i)
        many.append(QStringLiteral("Allergene %1").arg(i));
    const std::pair<Allergies, const char *> cases[] = {
        {judgedAllergies(many, true, true, "Penicillina"),
         "⚠ Allergie: Penicillina  ·  40 allergeni segnati: "},
        {judgedAllergies({}, true, true, "Nega allergie"), "✓ Nessuna allergia nota"},
        {judgedAllergies({}, false, true, {}), "? Allergie non registrate"},
        {Allergies(), "✕ Allergie non lette"},
    };
    for (const auto &[allergies, words] : cases) {
        header.allergies = allergies;
        strip.showPatient(header, QDate(2026, 11, 21));
        EXPECT_TRUE(line->isVisible());
        EXPECT_TRUE(line->text().startsWith(words)) << line->text().toStdString();
        EXPECT_EQ(line->accessibleName(), allergyWords(allergies));
        EXPECT_TRUE(strip.accessibleName().endsWith(". " + allergyWords(allergies)));
        QHelpEvent hover(QEvent::ToolTip, QPoint(1, 1), QPoint(1, 1));
        QApplication::sendEvent(const_cast<QLabel *>(line), &hover);
        EXPECT_EQ(allergies.allergens.isEmpty() || line->toolTip() == line->text(), true);
    }
    header.identified = false; // whose they are is not known
    strip.showPatient(header, QDate(2026, 11, 21));
    EXPECT_FALSE(line->isVisible());
    EXPECT_FALSE(strip.accessibleName().contains("llerg"));
}

// Answers the message box that is about to open.
void answerBox(const std::function<void(QMessageBox &)> &act)
{
    QTimer::singleShot(0, qApp, [act] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        ASSERT_TRUE(box);
        act(*box);
        box->close();
    });
}

TEST(WidgetPrompts, AsksInItalian)
{
    WidgetPrompts prompts;
    const Prompt question{"Attenzione!",
                          "Salvare le modifiche?",
                          PromptIcon::Question,
                          {PromptButton::Yes, PromptButton::No, PromptButton::Cancel},
                          PromptButton::No};
    const auto press = [](const QString &text) {
        return [text](QMessageBox &box) {
            for (QAbstractButton *const button : box.buttons()) {
                if (button->text() == text)
                    button->click();
            }
        };
    };
    answerBox(press("&Sì"));
    EXPECT_EQ(prompts.ask(question), PromptButton::Yes);
    answerBox(press("&Annulla"));
    EXPECT_EQ(prompts.ask(question), PromptButton::Cancel);
    answerBox([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Return); });
    EXPECT_EQ(prompts.ask(question), PromptButton::No) << "the default button";
    answerBox([](QMessageBox &box) { QTest::keyClick(&box, Qt::Key_Escape); });
    EXPECT_EQ(prompts.ask(question), PromptButton::Cancel);
    answerBox([](QMessageBox &box) {
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        EXPECT_EQ(box.text(), "Inserire il peso!");
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    prompts.warn("Inserire il peso!");
}

} // namespace
} // namespace clivara
