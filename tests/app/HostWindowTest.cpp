// SPDX-License-Identifier: Apache-2.0
#include "app/window/HostWindow.h"
#include "SmallPractice.h"
#include "app/window/HostStyle.h"
#include "host/Class3.h"
#include "host/Sections.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTableWidget>
#include <QTest>
#include <QWheelEvent>

using clivara::Section;
using orvale::HostWindow;

class HostWindowTest : public SmallPractice {
protected:
    static void SetUpTestSuite() { orvale::applyHostStyle(*qApp); }

    void SetUp() override
    {
        SmallPractice::SetUp();
        m_window = std::make_unique<HostWindow>(
            *m_practice, services(),
            [this](qint16 action, QVariant &param, clivara::SettingsStore &settings) {
                m_opened << action;
                m_mailbox = &settings;
                if (m_section)
                    m_section(param);
                return m_failure;
            });
        QSignalSpy loaded(m_window.get(), &HostWindow::patientsLoaded);
        m_window->show();
        m_window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
        ASSERT_TRUE(!m_window->isLoadingPatients() || loaded.wait());
    }

    template <typename Widget>
    Widget &widget(const char *name) const
    {
        const auto found = m_window->findChild<Widget *>(name);
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    QLineEdit &query() const { return widget<QLineEdit>("query"); }
    QTableView &results() const { return widget<QTableView>("results"); }
    QString patientName() const { return widget<QLabel>("patientName").text(); }
    QStringList column(const char *table, int column) const
    {
        const QAbstractItemModel &model = *widget<QTableView>(table).model();
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row)
            texts << model.index(row, column).data().toString();
        return texts;
    }
    void openSection(qint16 action)
    {
        widget<QPushButton>(qPrintable(QStringLiteral("section_%1").arg(action))).click();
    }

    std::unique_ptr<HostWindow> m_window;
    std::function<void(QVariant &)> m_section; // what the section does that is opened
    QString m_failure; // why it cannot be opened
    QList<qint16> m_opened;
    clivara::SettingsStore *m_mailbox = nullptr; // of the section that is open
};

TEST_F(HostWindowTest, FindsWhileTypingAndPicksWithTheKeyboard)
{
    EXPECT_EQ(QApplication::focusWidget(), &query());
    EXPECT_EQ(column("results", 0), (QStringList{"D'Ambrogio Mariangela", "Fornò Giacomo", "Zanchetta"}));
    QTest::keyClicks(&query(), "mar dam");
    EXPECT_EQ(column("results", 0), QStringList{"D'Ambrogio Mariangela"});
    EXPECT_EQ(column("results", 1), QStringList{"12/03/1956"});
    EXPECT_EQ(column("results", 2), QStringList{"70"});
    EXPECT_EQ(widget<QLabel>("count").text(), "1 di 3 pazienti");
    EXPECT_EQ(m_window->currentPatient(), -1);
    QTest::keyClick(&query(), Qt::Key_Return);
    EXPECT_EQ(m_window->currentPatient(), 11);
    EXPECT_EQ(patientName(), "D'Ambrogio Mariangela");
    EXPECT_EQ(m_settings.text("CODICE PAZIENTE"), "11");

    QTest::keyClick(&query(), Qt::Key_Escape);
    EXPECT_EQ(query().text(), QString());
    QTest::keyClick(&query(), Qt::Key_Down); // into the list ...
    EXPECT_EQ(QApplication::focusWidget(), &results());
    QTest::keyClick(&results(), Qt::Key_Return);
    EXPECT_EQ(patientName(), "Fornò Giacomo");
    QTest::keyClick(m_window.get(), Qt::Key_F, Qt::ControlModifier); // ... and back
    EXPECT_EQ(QApplication::focusWidget(), &query());

    QTest::keyClicks(&query(), "xyz");
    EXPECT_EQ(results().model()->rowCount(), 0);
    QTest::keyClick(&query(), Qt::Key_Return);
    EXPECT_EQ(m_window->currentPatient(), 12);
}

// Whatever moves the highlight: it is on the patient whom the panel shows and a section opens on, or on
// nobody.
TEST_F(HostWindowTest, HighlightsWhomThePanelShows)
{
    const auto agrees = [this](qint32 code, const char *name, const char *step) {
        const QModelIndexList rows = results().selectionModel()->selectedRows();
        const QString highlighted = rows.isEmpty() ? QString() : rows.first().data().toString();
        EXPECT_EQ(highlighted, name) << step;
        EXPECT_EQ(results().currentIndex().row(), rows.isEmpty() ? -1 : rows.first().row()) << step;
        EXPECT_EQ(m_window->currentPatient(), code) << step;
        if (!rows.isEmpty()) {
            EXPECT_EQ(patientName(), name) << step;
        }
    };
    agrees(-1, "", "at first");
    QTest::keyClick(&query(), Qt::Key_Down);
    agrees(11, "D'Ambrogio Mariangela", "into the list");
    QTest::keyClick(&results(), Qt::Key_Down);
    agrees(12, "Fornò Giacomo", "an arrow");
    QTest::keyClick(&results(), Qt::Key_End, Qt::ControlModifier);
    agrees(20, "Zanchetta", "to the end");
    QTest::keyClick(&results(), Qt::Key_Space, Qt::ControlModifier);
    agrees(20, "Zanchetta", "the highlight cannot be taken away");
    const auto click = [this](int row) {
        QTest::mouseClick(results().viewport(), Qt::LeftButton, {},
                          results().visualRect(results().model()->index(row, 0)).center());
    };
    click(1);
    agrees(12, "Fornò Giacomo", "a click");
    QTest::keyClicks(&query(), "g");
    agrees(12, "Fornò Giacomo", "among those who were found");
    QTest::keyClick(&query(), Qt::Key_Escape);
    QTest::keyClicks(&query(), "mar");
    agrees(12, "", "not among those who were found");
    QTest::keyClick(&query(), Qt::Key_Return);
    agrees(11, "D'Ambrogio Mariangela", "the first one found");
    QTest::keyClick(&query(), Qt::Key_Escape);
    agrees(11, "D'Ambrogio Mariangela", "all again");
    QSignalSpy loaded(m_window.get(), &HostWindow::patientsLoaded);
    widget<QAction>("reload").trigger();
    agrees(11, "", "while the list is read again");
    ASSERT_TRUE(loaded.wait());
    agrees(11, "D'Ambrogio Mariangela", "read again");

    clinical("DELETE * FROM archivio WHERE cod_paz = 12");
    QTest::keyClick(&results(), Qt::Key_Down);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_prompts.texts, QStringList{"Il paziente con codice 12 non è in archivio."});
    agrees(11, "D'Ambrogio Mariangela", "one who is gone, by key");
    click(1);
    QCoreApplication::processEvents();
    EXPECT_EQ(m_prompts.texts.size(), 2);
    agrees(11, "D'Ambrogio Mariangela", "one who is gone, by mouse");
}

TEST_F(HostWindowTest, MarksNamesakes)
{
    for (const char *sql :
         {"INSERT INTO archivio (cod_paz, cognome, nome, Data_Nasc) VALUES (13, 'FORNO`', 'Giacomo', "
          "cdate('02/02/1950'))",
          "INSERT INTO archivio (cod_paz, cognome, nome) VALUES (14, 'Forno', 'Giàcomo')",
          "INSERT INTO archivio (cod_paz, cognome, nome) VALUES (15, 'Forno', 'Giacomino')"})
        clinical(sql);
    QSignalSpy loaded(m_window.get(), &HostWindow::patientsLoaded);
    widget<QAction>("reload").trigger();
    ASSERT_TRUE(loaded.wait());
    EXPECT_EQ(column("results", 0), (QStringList{"D'Ambrogio Mariangela", "Forno Giacomino", "Forno Giàcomo",
                                                 "FORNO` Giacomo", "Fornò Giacomo", "Zanchetta"}));
    EXPECT_EQ(column("results", 1),
              (QStringList{"12/03/1956", "", "⚠ senza data", "⚠ 02/02/1950", "⚠ 01/01/1990", ""}));
    const auto said = [this](int row, int column, int role) {
        return results().model()->index(row, column).data(role);
    };
    EXPECT_EQ(said(3, 0, Qt::AccessibleTextRole), "FORNO` Giacomo, omonimo");
    EXPECT_EQ(said(3, 1, Qt::AccessibleTextRole), "02/02/1950, omonimo: controllare la data di nascita");
    EXPECT_TRUE(said(3, 1, Qt::FontRole).value<QFont>().bold());
    EXPECT_FALSE(said(0, 1, Qt::FontRole).isValid());
    EXPECT_TRUE(said(3, 0, Qt::ToolTipRole).toString().contains("Omonimo"));
    QTest::keyClicks(&query(), "1990"); // the other ones are not among those who were found
    EXPECT_EQ(column("results", 1), QStringList{"⚠ 01/01/1990"});
}

TEST_F(HostWindowTest, PicksNobodyWhenNothingWasTyped)
{
    QTest::keyClick(&query(), Qt::Key_Return);
    EXPECT_EQ(m_window->currentPatient(), -1);
}

TEST_F(HostWindowTest, OffersTheBuiltSectionsOfAPatient)
{
    const auto states = [this] {
        QMap<qint16, QPair<bool, QString>> found;
        for (const clivara::SectionGroup &group : clivara::sectionGroups()) {
            for (const Section &section : group.sections) {
                const auto &button =
                    widget<QPushButton>(qPrintable(QStringLiteral("section_%1").arg(section.action)));
                const auto &action =
                    widget<QAction>(qPrintable(QStringLiteral("action_%1").arg(section.action)));
                EXPECT_EQ(button.isEnabled(), action.isEnabled());
                found.insert(section.action, {button.isEnabled(), button.toolTip()});
            }
        }
        return found;
    };
    for (const auto &state : states())
        EXPECT_FALSE(state.first);
    m_window->selectPatient(11);
    const auto withPatient = states();
    EXPECT_EQ(withPatient.size(), 12);
    for (auto state = withPatient.cbegin(); state != withPatient.cend(); ++state) {
        const bool isBuilt = clivara::Class3::isBuilt(state.key());
        EXPECT_EQ(state->first, isBuilt) << state.key();
        EXPECT_EQ(state->second == "Sezione non ancora disponibile", !isBuilt) << state.key();
    }
    for (const qint16 calculator : {80, 81, 82})
        EXPECT_TRUE(withPatient.value(calculator).first) << calculator;
}

TEST_F(HostWindowTest, ActsOnTheMailboxWhenASectionHasClosed)
{
    m_window->selectPatient(11);
    m_section = [this](QVariant &param) {
        result(6, "90.16.4", "Creatinina", "1.1", "20/11/2026");
        m_mailbox->write("AGGIORNA_DIARIO", "PREVENZIONE");
        param = QVariantList{"valutazione", 119.6};
    };
    openSection(80);
    EXPECT_EQ(m_opened, QList<qint16>{80});
    EXPECT_EQ(column("laboratory", 0).first(), "Creatinina");
    EXPECT_EQ(m_window->statusBar()->currentMessage(), "Colesterolo LDL: 119.60");

    m_section = [this](QVariant &) {
        clinical("INSERT INTO PROBLEMS (cod_paz, DataInizio, descr_mal, stato_probl) VALUES "
                 "(11, cdate('20/11/2026'), 'Gotta', 1)");
        m_mailbox->write("AGGIORNA_DIARIO", "PROBLEMI");
    };
    openSection(81);
    EXPECT_EQ(column("problems", 1), (QStringList{"Gotta", "Ipertensione"}));

    m_section = [this](QVariant &) {
        clinical("UPDATE archivio SET cognome = 'Bianchi' WHERE cod_paz = 11");
        m_mailbox->write("AGGIORNA_DIARIO", "ANAGRAFICA");
    };
    openSection(81);
    EXPECT_EQ(patientName(), "Bianchi Mariangela");
    EXPECT_EQ(column("results", 0).first(), "Bianchi Mariangela");

    m_section = [this](QVariant &) { m_mailbox->write("CARICA PAZIENTE", "12"); };
    openSection(82);
    EXPECT_EQ(m_window->currentPatient(), 12);
    EXPECT_EQ(patientName(), "Fornò Giacomo");
    EXPECT_TRUE(m_prompts.texts.isEmpty()) << m_prompts.texts.join(u' ').toStdString();
}

TEST_F(HostWindowTest, ShowsTheDoctorWhoWorksAndLetsAnotherTakeOver)
{
    auto &doctor = widget<QComboBox>("doctor");
    EXPECT_EQ(doctor.currentText(), "Cortellazzi");
    EXPECT_EQ(doctor.accessibleName(), "Medico che lavora");
    EXPECT_EQ(doctor.count(), 2);
    EXPECT_TRUE(widget<QPushButton>("confirmDoctor").isVisible()) << "nobody has said so yet";
    QWheelEvent wheel({5, 5}, doctor.mapToGlobal(QPoint(5, 5)), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&doctor, &wheel);
    EXPECT_EQ(doctor.currentText(), "Cortellazzi");

    QTest::keyClick(m_window.get(), Qt::Key_M, Qt::AltModifier);
    EXPECT_EQ(QApplication::focusWidget(), &doctor);
    QTest::keyClick(&doctor, Qt::Key_Down);
    EXPECT_EQ(doctor.currentText(), "Fornò");
    EXPECT_FALSE(widget<QPushButton>("confirmDoctor").isVisible());
    m_window->selectPatient(11);
    m_section = [this](QVariant &) { EXPECT_EQ(m_mailbox->text("medicoP"), "102"); };
    openSection(5);
    EXPECT_EQ(m_opened, QList<qint16>{5});

    m_window.reset();
    HostWindow again(*m_practice, services(),
                     [](qint16, QVariant &, clivara::SettingsStore &) { return QString(); });
    EXPECT_EQ(again.findChild<QComboBox *>("doctor")->currentText(), "Fornò");
    EXPECT_TRUE(again.findChild<QPushButton *>("confirmDoctor")->isHidden());
}

TEST_F(HostWindowTest, ShowsTheVisitsAnewAfterHomeCare)
{
    m_window->selectPatient(11);
    m_section = [this](QVariant &) {
        visit(9, "21/11/2026", "'', 'A casa'");
        m_mailbox->write("AGGIORNA_DIARIO", "PREVENZIONE");
    };
    openSection(18);
    EXPECT_EQ(column("visits", 2).first(), "A casa");
}

// The mailbox names one view, and the sections of the general information change more than one.
TEST_F(HostWindowTest, ShowsEverythingAnewAfterTheGeneralInformation)
{
    m_window->selectPatient(11);
    m_section = [this](QVariant &) {
        clinical("INSERT INTO PROBLEMS (cod_paz, DataInizio, descr_mal, stato_probl) VALUES "
                 "(11, cdate('20/11/2026'), 'Gotta', 1)");
        clinical("UPDATE archivio SET cognome = 'Bianchi' WHERE cod_paz = 11");
        result(6, "90.16.4", "Creatinina", "1.1", "20/11/2026");
        visit(9, "21/11/2026", "'', 'Nuova'");
        m_mailbox->write("AGGIORNA_DIARIO", "PREVENZIONE");
    };
    openSection(0);
    EXPECT_EQ(column("problems", 1).first(), "Gotta");
    EXPECT_EQ(column("laboratory", 0).first(), "Creatinina");
    EXPECT_EQ(column("visits", 2).first(), "Nuova");
    EXPECT_EQ(patientName(), "Bianchi Mariangela");
    EXPECT_EQ(column("results", 0).first(), "Bianchi Mariangela");
}

TEST_F(HostWindowTest, NamesTheProblemThatWasChosenForTheHost)
{
    m_window->selectPatient(11);
    m_section = [this](QVariant &) {
        m_mailbox->write("CODICE DIAGNOSI", "401.9");
        m_mailbox->write("DIAGNOSI", "Ipertensione");
    };
    openSection(5); // a diagnosis that the problem's own dialog asked for
    EXPECT_EQ(m_window->statusBar()->currentMessage(), QString());
    m_window->openSection(Section{24, {}, QStringLiteral("Scelta del problema"), {}, {}});
    EXPECT_EQ(m_window->statusBar()->currentMessage(), "Problema scelto: 401.9 Ipertensione");
}

TEST_F(HostWindowTest, TellsThatASectionCouldNotBeOpened)
{
    m_window->selectPatient(11);
    m_failure = QStringLiteral("Tabella inesistente: 'ALLERGIE'");
    m_section = [](QVariant &) { QGuiApplication::setOverrideCursor(Qt::WaitCursor); };
    openSection(12);
    EXPECT_EQ(m_prompts.texts, QStringList{"Non è stato possibile aprire la sezione Allergie.\n\nTabella "
                                           "inesistente: 'ALLERGIE'"});
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(HostWindowTest, TellsADatabaseErrorAndStaysUsable)
{
    m_window->selectPatient(11);
    clinical("DROP TABLE esa_ob");
    m_window->selectPatient(12);
    ASSERT_EQ(m_prompts.texts.size(), 1);
    EXPECT_TRUE(m_prompts.texts.first().startsWith("Non è stato possibile aprire la scheda"));
    // The chart and the window still agree on who is shown.
    EXPECT_EQ(m_window->currentPatient(), 11);
    EXPECT_EQ(patientName(), "D'Ambrogio Mariangela");
    QTest::keyClicks(&query(), "zan");
    EXPECT_EQ(column("results", 0), QStringList{"Zanchetta"});

    m_prompts.texts.clear();
    clinical("CREATE TABLE esa_ob (cod_paz LONG, data_ob DATETIME, presmax SHORT, presmin SHORT)");
    m_window->selectPatient(12);
    EXPECT_TRUE(m_prompts.texts.isEmpty());
    EXPECT_EQ(m_window->currentPatient(), 12);
    m_window->selectPatient(4711);
    EXPECT_EQ(m_prompts.texts, QStringList{"Il paziente con codice 4711 non è in archivio."});
    EXPECT_EQ(m_window->currentPatient(), 12);
}

TEST_F(HostWindowTest, AsksForAnImportFromItsMenu)
{
    QSignalSpy asked(m_window.get(), &HostWindow::importAsked);
    widget<QAction>("importFromJet").trigger();
    EXPECT_EQ(asked.count(), 1);
}
