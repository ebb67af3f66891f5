// SPDX-License-Identifier: Apache-2.0
#include "SmallPractice.h"
#include "app/session/HostSession.h"
#include "app/session/WindowSettings.h"
#include "host/Class3.h"
#include "host/Sections.h"
#include "support/ui/ChartForm.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>

namespace {

using orvale::HostSession;

// The user's settings while another window of the same user is at work on another practice: whatever is
// written, at once says what the other window is about.
class SharedSettings final : public clivara::SettingsStore {
public:
    QVariant read(const QString &key, const QVariant &fallback) const override
    {
        return m_user.read(key, fallback);
    }
    void write(const QString &key, const QVariant &value) override
    {
        m_user.write(key, value);
        for (auto each = others.cbegin(); each != others.cend(); ++each)
            m_user.write(each.key(), *each);
    }
    QMap<QString, QString> others;

private:
    clivara::MemorySettings m_user;
};

class TwoWindowsTest : public SmallPractice {
protected:
    void SetUp() override
    {
        SmallPractice::SetUp();
        doctors("UPDATE medici_gruppo SET idRowGuid = '{AAAAAAAA-0000-4000-8000-000000000102}' WHERE cod_smi "
                "= 102");
        m_other = orvale::Practice::create(path("other"));
        m_other->setProperty("region", "03");
        m_other->environment().doctors->Execute(
            "INSERT INTO medici_gruppo (cod_smi, cognome, idRowGuid) VALUES (7, 'Altro', "
            "'{BBBBBBBB-0000-4000-8000-000000000007}')");
        m_other->environment().clinical->Execute(
            "INSERT INTO archivio (cod_paz, cognome, nome) VALUES (12, 'Estraneo', 'Aldo')");
    }
    clivara::Services with(clivara::SettingsStore &settings)
    {
        return {settings, m_clock, m_prompts, m_pauses, m_guids, m_middleware};
    }
    // What the strip of the section says that the action opens.
    QString stripOf(HostSession &session, qint16 action, const std::function<void(QWidget &)> &act = {})
    {
        QString name;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            auto *const form = qobject_cast<clivara::ChartForm *>(QApplication::activeModalWidget());
            if (!form || !form->isVisible())
                return;
            timer.stop();
            name = form->findChild<QLabel *>("lblPaziente")->text();
            if (act)
                act(*form);
            if (form->isVisible())
                form->abandon();
        });
        timer.start(1);
        EXPECT_EQ(session.openSection(action).failure, QString());
        return name;
    }

    std::unique_ptr<orvale::Practice> m_other;
};

TEST(WindowSettings, WhoIsCurrentIsEachWindowsOwn)
{
    clivara::MemorySettings user;
    orvale::WindowSettings first(user), second(user);
    const QStringList own{"CODICE PAZIENTE", "ESENZ_PAT",       "ESENZ_INV", "medicoP",
                          "medicoT",         "medico_corrente", "MEDICO",    "uidMedicoP",
                          "ORVALE_WORK",     "CODICE REGIONE",  "REGIONE"};
    for (const QString &key : own) {
        first.write(key, "primo");
        second.write(key.toLower(), "secondo");
    }
    for (const QString &key : own) {
        EXPECT_EQ(first.text(key), "primo") << qPrintable(key);
        EXPECT_EQ(second.text(key), "secondo") << qPrintable(key);
        EXPECT_EQ(user.text(key), "secondo") << "where other programs look";
    }
    first.announce();
    for (const QString &key : own) {
        EXPECT_EQ(user.text(key), "primo") << qPrintable(key);
        EXPECT_EQ(second.text(key), "secondo") << qPrintable(key);
    }
    first.write("SET_INTESTA", "Ambulatorio");
    EXPECT_EQ(second.text("SET_INTESTA"), "Ambulatorio") << "is the user's";
}

TEST_F(TwoWindowsTest, EverySectionIsAboutThePatientOfItsWindow)
{
    HostSession first(*m_practice, with(m_settings));
    ASSERT_TRUE(first.selectPatient(11));
    HostSession second(*m_other, with(m_settings)); // says that nobody is current
    int sections = 0;
    for (const clivara::SectionGroup &group : clivara::sectionGroups()) {
        for (const clivara::Section &section : group.sections) {
            SCOPED_TRACE(section.title.toStdString());
            if (sections == 1) {
                ASSERT_TRUE(second.selectPatient(12));
            }
            EXPECT_EQ(stripOf(first, section.action), "D'Ambrogio Mariangela");
            EXPECT_EQ(m_settings.text("CODICE PAZIENTE"), "11") << "told before the section";
            EXPECT_EQ(m_settings.text("CODICE REGIONE"), "15");
            EXPECT_EQ(m_settings.text("medicoP"), "101");
            EXPECT_EQ(stripOf(second, section.action), sections == 0 ? "Nessun paziente" : "Estraneo Aldo");
            EXPECT_EQ(m_settings.text("CODICE PAZIENTE"), sections == 0 ? "-1" : "12");
            EXPECT_EQ(m_settings.text("CODICE REGIONE"), "03");
            EXPECT_EQ(m_settings.text("medicoP"), "7");
            ++sections;
        }
    }
    EXPECT_EQ(sections, 12);
}

// Between what this window writes and what its chart reads.
TEST_F(TwoWindowsTest, NothingOfAnotherWindowReachesASection)
{
    SharedSettings shared;
    shared.others = {{"CODICE PAZIENTE", "12"},
                     {"ESENZ_PAT", "X"},
                     {"medicoP", "7"},
                     {"medicoT", "7"},
                     {"medico_corrente", "7"},
                     {"uidMedicoP", "{BBBBBBBB-0000-4000-8000-000000000007}"},
                     {"CODICE REGIONE", "03"},
                     {"REGIONE", "LOMBARDIA"},
                     {"ORVALE_WORK", path("elsewhere")},
                     {"AGGIORNA_DIARIO", "RAF"},
                     {"CARICA PAZIENTE", "20"},
                     {"DIAGNOSI", "Cefalea"},
                     {"CODICE DIAGNOSI", "784.0"}};
    HostSession session(*m_practice, with(shared));
    session.chooseDoctor("102");
    ASSERT_TRUE(session.selectPatient(11));
    for (const clivara::SectionGroup &group : clivara::sectionGroups()) {
        for (const clivara::Section &section : group.sections)
            EXPECT_EQ(stripOf(session, section.action), "D'Ambrogio Mariangela")
                << section.title.toStdString();
    }
    const orvale::SectionOutcome outcome = session.openSection(50);
    EXPECT_FALSE(outcome.patient) << "another window's mail";
    EXPECT_EQ(outcome.view + outcome.diagnosis + outcome.diagnosisCode, QString());

    // The stamp is that of the doctor who works here.
    stripOf(session, 17, [this](QWidget &visits) {
        QTimer::singleShot(0, &visits, [] {
            QWidget &visit = *QApplication::activeModalWidget();
            visit.findChild<QAbstractButton *>("chameleonButton1_0")->click();
        });
        visits.findChild<QAbstractButton *>("bt_Visita_1")->click();
    });
    const auto saved = m_practice->environment().clinical->OpenRecordset(
        "SELECT cod_paz, sAuthorUid FROM VISITAPROBL WHERE IdVisitaProbl > 2");
    ASSERT_FALSE(saved->Eof());
    EXPECT_EQ(saved->Fields(0).number(), 11);
    EXPECT_EQ(saved->Fields(1).text(), "aaaaaaaa-0000-4000-8000-000000000102");
}

} // namespace
