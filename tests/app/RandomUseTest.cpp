// SPDX-License-Identifier: Apache-2.0
#include "PracticeFixture.h"
#include "app/demo/Demo.h"
#include "app/practice/PracticeCheck.h"
#include "app/session/CurrentPatient.h"
#include "app/session/WorkingDoctor.h"
#include "app/window/HostWindow.h"
#include "chart/WorkingState.h"
#include "data/Identity.h"
#include "host/Class3.h"
#include "host/Sections.h"
#include "support/ui/ChartForm.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace {

using clivara::ChartForm;
using clivara::Prompt;
using clivara::PromptButton;

constexpr int patientCount = 4;

// Presses, types and chooses at random in whatever window is open, as a cat on the keyboard would; the same
// seed does the same.
class RandomHand final : public QObject, public clivara::Prompts {
public:
    explicit RandomHand(quint32 seed)
        : m_random(seed)
    {
    }

    // So many steps in what `open` shows, as often as it closes and until it fails; then all windows are
    // closed without saving.
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
    // Runs at each step, before the hand acts.
    void setLook(const std::function<void()> &look) { m_look = look; }
    const QStringList &asked() const { return m_asked; }
    int below(qsizetype count) { return m_random.bounded(int(count)); }

    PromptButton ask(const Prompt &prompt) override
    {
        m_asked += prompt.text;
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
        if (m_look)
            m_look();
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
    QRandomGenerator m_random;
    int m_steps = 0;
    bool m_using = false;
    QSet<QString> m_seen;
    QStringList m_asked;
    std::function<void()> m_look;
};

int stepsOr(int usual)
{
    return qEnvironmentVariableIsSet("CLIVARA_RANDOM_STEPS")
               ? qEnvironmentVariableIntValue("CLIVARA_RANDOM_STEPS")
               : usual;
}

quint32 seed()
{
    return quint32(qEnvironmentVariableIntValue("CLIVARA_RANDOM_SEED"));
}

// A demo practice whose patients carry a number of their own, the first one `first`, in every text and in the
// year of every date that is written here.
std::unique_ptr<orvale::Practice> numberedPractice(const QString &folder, int first, QDate today)
{
    orvale::createDemo(folder,
                       {.patients = patientCount, .years = 2, .seed = quint32(first), .today = today});
    auto practice = orvale::Practice::open(folder);
    for (int patient = 1; patient <= patientCount; ++patient) {
        for (const char *sql :
             {"UPDATE archivio SET cognome = 'Tizio §%2§', Data_Nasc = #6/15/199%2# WHERE cod_paz = %1",
              "UPDATE inf_gen SET Allergie = 'lattice §%2§' WHERE cod_paz = %1",
              "UPDATE PROBLEMS SET descr_mal = '§%2§ ' & idProblems WHERE cod_paz = %1",
              "UPDATE VISITAPROBL SET anamnesi = '§%2§', conclusioni = 'sintesi §%2§' WHERE cod_paz = %1",
              "INSERT INTO ricoveri2 (cod_paz, data_accesso, data_fineric, sede, reparto) VALUES (%1, "
              "#3/1/199%2#, "
              "#3/9/199%2#, 'Sede', 'Cardiologia')",
              "INSERT INTO Rischio_Cardio (cod_paz, Data_Val, pct_rischio, pressione, colesterolo, hdl) "
              "VALUES (%1, "
              "#3/1/199%2#, 5, 140, 220, 50)",
              "INSERT INTO SindrMetabolica (cod_paz, Data_Val, valutazione, circAdd, pressSist, pressDiast, "
              "glicemia, "
              "trigliceridi) VALUES (%1, #3/1/199%2#, 1, 102, 130, 84, 109, 150)",
              "INSERT INTO AIR15_7 (idScheda, cod_paz, idTipo, DataReg, SEQDATI) VALUES (90%2, %1, 1, "
              "#3/1/199%2#, "
              "'x')"})
            practice->environment().clinical->Execute(
                QString(sql)
                    .replace("%1", QString::number(patient))
                    .replace("%2", QString::number(first + patient - 1)));
    }
    return practice;
}

// What a window shows, but for the list of all patients.
QStringList shownTexts(const QWidget &window)
{
    QStringList texts{window.windowTitle()};
    for (const QWidget *const each : window.findChildren<QWidget *>()) {
        if (!each->isVisible() || each->window() != &window || each->objectName() == u"results"
            || qobject_cast<const QHeaderView *>(each))
            continue;
        texts << each->toolTip() << each->accessibleName() << each->property("text").toString()
              << each->property("plainText").toString();
        if (const auto *const box = qobject_cast<const QComboBox *>(each)) {
            for (int i = 0; i < box->count(); ++i)
                texts << box->itemText(i);
        } else if (const auto *const view = qobject_cast<const QAbstractItemView *>(each);
                   view && view->model()) {
            const QAbstractItemModel &model = *view->model();
            const std::function<void(const QModelIndex &)> below = [&](const QModelIndex &parent) {
                for (int row = 0; row < model.rowCount(parent); ++row) {
                    for (int column = 0; column < model.columnCount(parent); ++column) {
                        const QModelIndex cell = model.index(row, column, parent);
                        texts << cell.data().toString() << cell.data(Qt::ToolTipRole).toString();
                    }
                    below(model.index(row, 0, parent));
                }
            };
            below({});
        }
    }
    return texts;
}

// The numbers of the patients whom these texts are about.
QSet<int> numbersIn(const QStringList &texts)
{
    static const QRegularExpression number(
        QStringLiteral("§(\\d)§|\\b\\d\\d[/-]\\d\\d[/-](?:19)?9([1-8])\\b"));
    QSet<int> found;
    for (const QString &text : texts) {
        for (auto each = number.globalMatch(text); each.hasNext();) {
            const QRegularExpressionMatch match = each.next();
            found.insert((match.captured(1) + match.captured(2)).toInt());
        }
    }
    return found;
}

class RandomUseTest : public PracticeFixture { };

// The sanitizers watch; what was saved on the way must still be coherent.
TEST_F(RandomUseTest, LeavesACoherentPracticeAndNoWindow)
{
    const QString folder = path(QStringLiteral("practice"));
    const QDate today(2026, 11, 21);
    orvale::createDemo(folder, {.patients = 4, .years = 3, .seed = 5, .today = today});
    const auto practice = orvale::Practice::open(folder);
    ASSERT_TRUE(orvale::checkPractice(*practice).isEmpty());

    const int steps = stepsOr(60);
    clivara::MemorySettings settings;
    orvale::prepareSettings(settings, *practice);
    settings.write(QStringLiteral("CARTELLA_PDF"), path(QString()));
    clivara::FixedClock clock(today);
    RandomHand hand(seed());
    clivara::SystemPauses pauses;
    clivara::SystemGuids guids;
    clivara::SystemMiddleware middleware;
    clivara::Class3 chart({settings, clock, hand, pauses, guids, middleware});
    chart.InitDbConn(practice->environment());
    for (const clivara::SectionGroup &group : clivara::sectionGroups()) {
        for (const clivara::Section &section : group.sections) {
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

// Two windows of one user, now on the same practice, now on two, whose patient, doctor and practice change at
// random, also while the other window has a section open. Nothing that is seen is another's than the
// patient's of that window.
TEST_F(RandomUseTest, EachWindowShowsItsPatientOnly)
{
    const QDate today(2026, 11, 21);
    const std::array firsts{1, 1 + patientCount};
    std::array practices{numberedPractice(path("one"), firsts[0], today),
                         numberedPractice(path("two"), firsts[1], today)};
    clivara::MemorySettings user;
    user.write(QStringLiteral("CARTELLA_PDF"), path(QString()));
    clivara::FixedClock clock(today);
    RandomHand hand(seed());
    clivara::SystemPauses pauses;
    clivara::SystemGuids guids;
    clivara::SystemMiddleware middleware;
    struct Desk {
        std::unique_ptr<orvale::HostWindow> window;
        int practice = 0;
    };
    std::array<Desk, 2> desks;
    const auto sit = [&](Desk &desk, int practice) {
        desk.window.reset();
        desk.practice = practice;
        desk.window = std::make_unique<orvale::HostWindow>(
            *practices[std::size_t(practice)],
            clivara::Services{user, clock, hand, pauses, guids, middleware});
        desk.window->show();
        QSignalSpy loaded(desk.window.get(), &orvale::HostWindow::patientsLoaded);
        EXPECT_TRUE(!desk.window->isLoadingPatients() || loaded.wait());
    };
    const auto numberOf = [&](const Desk &desk) {
        return firsts[std::size_t(desk.practice)] + desk.window->currentPatient() - 1;
    };
    const auto choosePatient = [&](Desk &desk) { desk.window->selectPatient(1 + hand.below(patientCount)); };
    const Desk *working = nullptr;
    int seenAbout = 0;
    const auto look = [&] {
        for (const Desk &desk : desks) {
            for (const int number : numbersIn(shownTexts(*desk.window)))
                EXPECT_EQ(number, numberOf(desk)) << "in the window";
        }
        for (const QWidget *const form : QApplication::topLevelWidgets()) {
            if (!form->isVisible() || !qobject_cast<const ChartForm *>(form))
                continue;
            const QString strip = form->findChild<QLabel *>("lblPaziente")->text();
            EXPECT_EQ(numbersIn({strip}), QSet<int>{numberOf(*working)}) << strip.toStdString();
            for (const QString &text : shownTexts(*form)) {
                for (const int number : numbersIn({text})) {
                    EXPECT_EQ(number, numberOf(*working))
                        << form->objectName().toStdString() << ": " << text.toStdString();
                    ++seenAbout;
                }
            }
        }
    };
    hand.setLook([&] {
        look();
        Desk &other = working == &desks[0] ? desks[1] : desks[0];
        if (hand.below(6) == 0)
            choosePatient(other); // another process, while this one has a section open
    });
    sit(desks[0], 0);
    sit(desks[1], 1);
    QList<clivara::Section> sections;
    for (const clivara::SectionGroup &group : clivara::sectionGroups())
        sections += group.sections;
    const int rounds = stepsOr(40);
    for (int round = 0; round < rounds && !HasFailure(); ++round) {
        Desk &desk = desks[std::size_t(hand.below(2))];
        working = &desk;
        if (hand.below(6) == 0)
            sit(desk, hand.below(2));
        if (desk.window->currentPatient() < 0 || hand.below(2) == 0)
            choosePatient(desk);
        if (auto *const doctor = desk.window->findChild<QComboBox *>("doctor"); hand.below(3) == 0) {
            doctor->setCurrentIndex(hand.below(doctor->count()));
            emit doctor->activated(doctor->currentIndex());
        }
        const clivara::Section section =
            sections.at(round < sections.size() ? round : hand.below(sections.size()));
        SCOPED_TRACE(QStringLiteral("round %1: %2").arg(round).arg(section.title).toStdString());
        hand.use(8, [&] {
            desk.window->openSection(section);
            return true;
        });
        look();
    }
    EXPECT_GT(seenAbout, rounds) << "there was something to look at";
    EXPECT_TRUE(hand.asked().filter("Non è stato possibile").isEmpty())
        << qPrintable(hand.asked().filter("Non è stato possibile").join(u'\n'));
    for (Desk &desk : desks)
        desk.window.reset();
    for (const auto &practice : practices) {
        for (const orvale::Finding &finding : orvale::checkPractice(*practice))
            ADD_FAILURE() << qPrintable(finding.text) << ": " << qPrintable(finding.keys.join(u' '));
        // What was saved is signed by a doctor of the practice.
        const auto foreign = practice->environment().clinical->OpenRecordset(
            "SELECT sAuthorUid FROM VISITAPROBL WHERE dLastModifiedDate >= #11/21/2026#");
        QStringList own;
        for (const orvale::GroupDoctor &doctor : orvale::groupDoctors(*practice))
            own += clivara::normaliseUid(doctor.uid);
        for (; !foreign->Eof(); foreign->MoveNext())
            EXPECT_TRUE(own.contains(clivara::normaliseUid(foreign->Fields(0).text())))
                << foreign->Fields(0).text().toStdString();
    }
}

} // namespace
