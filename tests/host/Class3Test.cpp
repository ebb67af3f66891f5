// SPDX-License-Identifier: Apache-2.0
#include "host/Class3.h"

#include "chart/FormRegistry.h"
#include "host/FormShelf.h"
#include "host/HostFixture.h"
#include "host/WaitPointer.h"
#include "support/ui/ChartForm.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>

namespace {

using namespace clivara;

// Closes the modal form that opens next, as the doctor would, after looking at it.
class Doctor {
public:
    explicit Doctor(std::function<void(QWidget &)> look = {})
        : m_look(std::move(look))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            QWidget *const form = QApplication::activeModalWidget();
            if (!form || !form->isVisible())
                return;
            seen.append(form->objectName());
            normalPointer = !QGuiApplication::overrideCursor();
            if (m_look)
                m_look(*form);
            form->close();
        });
        m_timer.start(1);
    }

    QStringList seen;
    bool normalPointer = false;

private:
    std::function<void(QWidget &)> m_look;
    QTimer m_timer;
};

const QString border = "==============================";
const QStringList initialized{border, "+--- Class3.Class_Initialize", "+--- Class3.Class_Initialize end"};
const QStringList connected{"+--- Class3.InitDbConn", "+--- Class3.InitDbConn end"};
const QStringList terminated{"+--- Class3.Class_Terminate", border};
const QString ended = "+--- Clivara.Action end";

QStringList lookup(const QString &code, const QString &uid)
{
    return {"   .LeggiUidMedico codMed=" + code, "   .LeggiUidMedico UidUtente=" + uid,
            "   .LeggiUidMedico end "};
}

QStringList action(int code, const QStringList &steps = {}, bool toTheEnd = true)
{
    const QStringList doctorT = lookup("102", "6c4c00a9-60ac-45af-b5c3-fd30774041a6");
    const QStringList doctorP = lookup("101", "b61c53b8-b450-4298-8b11-f25c842011b0");
    QStringList lines{QStringLiteral("+--- Class3.Action %1").arg(code)};
    lines += doctorT + doctorP + doctorP + steps;
    if (toTheEnd)
        lines += ended;
    return lines;
}

class Class3Test : public HostFixture { };

TEST_F(Class3Test, LeavesTheTraceOfAHostsDay)
{
    {
        Class3 chart(services());
        EXPECT_TRUE(chart.InitDbConn(environment));
        Doctor doctor;
        EXPECT_EQ(chart.Action(4), 0);
        EXPECT_EQ(chart.Action(80), 0);
        EXPECT_EQ(chart.Action(50), 0);
        QVariant size = 69;
        EXPECT_EQ(chart.Action(2, size), 0);
        EXPECT_EQ(size, QVariant(69)) << "no form, no result";
        EXPECT_EQ(chart.Action(81), 0);
        EXPECT_EQ(chart.Action(-1), 0);
        EXPECT_EQ(chart.Action(82), 0);
        EXPECT_EQ(chart.Action(99), 0);
        EXPECT_EQ(doctor.seen, (QStringList{"calcLDL", "calcCockCroft", "calcFiltGlom"}));
    }
    EXPECT_EQ(logged(), initialized + connected + action(4, {"Clivara.PrGraph: maschera non disponibile"})
                            + action(80) + action(50) + action(2, {"Clivara.Zoom: maschera non disponibile"})
                            + action(81) + action(-1) + action(82) + QStringList{"+--- Class3.Action 99"}
                            + terminated);
    EXPECT_EQ(settings.text("AGGIORNA_DIARIO"), "PREVENZIONE");
}

TEST_F(Class3Test, HandsTheResultOfTheFormBack)
{
    Class3 chart(services());
    chart.InitDbConn(environment);
    const Doctor doctor;
    QVariant param;
    chart.Action(81, param);
    ASSERT_EQ(param.toList().size(), 2);
    EXPECT_EQ(param.toList()[0], QVariant("valutazione"));
    EXPECT_EQ(param.toList()[1], QVariant(0.0)) << "nothing computed";
    QVariant untouched = 7;
    chart.Action(50, untouched);
    EXPECT_EQ(untouched, QVariant(7)) << "the result before is not handed back again";
}

TEST_F(Class3Test, ShowsOneInstanceOfAFormWithTheNormalPointer)
{
    Class3 chart(services());
    chart.InitDbConn(environment);
    QList<QPointer<QWidget>> shown;
    Doctor doctor([&](QWidget &form) { shown.append(&form); });
    chart.Action(80);
    EXPECT_TRUE(doctor.normalPointer);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    chart.Action(99);
    chart.Action(80);
    ASSERT_EQ(shown.size(), 2);
    EXPECT_EQ(shown[0], shown[1]) << "the calculators are not among the forms that 99 unloads";
}

TEST_F(Class3Test, AnErrorEndsTheActionWithoutATraceToTheHost)
{
    Class3 chart(services());
    chart.InitDbConn(environment);
    QVariant tooLarge = 40000;
    EXPECT_EQ(chart.Action(3, tooLarge), 0);
    EXPECT_FALSE(chart.failure().isEmpty()) << "only a host that asks is told";
    EXPECT_EQ(logged(),
              initialized + connected
                  + action(3, {"Clivara.Visite2 - Error 6 - Parametro dell'azione fuori intervallo"}, false));
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr) << "the pointer stays as it was";
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);

    chart.Action(50);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr) << "the next action takes it back";
    EXPECT_EQ(chart.failure(), QString());
}

TEST(WaitPointer, ComesAndGoesAlsoWhereTheHostTookItBack)
{
    const auto waits = [] { return QGuiApplication::overrideCursor() != nullptr; };
    WaitPointer pointer;
    pointer.show();
    QGuiApplication::restoreOverrideCursor(); // by the host, after a section that failed
    pointer.show();
    EXPECT_TRUE(waits()) << "the next section waits again";
    pointer.restore();
    EXPECT_FALSE(waits());
    pointer.show();
    pointer.show();
    pointer.restore();
    EXPECT_FALSE(waits());
    pointer.show();
    QGuiApplication::restoreOverrideCursor();
    pointer.restore();
    QGuiApplication::setOverrideCursor(Qt::BusyCursor);
    EXPECT_TRUE(waits());
    QGuiApplication::restoreOverrideCursor();
}

// From the launcher nobody reads Class3::failure: the component itself tells.
TEST_F(Class3Test, TellsAndNamesAFormThatFailsOverAnother)
{
    Class3 chart(services());
    chart.InitDbConn(environment);
    bool isNormal = false;
    Doctor doctor([&](QWidget &form) {
        auto *const button = form.findChild<QAbstractButton *>("Apri_Allergie");
        if (!button)
            return;
        prompts.queue();
        button->click();
        isNormal = !QGuiApplication::overrideCursor();
    });
    chart.Action(0);
    EXPECT_EQ(doctor.seen, QStringList{"InfGen"}) << "which stays open";
    EXPECT_TRUE(prompts.last().startsWith("Attenzione!|Non è stato possibile aprire la maschera.\n\n"))
        << qPrintable(prompts.last());
    EXPECT_EQ(logged().filter(QRegularExpression("^Clivara\\.Allergie - Error 3078 - .*ALLERGIE")).size(), 1)
        << qPrintable(logged().join(u'\n'));
    EXPECT_TRUE(isNormal);
    EXPECT_EQ(chart.failure(), QString());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

// What was being saved may be stored or not.
TEST_F(Class3Test, SaysOfAFormThatWasOpenThatAnErrorClosedIt)
{
    struct FailingPrompts : Prompts {
        PromptButton ask(const Prompt &prompt) override
        {
            texts.append(prompt.text);
            if (prompt.icon == PromptIcon::Question)
                throw std::runtime_error("guasto");
            return prompt.buttons.last();
        }
        QStringList texts;
    } failing;
    environment.clinical->Execute("CREATE TABLE ALLERGIE (Tipo TEXT(20), codice TEXT(5), descr TEXT(40))");
    Class3 chart(Services{settings, clock, failing, pauses, guids, middleware});
    chart.InitDbConn(environment);
    QStringList seen;
    Doctor doctor([&](QWidget &launcher) {
        Doctor inner([](QWidget &form) { form.findChild<QAbstractButton *>("alim_1")->click(); });
        launcher.findChild<QAbstractButton *>("Apri_Allergie")->click();
        seen = inner.seen;
    });
    chart.Action(0);
    EXPECT_EQ(seen, QStringList{"Allergie"});
    ASSERT_EQ(failing.texts.size(), 2);
    EXPECT_TRUE(failing.texts.last().startsWith("Un errore ha chiuso la maschera"))
        << qPrintable(failing.texts.last());
}

TEST_F(Class3Test, WithoutAnEnvironmentRaisesNothing)
{
    Class3 chart(services());
    Doctor doctor;
    EXPECT_EQ(chart.Action(99), 0);
    EXPECT_EQ(chart.Action(80), 0);
    EXPECT_EQ(doctor.seen, QStringList{"calcLDL"});
    QStringList lookups;
    for (const char *code : {"102", "101", "101"})
        lookups += QStringLiteral("   .LeggiUidMedico codMed=") + code;
    const QRegularExpression unread("^Clivara\\.calcLDL - Error 3219 - ");
    EXPECT_EQ(logged().filter(unread).size(), 4) << "the patient and three results";
    QStringList others = logged();
    others.removeIf([&](const QString &line) { return line.contains(unread); });
    EXPECT_EQ(others, (initialized + QStringList{"+--- Class3.Action 99", "+--- Class3.Action 80"} + lookups
                       + QStringList{ended}));
}

TEST(Class3, KnowsWhatItHasBuilt)
{
    QList<qint16> built;
    for (qint16 code = -1; code <= 101; ++code) {
        if (Class3::isBuilt(code))
            built.append(code);
    }
    EXPECT_EQ(built, (QList<qint16>{0, 3, 5, 12, 13, 16, 17, 18, 19, 20, 21, 24, 25, 80, 81, 82}));
}

// A form that counts.
class CountingForm : public ChartForm {
public:
    explicit CountingForm(const WorkingState &state)
        : ChartForm("conta", state.header, state.clock)
    {
    }

protected:
    void load() override { }
};

class FormShelfTest : public HostFixture { };

TEST_F(FormShelfTest, CreatesEachFormOnceOnFirstUse)
{
    WorkingState state(services());
    int constructed = 0;
    const FormRegistry registry({{.name = "conta",
                                  .create =
                                      [&](WorkingState &working) {
                                          ++constructed;
                                          return std::make_unique<CountingForm>(working);
                                      }},
                                 {.name = "assente"}});
    FormShelf shelf(state, registry);
    EXPECT_EQ(constructed, 0);
    int noticed = 0;
    ChartForm *const form = shelf.form("conta", [&](ChartForm &) { ++noticed; });
    EXPECT_EQ(shelf.form("conta", [&](ChartForm &) { ++noticed; }), form);
    EXPECT_EQ(constructed, 1);
    EXPECT_EQ(noticed, 1);
    for (const char *const missing : {"assente", "manca"})
        EXPECT_EQ(shelf.form(missing), nullptr) << missing;
}

} // namespace
