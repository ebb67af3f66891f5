// SPDX-License-Identifier: Apache-2.0
#include "app/session/HostSession.h"
#include "SmallPractice.h"

using orvale::HostSession;
using orvale::SectionOutcome;

class HostSessionTest : public SmallPractice {
protected:
    QString setting(const char *key) const { return m_settings.text(key); }
    // A session whose chart does nothing but what `section` does.
    std::unique_ptr<HostSession> session(HostSession::Chart section = [](qint16, QVariant &,
                                                                         clivara::SettingsStore &) {
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

TEST_F(HostSessionTest, TakesTheDoctorWhomThePracticeKnowsUntilOneIsChosen)
{
    m_settings.write("medicoP", "102"); // as whoever used the program before had it
    doctors(
        "UPDATE medici_gruppo SET idRowGuid = '{AAAAAAAA-0000-4000-8000-000000000101}' WHERE cod_smi = 101");
    {
        const auto host = session();
        EXPECT_EQ(host->doctor().current().code, "102");
        EXPECT_FALSE(host->doctor().isChosen());
        EXPECT_EQ(setting("medicoT"), "102");
        EXPECT_EQ(setting("medico_corrente"), "102");
        host->chooseDoctor("101");
        host->chooseDoctor("7"); // nobody
        EXPECT_TRUE(host->doctor().isChosen());
        for (const char *key : {"medicoP", "medicoT", "medico_corrente", "MEDICO"})
            EXPECT_EQ(setting(key), "101") << key;
        EXPECT_TRUE(setting("uidMedicoP").contains("000000000101")) << qPrintable(setting("uidMedicoP"));
        host->chooseDoctor("102");
        EXPECT_EQ(setting("uidMedicoP"), QString()) << "has none, and not the other's";
        host->chooseDoctor("101");
    }
    m_settings.write("medicoP", "102"); // by another program
    EXPECT_EQ(session()->doctor().current().code, "101") << "remembered";
    doctors("DELETE * FROM medici_gruppo WHERE cod_smi = 101");
    const auto host = session();
    EXPECT_EQ(host->doctor().current().code, "102") << "the one who was chosen is gone";
    doctors("DELETE * FROM medici_gruppo");
    EXPECT_EQ(session()->doctor().current().code, QString());
}

// The settings still say what the practice said that was open before.
TEST_F(HostSessionTest, TheRegionAndTheDoctorAreThoseOfThePracticeThatIsOpen)
{
    session()->chooseDoctor("102");
    const auto other = orvale::Practice::create(path("other"));
    for (const char *sql : {"INSERT INTO medici_gruppo (cod_smi, cognome) VALUES (100, 'Bo')",
                            "INSERT INTO medici_gruppo (cod_smi, cognome) VALUES (102, 'Bo')"})
        other->environment().doctors->Execute(sql);
    HostSession host(*other, services());
    EXPECT_EQ(setting("CODICE REGIONE"), QString()) << "it has none";
    EXPECT_EQ(setting("medicoP"), "100") << "102 is another there";
    EXPECT_EQ(host.doctor().group().at(1).name, "Bo (codice 102)");
    other->setProperty("region", "03");
    const HostSession again(*other, services());
    EXPECT_EQ(setting("CODICE REGIONE"), "03");
    EXPECT_EQ(setting("REGIONE"), "LOMBARDIA");
    session();
    EXPECT_EQ(setting("CODICE REGIONE"), "15");
    EXPECT_EQ(setting("REGIONE"), "CAMPANIA");
    EXPECT_EQ(setting("medicoP"), "102") << "remembered for the practice";
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
        qint16 action = 80;
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
         {{}, {}, "401.9", "Ipertensione", {}, {}},
         24},
        {"a problem of a section's own",
         {{"CODICE DIAGNOSI", "401.9"}, {"DIAGNOSI", "Ipertensione"}},
         {},
         {},
         5},
        {"no problem", {{"CODICE DIAGNOSI", "*ABORT*"}, {"DIAGNOSI", "*ABORT*"}}, {}, {}, 24},
        {"another result", {}, QVariantList{"altro", 5}, {}},
        {"the view in any case",
         {{"AGGIORNA_DIARIO", "mbutton(2) "}},
         {},
         {"MBUTTON(2)", {}, {}, {}, {}, {}}},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.name);
        // What is left over from before is not this section's answer.
        bool isFirst = true;
        const auto host = session([&](qint16 action, QVariant &param, clivara::SettingsStore &settings) {
            EXPECT_EQ(action, each.action);
            if (std::exchange(isFirst, false)) {
                settings.write("AGGIORNA_DIARIO", "RAF");
                settings.write("DIAGNOSI", "Cefalea");
                return QString();
            }
            for (auto left = each.left.cbegin(); left != each.left.cend(); ++left) {
                settings.write(left.key(), *left);
                EXPECT_EQ(m_settings.text(left.key()), *left) << "other programs see it";
            }
            param = each.result;
            return QString();
        });
        host->openSection(each.action);
        const SectionOutcome outcome = host->openSection(each.action);
        EXPECT_EQ(outcome.view, each.expected.view);
        EXPECT_EQ(outcome.patient, each.expected.patient);
        EXPECT_EQ(outcome.diagnosisCode, each.expected.diagnosisCode);
        EXPECT_EQ(outcome.diagnosis, each.expected.diagnosis);
        EXPECT_EQ(outcome.evaluation, each.expected.evaluation);
        for (const char *key : {"AGGIORNA_DIARIO", "CARICA PAZIENTE", "CODICE DIAGNOSI", "DIAGNOSI"})
            EXPECT_EQ(setting(key), QString()) << key;
    }
}
