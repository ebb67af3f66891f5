// SPDX-License-Identifier: Apache-2.0
#include "chart/HostContext.h"

#include "host/HostFixture.h"

namespace {

using namespace clivara;

class HostContext : public HostFixture {
protected:
    HostContext() { state.environment = &environment; }
    WorkingState state{services()};
};

TEST_F(HostContext, IsReadAgainFromSettingsAndTables)
{
    settings.write("SET_INTESTA", "Ambulatorio");
    settings.write("NGRUPPO", "Gruppo 3");
    reloadHostContext(state);
    EXPECT_EQ(state.medicoP, "101");
    EXPECT_EQ(state.medicoT, "102");
    EXPECT_EQ(state.uidMedicoT, "6c4c00a9-60ac-45af-b5c3-fd30774041a6");
    EXPECT_EQ(state.uidMedicoP, "b61c53b8-b450-4298-8b11-f25c842011b0");
    EXPECT_EQ(state.uidAuthor, state.uidMedicoP);
    EXPECT_EQ(state.group.heading, "Ambulatorio");
    EXPECT_EQ(state.group.group, "Gruppo 3");
    EXPECT_EQ(state.group.stamp1, "Dott.ssa D'Ambrogio");
    EXPECT_EQ(state.group.address2, "Tel. 1");
    EXPECT_EQ(state.doctor.surname, "D'Ambrogio");
    EXPECT_EQ(state.doctor.specials, (QStringList{"Geriatria", "", "", "", "", "", "1"}));
    EXPECT_EQ(state.header.surname, "Rossi");

    settings.write("medico_corrente", "102"); // another doctor logs in at the host
    settings.write("CODICE PAZIENTE", "2");
    reloadHostContext(state);
    EXPECT_EQ(state.doctor.code, "102");
    EXPECT_EQ(state.doctor.surname, "Bianchi");
    EXPECT_EQ(state.group.stamp1, "Dott. Bianchi");
    EXPECT_EQ(state.group.address2, "");
    EXPECT_EQ(state.header.surname, "Verdi");
}

TEST_F(HostContext, ADoctorThatCannotBeReadLeavesNoOthersStamp)
{
    reloadHostContext(state);
    environment.doctors->Execute("DROP TABLE medici_gruppo");
    reloadHostContext(state);
    EXPECT_EQ(state.group.stamp1, "");
    EXPECT_EQ(state.doctor.surname, "");
    EXPECT_EQ(state.doctor.code, "101");
    EXPECT_EQ(state.uidMedicoP, "");
    EXPECT_TRUE(state.header.identified) << "the header is read all the same";

    environment.clinical.reset();
    reloadHostContext(state);
    EXPECT_FALSE(state.header.identified);
}

TEST_F(HostContext, AllergiesAreNeverThePatientsOfBefore)
{
    const auto allergiesOf = [this](const char *patient) {
        settings.write("CODICE PAZIENTE", patient);
        reloadHostContext(state);
        return state.header.allergies;
    };
    environment.clinical->Execute("ALTER TABLE inf_gen ADD COLUMN Allergie MEMO");
    environment.clinical->Execute("INSERT INTO inf_gen (cod_paz, Allergie) VALUES (1, 'Lattice')");
    EXPECT_EQ(allergiesOf("1").text, "Lattice");
    EXPECT_EQ(allergiesOf("-1"), Allergies()) << "nobody's";
    EXPECT_EQ(allergiesOf("1").state, AllergyState::Known);
    environment.clinical->Execute("DROP TABLE ESAME_OB");
    EXPECT_EQ(allergiesOf("2"), Allergies()) << "not read";
}

TEST_F(HostContext, TheRegionHasTwoDigits)
{
    struct Case {
        const char *code, *name, *region;
    };
    const Case cases[]{{"16", "", "16"},
                       {"3", "", "03"},
                       {" 05 ", "LOMBARDIA", "05"},
                       {"", "lombardia", "03"},
                       {"", "PUGLIA", ""}};
    for (const Case &c : cases) {
        settings.write("CODICE REGIONE", c.code);
        settings.write("REGIONE", c.name);
        reloadHostContext(state);
        EXPECT_EQ(state.doctor.region, c.region) << c.code << "/" << c.name;
    }
}

// What a form writes carries the owner of the patient of this action, not of the one before.
TEST_F(HostContext, SharedRowsAndJournalFollowTheCurrentPatient)
{
    for (const char *sql :
         {"ALTER TABLE archivio ADD COLUMN idRowGuid GUID",
          "ALTER TABLE archivio ADD COLUMN sPatientRecordUid TEXT(50)",
          "ALTER TABLE archivio ADD COLUMN sOwnerUid TEXT(50)",
          "UPDATE archivio SET sOwnerUid = 'owner of ' & cod_paz",
          "CREATE TABLE DELETIONS (sRecordUid TEXT(50), sTableCode TEXT(10), idRowGuid GUID, "
          "sOwnerUid TEXT(50), dCreationDate DATETIME, dLastModifiedDate DATETIME, "
          "sAuthorUid TEXT(50))",
          "CREATE INDEX sRecordUid ON DELETIONS (sRecordUid)",
          "CREATE TABLE Modifiche (Tipo SHORT, data_mod DATETIME, cod_paz LONG, "
          "codice1 TEXT(15), codice2 TEXT(15), cancellazione YESNO)"})
        environment.clinical->Execute(sql);
    EXPECT_THROW(state.changeJournal(), dao::Error) << "this host has no events database";
    environment.events = create("Eventi.sqlite", {});
    for (const char *patient : {"1", "2"}) {
        settings.write("CODICE PAZIENTE", patient);
        reloadHostContext(state);
        const QString uid =
            state.sharedRows().recordDeletion(state.clinical(), patient, "DP", state.uidAuthor);
        EXPECT_EQ(uid.size(), 36);
        state.changeJournal().recordChange(Questionnaire, state.header.patientCode, "X", false);
    }
    const auto deletions = state.clinical().OpenRecordset("SELECT * FROM DELETIONS ORDER BY sRecordUid");
    EXPECT_EQ(deletions->Fields("sOwnerUid").text(), "owner of 1");
    EXPECT_EQ(deletions->Fields("sAuthorUid").text(), "b61c53b8-b450-4298-8b11-f25c842011b0");
    deletions->MoveNext();
    EXPECT_EQ(deletions->Fields("sOwnerUid").text(), "owner of 2");
    EXPECT_EQ(state.clinical().OpenRecordset("SELECT cod_paz FROM Modifiche WHERE Tipo = 4")->RecordCount(),
              1);
}

} // namespace
