// SPDX-License-Identifier: Apache-2.0
#include "data/SharedRows.h"

#include "CountedPauses.h"
#include "DataFixture.h"
#include "NumberedGuids.h"
#include "data/Identity.h"
#include "data/RecordsetOperations.h"
#include "values/JetValues.h"

namespace {

using namespace clivara;

const auto anna = QStringLiteral("0f8fad5b-d9cb-469f-a165-70867728950e"); // doctor 101
const auto bruno = QStringLiteral("6c4c00a9-60ac-45af-b5c3-fd30774041a6"); // owns patient 7
const auto noOwner = QStringLiteral("CheckOwnerValue - Impossibile recuperare OwnerID");

class SharedRowsTest : public DataFixture {
protected:
    SharedRowsTest()
    {
        doctors = create(
            "Medici.sqlite",
            {"CREATE TABLE medici_gruppo (cod_smi LONG, Medico TEXT(10), idRowGuid GUID)",
             "INSERT INTO medici_gruppo VALUES (101, 'M001', '{0F8FAD5B-D9CB-469F-A165-70867728950E}')"});
        clinical = create(
            "Orvale.sqlite",
            {"CREATE TABLE archivio (cod_paz LONG, idRowGuid GUID, sPatientRecordUid TEXT(50), "
             "sOwnerUid TEXT(50))",
             "INSERT INTO archivio VALUES (7, '{11111111-2222-3333-4444-555555555555}', "
             "'{guid {AAAAAAAA-0000-0000-0000-000000000007}}', '{6C4C00A9-60AC-45AF-B5C3-FD30774041A6}')",
             "INSERT INTO archivio (cod_paz, sOwnerUid) VALUES (8, '')",
             "CREATE TABLE PROBLEMS (idProblems COUNTER, cod_paz LONG, idRowGuid GUID, sRecordUid TEXT(50), "
             "sOwnerUid TEXT(50), dCreationDate DATETIME, sCodSezCli TEXT(10), sPatientUid TEXT(50), "
             "sPatientRecordOwnerUid TEXT(50), dLastModifiedDate DATETIME, sAuthorUid TEXT(50))",
             "CREATE INDEX sRecordUid ON PROBLEMS (sRecordUid)",
             "CREATE TABLE DELETIONS (idDeletion COUNTER, sRecordUid TEXT(50), sTableCode TEXT(10), "
             "idRowGuid GUID, sOwnerUid TEXT(50), dCreationDate DATETIME, dLastModifiedDate DATETIME, "
             "sAuthorUid TEXT(50))",
             "CREATE INDEX sRecordUid ON DELETIONS (sRecordUid)"});
    }

    SharedRows rows(qint32 patient = -1)
    {
        return SharedRows({clinical.get(), doctors.get(), patient, settings, clock, guids, log, operations});
    }

    std::unique_ptr<dao::Recordset> problems()
    {
        auto table = clinical->OpenRecordset("PROBLEMS", dao::RecordsetType::Table);
        table->setIndex("sRecordUid");
        return table;
    }

    QStringList contents(const QString &sql) { return rowsOf(*clinical, sql); }

    PatientStamp stamp(const QString &key) const
    {
        return {key, bruno, anna, at(8), at(9), "DP", "11111111-2222-3333-4444-555555555555", bruno};
    }
    static QDateTime at(int hour) { return jet::dateTime(2026, 11, 20, hour); }

    NumberedGuids guids;
    CountedPauses pauses;
    RecordsetOperations operations{log, pauses};
    std::shared_ptr<dao::Database> doctors, clinical;
};

TEST_F(SharedRowsTest, DoctorsAndPatientsAreFoundByTheirIdentities)
{
    for (const QString &uid : {anna, anna.toUpper(), "{guid {" + anna + "}}"})
        EXPECT_EQ(doctorFromUid(uid, *doctors), "M001") << uid.toStdString();
    for (const char *uid : {"", "{}", "0f8fad5b", "x' or '1'='1"})
        EXPECT_EQ(doctorFromUid(uid, *doctors), "") << uid;
    const auto texts =
        create("Altri.sqlite", {"CREATE TABLE medici_gruppo (Medico TEXT(10), idRowGuid TEXT(50))",
                                "INSERT INTO medici_gruppo VALUES ('M009', '" + anna + "')"});
    EXPECT_EQ(doctorFromUid("{" + anna + "}", *texts), "M009");
    EXPECT_EQ(doctorFromUid(anna, *clinical), "") << "no such table";

    const PatientUids uids = readPatientUids(7, *clinical);
    EXPECT_EQ(uids.row, "11111111-2222-3333-4444-555555555555");
    EXPECT_EQ(uids.record, "aaaaaaaa-0000-0000-0000-000000000007");
    EXPECT_EQ(uids.owner, bruno);
    EXPECT_EQ(readPatientUids(99, *clinical).row, "");
    EXPECT_EQ(readPatientUids(7, *doctors).owner, "") << "no such table";
    EXPECT_EQ(compactTimestamp(jet::dateTime(2024, 3, 7, 14, 5, 9)), "20240307140509");
}

// The patient is the current one, else the host's, else the row's own; the doctor stands in only when asked.
TEST_F(SharedRowsTest, OwnerIsThePatientsOwnerElseTheWorkingDoctor)
{
    struct Case {
        const char *what;
        qint32 current;
        const char *setting;
        int rowPatient; // 0: none
        OwnerFallback fallback;
        const char *medicoP, *uidMedicoP;
        QString owner;
    };
    const auto none = OwnerFallback::None;
    const auto doctor = OwnerFallback::WorkingDoctor;
    const Case cases[]{
        {"current patient", 7, "8", 8, none, "", "", bruno},
        {"the host's patient", -1, "7", 8, none, "", "", bruno},
        {"the row's patient", -1, "-1", 7, none, "", "", bruno},
        {"a patient wins over the doctor", 7, "", 0, doctor, "101", "", bruno},
        {"a patient without owner", 8, "", 0, doctor, "101", "", anna},
        {"the host's own UID of the doctor", 8, "", 0, doctor, "102", "{guid {ABC}}", "abc"},
        {"nobody is asked", 8, "7", 7, none, "101", "abc", ""},
        {"nobody is found", -1, "", 0, doctor, "", "", ""},
        {"a patient who is not there", 99, "", 0, none, "101", "", ""},
    };
    for (const Case &c : cases) {
        settings.write("CODICE PAZIENTE", c.setting);
        settings.write("medicoP", c.medicoP);
        settings.write("uidMedicoP", c.uidMedicoP);
        const auto row = clinical->OpenRecordset("PROBLEMS");
        row->AddNew();
        if (c.rowPatient)
            row->Fields("cod_paz").setValue(c.rowPatient);
        const qsizetype complaints = logged().filter(noOwner).size();
        EXPECT_EQ(rows(c.current).CheckOwnerValue(*row, c.fallback), c.owner) << c.what;
        EXPECT_EQ(logged().filter(noOwner).size() - complaints, c.owner.isEmpty() ? 1 : 0) << c.what;
    }
    // A row that has no patient's field at all.
    const auto row = clinical->OpenRecordset("DELETIONS");
    row->AddNew();
    EXPECT_EQ(rows().CheckOwnerValue(*row), "");
}

TEST_F(SharedRowsTest, NewPatientRowGetsItsWholeIdentity)
{
    qint16 isNew = -1;
    const auto table = problems();
    EXPECT_EQ(rows(7).StampPatientRow(*table, isNew, stamp(" {guid {KEY-1}} ")), guid(1));
    EXPECT_EQ(contents("SELECT sRecordUid, idRowGuid, sOwnerUid, dCreationDate, sCodSezCli, sPatientUid, "
                       "sPatientRecordOwnerUid, dLastModifiedDate, sAuthorUid FROM PROBLEMS"),
              QStringList("key-1|{" + guid(1) + "}|" + bruno
                          + "|2026-11-20 08:00:00|DP|11111111-2222-3333-4444-555555555555|" + bruno
                          + "|2026-11-20 09:00:00|" + anna));
    EXPECT_EQ(logged().first(), "Recordset_AddNew - begin");
}

TEST_F(SharedRowsTest, EditedPatientRowKeepsWhoseItIs)
{
    clinical->Execute(
        "INSERT INTO PROBLEMS (sRecordUid, idRowGuid, sOwnerUid, dCreationDate, sCodSezCli, sPatientUid) "
        "VALUES ('key-1', '{99999999-0000-0000-0000-000000000001}', 'old owner', "
        "#01/02/2020 10:00:00#, 'OLD', 'old patient')");
    clinical->Execute("INSERT INTO PROBLEMS (sRecordUid) VALUES ('key-2')");
    const QString fields = "SELECT sRecordUid, idRowGuid, sOwnerUid, dCreationDate, sCodSezCli, sPatientUid, "
                           "dLastModifiedDate, sAuthorUid FROM PROBLEMS";
    qint16 isNew = 0;
    EXPECT_EQ(rows(7).StampPatientRow(*problems(), isNew, stamp("KEY-1")),
              "99999999-0000-0000-0000-000000000001");
    EXPECT_EQ(isNew, 0);
    EXPECT_EQ(rows(7).StampPatientRow(*problems(), isNew, stamp("key-2")), guid(1)) << "had no identity yet";
    EXPECT_EQ(contents(fields),
              (QStringList{"key-1|{99999999-0000-0000-0000-000000000001}|old owner|2020-01-02 10:00:00|OLD|"
                           "old patient|2026-11-20 09:00:00|"
                               + anna,
                           "key-2|{" + guid(1) + "}|Null|Null|Null|Null|2026-11-20 09:00:00|" + anna}));

    EXPECT_EQ(rows(7).StampPatientRow(*problems(), isNew, stamp("key-3")), guid(2));
    EXPECT_EQ(isNew, -1) << "an edit of a row that is not there adds it";
    EXPECT_EQ(contents("SELECT sOwnerUid FROM PROBLEMS WHERE sRecordUid = 'key-3'"), QStringList(bruno));
}

TEST_F(SharedRowsTest, NothingIsWrittenWithoutAKeyOrAfterAFailure)
{
    qint16 isNew = -1;
    for (const char *key : {"", "  ", "{}", "{guid {}}"})
        EXPECT_EQ(rows(7).StampPatientRow(*problems(), isNew, stamp(key)), "") << key;
    PatientStamp tooLong = stamp("key");
    tooLong.section = QString(11, 'x');
    EXPECT_EQ(rows(7).StampPatientRow(*problems(), isNew, tooLong), "");
    const auto snapshot = clinical->OpenRecordset("PROBLEMS", dao::RecordsetType::Snapshot);
    EXPECT_EQ(rows(7).StampPatientRow(*snapshot, isNew, stamp("key")), "") << "rows that cannot be written";
    EXPECT_EQ(pauses.taken.size(), 19) << "tried as often as any other row";
    EXPECT_EQ(rows(7).recordDeletion(*clinical, "{}", "DP"), "");
    EXPECT_THROW(rows(7).recordDeletion(*doctors, "key", "DP"), dao::Error) << "no such table";
    EXPECT_TRUE(contents("PROBLEMS").isEmpty());
    EXPECT_TRUE(contents("DELETIONS").isEmpty());
}

TEST_F(SharedRowsTest, DeletionIsRecordedOncePerRecord)
{
    const QString fields = "SELECT sRecordUid, sTableCode, idRowGuid, sOwnerUid, dCreationDate, "
                           "dLastModifiedDate, sAuthorUid FROM DELETIONS";
    EXPECT_EQ(rows(7).recordDeletion(*clinical, "{KEY-1}", "DP", anna), guid(1));
    EXPECT_EQ(rows(-1).recordDeletion(*clinical, "key-2", "DV"), guid(2));
    EXPECT_EQ(contents(fields),
              (QStringList{"key-1|DP|{" + guid(1) + "}|" + bruno + "|2026-11-21 10:00:00|2026-11-21 10:00:00|"
                               + anna,
                           "key-2|DV|{" + guid(2) + "}||2026-11-21 10:00:00|2026-11-21 10:00:00|"}))
        << "the author of a row without author is its owner; an owner that is not found is an empty text";
    EXPECT_EQ(logged().filter(noOwner).size(), 1);

    clock.set(jet::dateTime(2026, 11, 22, 9));
    EXPECT_EQ(rows(7).recordDeletion(*clinical, "key-2", "DV"), guid(2));
    EXPECT_EQ(contents(fields).last(),
              "key-2|DV|{" + guid(2) + "}|" + bruno + "|2026-11-21 10:00:00|2026-11-22 09:00:00|" + bruno);
}

// The stamp that a form's row gets in one call.
TEST_F(SharedRowsTest, RowOfTheCurrentPatientIsStampedInOneCall)
{
    const QString fields =
        "SELECT sRecordUid, idRowGuid, sOwnerUid, dCreationDate, sCodSezCli, sPatientUid, "
        "sPatientRecordOwnerUid, dLastModifiedDate, sAuthorUid FROM PROBLEMS ORDER BY idProblems";
    const auto add = [&](qint32 patient) {
        const auto table = clinical->OpenRecordset("PROBLEMS");
        table->AddNew();
        rows(patient).writeCurrentPatientStamp(*table, true, "DP", anna);
        table->Update();
    };
    add(7);
    settings.write("medicoP", "101");
    add(8); // without owner
    settings.write("MIR_ATTIVO", "-1");
    add(8);
    const QString created = "2026-11-21 10:00:00|DP|";
    EXPECT_EQ(contents(fields),
              (QStringList{
                  guid(1) + "|{" + guid(2) + "}|" + bruno + '|' + created
                      + "11111111-2222-3333-4444-555555555555|" + bruno + "|2026-11-21 10:00:00|" + anna,
                  guid(3) + "|{" + guid(4) + "}||" + created + "||2026-11-21 10:00:00|" + anna,
                  guid(5) + "|{" + guid(6) + "}|" + anna + '|' + created + "||2026-11-21 10:00:00|" + anna}));

    clinical->Execute("DELETE * FROM PROBLEMS");
    clinical->Execute("INSERT INTO PROBLEMS (sRecordUid, idRowGuid, sOwnerUid, sCodSezCli) VALUES ('{KEY}', "
                      "'{99999999-0000-0000-0000-000000000001}', 'old owner', 'OLD')");
    clinical->Execute("INSERT INTO PROBLEMS (cod_paz) VALUES (7)"); // from before rows had identities
    for (const auto table = clinical->OpenRecordset("PROBLEMS"); !table->Eof(); table->MoveNext()) {
        table->Edit();
        rows(7).writeCurrentPatientStamp(*table, false, "DP", bruno);
        table->Update();
    }
    EXPECT_EQ(
        contents(fields),
        (QStringList{"{KEY}|{99999999-0000-0000-0000-000000000001}|old owner|Null|OLD|Null|Null|"
                     "2026-11-21 10:00:00|"
                         + bruno,
                     guid(7) + "|{" + guid(8) + "}|Null|Null|Null|Null|Null|2026-11-21 10:00:00|" + bruno}));
}

} // namespace
