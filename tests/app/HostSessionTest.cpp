// SPDX-License-Identifier: Apache-2.0
#include "app/HostSession.h"
#include "SmallPractice.h"

using orvale::HostSession;
using orvale::SectionOutcome;

class HostSessionTest : public SmallPractice {
protected:
    QString setting(const char *key) const { return m_settings.text(key); }
    // A session whose chart does nothing but what `section` does.
    std::unique_ptr<HostSession> session(HostSession::Chart section = [](qint16, QVariant &) {
        return QString();
    })
    {
        return std::make_unique<HostSession>(*m_practice, services(), std::move(section));
    }
};

TEST_F(HostSessionTest, TellsTheChartDoctorRegionAndWorkFolder)
{
    m_settings.write("CODICE PAZIENTE", 11); // of an earlier session
    session();
    EXPECT_EQ(setting("medicoP"), "101"); // the lowest code
    EXPECT_EQ(setting("medicoT"), "101");
    EXPECT_EQ(setting("medico_corrente"), "101");
    EXPECT_EQ(setting("CODICE REGIONE"), "15");
    EXPECT_EQ(setting("CODICE PAZIENTE"), "-1");
    EXPECT_TRUE(QDir(setting("ORVALE_WORK")).exists("logOrvale"));
}

TEST_F(HostSessionTest, KeepsTheDoctorWhomThePracticeKnows)
{
    m_settings.write("medicoP", "102");
    m_settings.write("medicoT", "7");
    m_settings.write("medico_corrente", "Fornò");
    m_settings.write("CODICE REGIONE", "03");
    session();
    EXPECT_EQ(setting("medicoP"), "102");
    EXPECT_EQ(setting("medicoT"), "101");
    EXPECT_EQ(setting("medico_corrente"), "101");
    EXPECT_EQ(setting("CODICE REGIONE"), "03");
}

TEST_F(HostSessionTest, MakesAPatientCurrent)
{
    const auto host = session();
    EXPECT_TRUE(host->selectPatient(11));
    EXPECT_EQ(setting("CODICE PAZIENTE"), "11");
    EXPECT_EQ(setting("ESENZ_PAT"), "S");
    EXPECT_FALSE(host->selectPatient(99));
    EXPECT_EQ(host->currentPatient(), 11);
    EXPECT_EQ(setting("CODICE PAZIENTE"), "11");
    EXPECT_TRUE(host->selectPatient(12)); // the exemption is not the new patient's
    EXPECT_EQ(setting("ESENZ_PAT"), QString());
}

TEST_F(HostSessionTest, ReadsAndEmptiesTheMailbox)
{
    const struct {
        const char *name;
        QHash<QString, QString> left; // by the section
        QVariant result;
        SectionOutcome expected;
    } cases[] = {
        {"nothing", {}, {}, {}},
        {"a calculator",
         {{"AGGIORNA_DIARIO", "PREVENZIONE"}},
         QVariantList{"valutazione", 119.6},
         {"PREVENZIONE", {}, {}, {}, 119.6, {}}},
        {"a patient", {{"CARICA PAZIENTE", "12"}}, {}, {{}, 12, {}, {}, {}, {}}},
        {"no patient", {{"CARICA PAZIENTE", "-1"}}, {}, {}},
        {"not a code", {{"CARICA PAZIENTE", "1e30"}}, {}, {}},
        {"a problem",
         {{"CODICE DIAGNOSI", "401.9"}, {"DIAGNOSI", "Ipertensione"}},
         {},
         {{}, {}, "401.9", "Ipertensione", {}, {}}},
        {"no problem", {{"CODICE DIAGNOSI", "*ABORT*"}, {"DIAGNOSI", "*ABORT*"}}, {}, {}},
        {"another result", {}, QVariantList{"altro", 5}, {}},
        {"the view in any case",
         {{"AGGIORNA_DIARIO", "mbutton(2) "}},
         {},
         {"MBUTTON(2)", {}, {}, {}, {}, {}}},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.name);
        // What is left over from before is not this section's answer.
        m_settings.write("AGGIORNA_DIARIO", "RAF");
        m_settings.write("DIAGNOSI", "Cefalea");
        const auto host = session([&](qint16 action, QVariant &param) {
            EXPECT_EQ(action, 80);
            for (auto left = each.left.cbegin(); left != each.left.cend(); ++left)
                m_settings.write(left.key(), *left);
            param = each.result;
            return QString();
        });
        const SectionOutcome outcome = host->openSection(80);
        EXPECT_EQ(outcome.view, each.expected.view);
        EXPECT_EQ(outcome.patient, each.expected.patient);
        EXPECT_EQ(outcome.diagnosisCode, each.expected.diagnosisCode);
        EXPECT_EQ(outcome.diagnosis, each.expected.diagnosis);
        EXPECT_EQ(outcome.evaluation, each.expected.evaluation);
        for (const char *key : {"AGGIORNA_DIARIO", "CARICA PAZIENTE", "CODICE DIAGNOSI", "DIAGNOSI"})
            EXPECT_EQ(setting(key), QString()) << key;
    }
}
