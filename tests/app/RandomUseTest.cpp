// SPDX-License-Identifier: Apache-2.0
#include "PracticeFixture.h"
#include "app/Demo.h"
#include "app/PracticeCheck.h"
#include "app/Sections.h"
#include "host/Class3.h"
#include "host/working_state/WorkingState.h"
#include "support/ui/ChartForm.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>

namespace {

using clivara::ChartForm;
using clivara::Prompt;
using clivara::PromptButton;

// Presses, types and chooses at random in whatever window is open, as a cat on the keyboard would; the same seed does the same.
class RandomHand final : public QObject, public clivara::Prompts {
public:
    explicit RandomHand(quint32 seed)
        : m_random(seed)
    {
    }

    // So many steps in what `open` shows, as often as it closes and until it fails; then all windows are closed without
    // saving.
    void use(int steps, const std::function<bool()> &open)
    {
        m_steps = steps;
        m_using = true;
        QTimer::singleShot(0, this, &RandomHand::step);
        while (m_steps > 0 && open()) { }
        m_using = false;
        QCoreApplication::processEvents();
    }
    const QSet<QString> &seen() const { return m_seen; }

    PromptButton ask(const Prompt &prompt) override
    {
        return prompt.buttons.at(below(prompt.buttons.size()));
    }

private:
    void step()
    {
        if (!m_using)
            return;
        // Before acting, which may open a window that waits for the next step.
        QTimer::singleShot(0, this, &RandomHand::step);
        QWidget *const popup = QApplication::activePopupWidget();
        QWidget *const window = popup ? popup : QApplication::activeModalWidget();
        if (!window)
            return;
        m_seen.insert(window->objectName());
        if (popup)
            useMenu(*popup);
        else if (auto *const form = qobject_cast<ChartForm *>(window); !form)
            static_cast<QDialog *>(window)->reject(); // the system's: print, save as
        else if (--m_steps < 0)
            form->abandon();
        else
            useForm(*form);
    }

    void useMenu(QWidget &popup)
    {
        const auto *const menu = qobject_cast<QMenu *>(&popup);
        const QList<QAction *> actions = menu ? menu->actions() : QList<QAction *>();
        QAction *const action = actions.isEmpty() ? nullptr : actions.at(below(actions.size()));
        popup.close();
        if (action && action->isEnabled())
            action->trigger();
    }

    void useForm(ChartForm &form)
    {
        static const QList<QString> texts{"",           "0",
                                          "140",        "7,5",
                                          "-3",         "99999999999",
                                          "31/02/2026", "21/11/2026",
                                          "1/1/1900",   "Sant'Anna \"più\" % * _ ?",
                                          "ipert",      QString(400, u'à'),
                                          "Ω≥\t\n𝄞"};
        static const QList<Qt::Key> keys{Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Escape,
                                         Qt::Key_Delete, Qt::Key_Insert,  Qt::Key_Space,  Qt::Key_Up,
                                         Qt::Key_Down,   Qt::Key_End,     Qt::Key_Menu};
        switch (below(8)) {
        case 0:
        case 1:
        case 2:
            if (auto *const button = any<QAbstractButton>(form))
                button->click();
            break;
        case 3:
        case 4:
            if (auto *const edit = any<QLineEdit>(form)) {
                edit->setFocus();
                edit->selectAll();
                for (const QChar sign : texts.at(below(texts.size()))) {
                    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, sign);
                    QApplication::sendEvent(edit, &press);
                }
            } else if (auto *const memo = any<QPlainTextEdit>(form)) {
                memo->insertPlainText(texts.at(below(texts.size())));
            }
            break;
        case 5:
            if (auto *const box = any<QComboBox>(form); box && box->count() > 0)
                box->setCurrentIndex(int(below(box->count())));
            break;
        case 6:
            if (auto *const view = any<QAbstractItemView>(form); view && view->model()->rowCount() > 0) {
                const QModelIndex row = view->model()->index(int(below(view->model()->rowCount())), 0);
                view->scrollTo(row);
                const QPoint place = view->visualRect(row).center();
                QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, place);
                if (below(2) == 0)
                    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, place);
            }
            break;
        default:
            QWidget *const focus = form.focusWidget() ? form.focusWidget() : &form;
            if (below(4) == 0)
                QTest::keyClick(focus, Qt::Key_S, Qt::ControlModifier);
            else
                QTest::keyClick(focus, keys.at(below(keys.size())));
        }
    }

    // One of the form's controls of that class that a doctor could use.
    template <typename Control>
    Control *any(const QWidget &form)
    {
        QList<Control *> usable = form.findChildren<Control *>();
        usable.removeIf(
            [](const Control *control) { return !control->isVisible() || !control->isEnabled(); });
        return usable.isEmpty() ? nullptr : usable.at(below(usable.size()));
    }
    qsizetype below(qsizetype count) { return m_random.bounded(int(count)); }

    QRandomGenerator m_random;
    int m_steps = 0;
    bool m_using = false;
    QSet<QString> m_seen;
};

class RandomUseTest : public PracticeFixture { };

// The sanitizers watch; what was saved on the way must still be coherent.
TEST_F(RandomUseTest, LeavesACoherentPracticeAndNoWindow)
{
    const QString folder = path(QStringLiteral("practice"));
    const QDate today(2026, 11, 21);
    orvale::createDemo(folder, {.patients = 4, .years = 3, .seed = 5, .today = today});
    const auto practice = orvale::Practice::open(folder);
    ASSERT_TRUE(orvale::checkPractice(*practice).isEmpty());

    const int steps = qEnvironmentVariableIsSet("CLIVARA_RANDOM_STEPS")
                          ? qEnvironmentVariableIntValue("CLIVARA_RANDOM_STEPS")
                          : 60;
    const quint32 seed = quint32(qEnvironmentVariableIntValue("CLIVARA_RANDOM_SEED"));
    clivara::MemorySettings settings;
    settings.write(QStringLiteral("medicoP"), practice->firstDoctor().code);
    settings.write(QStringLiteral("medicoT"), practice->firstDoctor().code);
    settings.write(QStringLiteral("CODICE REGIONE"), practice->firstDoctor().region);
    settings.write(QStringLiteral("CARTELLA_PDF"), path(QString()));
    clivara::FixedClock clock(today);
    RandomHand hand(seed);
    clivara::SystemPauses pauses;
    clivara::SystemGuids guids;
    clivara::SystemMiddleware middleware;
    clivara::Class3 chart({settings, clock, hand, pauses, guids, middleware});
    chart.InitDbConn(practice->environment());
    for (const orvale::SectionGroup &group : orvale::sectionGroups()) {
        for (const orvale::Section &section : group.sections) {
            SCOPED_TRACE(section.title.toStdString());
            settings.write(QStringLiteral("CODICE PAZIENTE"), QString::number(1 + section.action % 4));
            hand.use(steps, [&] {
                chart.Action(section.action);
                return chart.failure().isEmpty();
            });
            EXPECT_EQ(chart.failure(), QString());
            EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        }
    }
    chart.Action(99);
    for (const orvale::Finding &finding : orvale::checkPractice(*practice))
        ADD_FAILURE() << qPrintable(finding.text) << ": " << qPrintable(finding.keys.join(u' '));
    EXPECT_GE(hand.seen().size(), 14) << qPrintable(hand.seen().values().join(u' '));
}

} // namespace
