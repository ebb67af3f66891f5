// SPDX-License-Identifier: Apache-2.0
#include "problems/VisitRecords.h"

#include "ProblemFixture.h"

namespace clivara {
namespace {

class VisitRecordsTest : public ProblemFixture {
protected:
    VisitRecordsTest()
    {
        execute("INSERT INTO PROBLEMS (idProblems, cod_paz, descr_mal) VALUES (5, 17, 'Tosse')");
        execute("INSERT INTO PROBLEMS (idProblems, cod_paz, descr_mal) VALUES (6, 18, 'di un altro')");
    }
    static std::optional<VisitDetail> readOwn(dao::Database &clinical, qint32 id)
    {
        return readRecord<VisitDetail>(clinical, id, 17);
    }
    WriteResult remove(qint32 id) { return removeRead<VisitDetail, deleteShared<VisitDetail>>(id); }
    WriteResult save(VisitDetail &visit) { return saveRead<saveVisit>(visit); }
    VisitDetail detail(QDate date)
    {
        VisitDetail visit;
        visit.date = date;
        return visit;
    }
    VisitDetail saved(QDate date)
    {
        VisitDetail visit = detail(date);
        EXPECT_EQ(save(visit), WriteResult::Done);
        return visit;
    }
};

TEST_F(VisitRecordsTest, NewVisitIsReadBackAsItWasTyped)
{
    VisitDetail visit = detail(QDate(2031, 5, 4)); // in the future: as entered
    visit.problem = 5;
    visit.validity = QDate(2031, 6, 4);
    visit.type = 2;
    visit.symptom = "S01";
    visit.history = awkwardText();
    visit.findings = " \n ";
    visit.conclusions = "  c'è  ";
    visit.plan = "100%";
    visit.notes = "[*]";
    ASSERT_EQ(save(visit), WriteResult::Done);
    EXPECT_EQ(visit.id, 1) << "the first visit ever";
    const auto read = readOwn(database(), 1);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->problem, 5);
    EXPECT_EQ(read->date, visit.date);
    EXPECT_EQ(read->validity, visit.validity);
    EXPECT_EQ(read->type, 2);
    EXPECT_EQ(read->symptom, "S01");
    EXPECT_EQ(read->history, awkwardText());
    EXPECT_EQ((QStringList{read->findings, read->conclusions, read->plan, read->notes}),
              (QStringList{"", "  c'è  ", "100%", "[*]"}));
    EXPECT_EQ(clinical("SELECT cod_paz, esameob, " + stamps + " FROM VISITAPROBL"),
              QStringList("17||" + newStamps(1, "DV")));
    EXPECT_FALSE(readOwn(database(), 2));
}

TEST_F(VisitRecordsTest, WhatIsNotChosenIsNullAndComesBackSo)
{
    const VisitDetail visit = saved(QDate(2026, 11, 21));
    EXPECT_EQ(clinical("SELECT id_Probl, validita, idtipo, SINTOMO, anamnesi FROM VISITAPROBL"),
              QStringList("Null|Null|Null|Null|"));
    const auto read = readOwn(database(), visit.id);
    ASSERT_TRUE(read);
    EXPECT_FALSE(read->problem);
    EXPECT_FALSE(read->type);
    EXPECT_FALSE(read->validity.isValid());
    EXPECT_EQ(read->symptom, "");
}

TEST_F(VisitRecordsTest, EditKeepsTheKeyAndAValidityThatIsNotGivenAnew)
{
    VisitDetail visit = detail(QDate(2026, 11, 20));
    visit.validity = QDate(2026, 12, 1);
    ASSERT_EQ(save(visit), WriteResult::Done);
    clock.set(jet::dateTime(2026, 11, 22, 9));
    visit.validity = {};
    visit.problem = noProblem;
    visit.notes = "nota";
    ASSERT_EQ(save(visit), WriteResult::Done);
    EXPECT_EQ(clinical("SELECT IdVisitaProbl, id_Probl, validita, txtNote, dCreationDate, dLastModifiedDate, "
                       "sOwnerUid FROM VISITAPROBL"),
              QStringList("1|0|2026-12-01 00:00:00|nota|2026-11-21 10:00:00|2026-11-22 09:00:00|" + bruno));
}

TEST_F(VisitRecordsTest, KeysFollowTheHighestAndNoTwoWorkstationsTakeTheSame)
{
    execute("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz) VALUES (40, 18)");
    execute("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz) VALUES (7, 18)");
    EXPECT_EQ(saved(QDate(2026, 11, 1)).id, 41);

    const auto other = otherWorkstation();
    std::optional<dao::Transaction> theirs(std::in_place, otherWorkspace());
    other->Execute("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz) VALUES (42, 18)");
    pauses.actAt = 1;
    pauses.during = [&] { theirs->commit(); };
    EXPECT_EQ(saved(QDate(2026, 11, 2)).id, 43);
    EXPECT_EQ(pauses.taken.size(), 1);
}

TEST_F(VisitRecordsTest, APatientHasOneVisitADay)
{
    const VisitDetail visit = saved(QDate(2026, 2, 1)); // not the 2nd of January
    execute(
        "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg) VALUES (9, 17, #03/05/1925 23:59:59#)");
    const auto isTaken = [&](QDate date, qint32 id = 0, QDate before = {}, qint32 patient = 17) {
        VisitDetail other = detail(date);
        other.id = id;
        return isDayTaken(database(), patient, other, before);
    };
    EXPECT_TRUE(isTaken(visit.date));
    EXPECT_FALSE(isTaken(visit.date, visit.id, QDate(2026, 2, 2))) << "only by itself";
    EXPECT_TRUE(isTaken(QDate(1925, 3, 5), visit.id, visit.date)) << "with a time of day";
    EXPECT_FALSE(isTaken(QDate(1925, 3, 5), visit.id, QDate(1925, 3, 5))) << "it has shared its day so far";
    EXPECT_FALSE(isTaken(QDate(1925, 3, 6)));
    EXPECT_FALSE(isTaken(QDate(2025, 3, 5))) << "a hundred years later";
    EXPECT_FALSE(isTaken(QDate(2026, 1, 2)));
    EXPECT_FALSE(isTaken(visit.date, 0, {}, 18));
    EXPECT_FALSE(isTaken({}));
}

TEST_F(VisitRecordsTest, AVisitThatSharesItsDayIsEditedAndStaysThere)
{
    VisitDetail visit = saved(QDate(2026, 11, 1));
    execute(
        "INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg, idtipo) VALUES (8, 17, #11/01/2026#, 2)");
    visit.notes = "nota";
    EXPECT_EQ(save(visit), WriteResult::Done);
    visit.date = QDate(2026, 11, 2);
    EXPECT_EQ(save(visit), WriteResult::Done);
    visit.date = QDate(2026, 11, 1);
    EXPECT_EQ(save(visit), WriteResult::Refused) << "a day that it has left";
    EXPECT_EQ(clinical("SELECT DataReg, txtNote FROM VISITAPROBL ORDER BY IdVisitaProbl"),
              (QStringList{"2026-11-02 00:00:00|nota", "2026-11-01 00:00:00|Null"}));
}

TEST_F(VisitRecordsTest, TheHourOfADateStaysWhileItsDayDoes)
{
    execute("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg, validita) "
            "VALUES (8, 17, #11/01/2026 10:30:00#, #12/01/2026 23:59:59#)");
    const auto dates = [&] { return clinical("SELECT DataReg, validita FROM VISITAPROBL"); };
    VisitDetail visit = *readOwn(database(), 8);
    visit.history = "scritto";
    ASSERT_EQ(save(visit), WriteResult::Done);
    EXPECT_EQ(dates(), QStringList("2026-11-01 10:30:00|2026-12-01 23:59:59"));
    visit.date = QDate(2026, 11, 2);
    ASSERT_EQ(save(visit), WriteResult::Done);
    EXPECT_EQ(dates(), QStringList("2026-11-02 00:00:00|2026-12-01 23:59:59"));
}

TEST_F(VisitRecordsTest, NoVisitIsFiledAgainstAProblemThatIsNotThere)
{
    VisitDetail visit = detail(QDate(2026, 11, 1));
    for (const qint32 problem : {6, 7}) { // of another patient, and none at all
        visit.problem = problem;
        EXPECT_TRUE(isProblemGone(database(), 17, visit));
        EXPECT_EQ(save(visit), WriteResult::Refused) << problem;
    }
    for (const std::optional<qint32> none :
         {std::optional(noProblem), std::optional(unassociated), std::optional<qint32>()}) {
        visit.problem = none;
        EXPECT_FALSE(isProblemGone(database(), 17, visit));
    }
    EXPECT_TRUE(clinical("VISITAPROBL").isEmpty());

    visit.problem = 5;
    ASSERT_EQ(save(visit), WriteResult::Done);
    visit.history = "scritto";
    VisitDetail fresh = detail(QDate(2026, 11, 2));
    fresh.problem = 5;
    for (VisitDetail *const each : {&fresh, &visit}) {
        // Another workstation deletes the problem while this one waits to begin.
        const auto other = otherWorkstation();
        std::optional<dao::Transaction> theirs(std::in_place, otherWorkspace());
        other->Execute("DELETE * FROM PROBLEMS WHERE idProblems = 5");
        other->Execute("UPDATE VISITAPROBL SET id_Probl = NULL");
        pauses.taken.clear();
        pauses.actAt = 1;
        pauses.during = [&] { theirs->commit(); };
        const auto result = saveVisit(state, *each, *readOwn(database(), visit.id));
        EXPECT_EQ(result, WriteResult::Refused);
        EXPECT_EQ(result.error, 0) << "the archive is neither busy nor broken";
        EXPECT_EQ(clinical("SELECT id_Probl, anamnesi FROM VISITAPROBL"), QStringList("Null|"));
        execute("INSERT INTO PROBLEMS (idProblems, cod_paz, descr_mal) VALUES (5, 17, 'Tosse')");
        execute("UPDATE VISITAPROBL SET id_Probl = 5");
    }
}

TEST_F(VisitRecordsTest, AnotherWorkstationWritesMeanwhile)
{
    const auto other = otherWorkstation();
    std::optional<dao::Transaction> theirs(std::in_place, otherWorkspace());
    other->Execute("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, DataReg) VALUES (5, 17, #11/01/2026#)");
    pauses.actAt = 1;
    pauses.during = [&] { theirs->commit(); };
    VisitDetail visit = detail(QDate(2026, 11, 1));
    EXPECT_EQ(save(visit), WriteResult::Refused) << "the day, while this save was waiting";
    EXPECT_EQ(visit.id, 0);
    EXPECT_EQ(clinical("SELECT IdVisitaProbl FROM VISITAPROBL"), QStringList("5"));
}

// What was read: "prima" as history, "obiettivo" as findings, filed against problem 5. What this workstation wants to write,
// and what the other one has written since.
TEST_F(VisitRecordsTest, OnlyWhatTheOtherOneWroteAndThisOneWouldReplaceIsAConflict)
{
    struct Case {
        const char *name;
        const char *mine; // the history
        const char *theirs; // of an UPDATE
        bool conflict;
    };
    const Case cases[]{
        {"nobody else wrote", "mio", "", false},
        {"only the stamps", "mio", "dLastModifiedDate = #11/21/2026 10:05:00#, sAuthorUid = 'x'", false},
        {"a field of no form", "mio", "sOwnerUid = 'x'", false},
        {"the same text", "stesso", "anamnesi = 'stesso'", false},
        {"the same text in capitals", "stesso", "anamnesi = 'STESSO'", true},
        {"the same field", "mio", "anamnesi = 'altro'", true},
        {"without a new stamp", "mio", "anamnesi = 'altro', dLastModifiedDate = #11/21/2026 10:00:00#", true},
        {"another field", "mio", "esameob = 'altro'", true},
        {"nothing here", "prima", "esameob = 'altro'", true},
        {"the problem is none any more", "mio", "id_Probl = NULL", true},
        {"an hour of the same day", "mio", "DataReg = #11/01/2026 23:59:59#", false},
    };
    for (const Case &c : cases) {
        VisitDetail visit = detail(QDate(2026, 11, 1));
        visit.history = "prima";
        visit.findings = "obiettivo";
        visit.problem = 5;
        ASSERT_EQ(save(visit), WriteResult::Done) << c.name;
        const VisitDetail read = *readOwn(database(), visit.id);
        if (*c.theirs)
            otherWorkstation()->Execute(QStringLiteral("UPDATE VISITAPROBL SET ")
                                        + QString::fromUtf8(c.theirs));
        visit.history = QString::fromUtf8(c.mine);
        const QStringList before = clinical("VISITAPROBL");
        const auto expected = c.conflict ? WriteResult::Changed : WriteResult::Done;
        const auto result = saveVisit(state, visit, read);
        EXPECT_EQ(result, expected) << c.name;
        if (c.conflict) {
            EXPECT_EQ(clinical("VISITAPROBL"), before) << c.name << ": nothing is written";
            EXPECT_EQ(saveVisit(state, visit, result.stored), WriteResult::Done)
                << c.name << ": once it was seen";
        }
        EXPECT_EQ(clinical("SELECT anamnesi FROM VISITAPROBL"), QStringList(visit.history)) << c.name;
        execute("DELETE * FROM VISITAPROBL");
    }
}

TEST_F(VisitRecordsTest, DeletingLeavesATraceAndOtherVisitsAlone)
{
    const VisitDetail first = saved(QDate(2026, 11, 1));
    const VisitDetail second = saved(QDate(2026, 11, 2));
    EXPECT_EQ(remove(first.id), WriteResult::Done);
    EXPECT_EQ(clinical("SELECT IdVisitaProbl FROM VISITAPROBL"), QStringList(QString::number(second.id)));
    EXPECT_EQ(clinical("SELECT sRecordUid, sTableCode, sOwnerUid, sAuthorUid FROM DELETIONS"),
              QStringList(guid(1) + "|DV|" + bruno + '|' + anna));
    EXPECT_EQ(remove(first.id), WriteResult::Vanished);

    otherWorkstation()->Execute("DELETE * FROM VISITAPROBL");
    VisitDetail gone = second;
    EXPECT_EQ(save(gone), WriteResult::Vanished);
    EXPECT_EQ(saved(QDate(2026, 11, 3)).id, 1) << "an empty table begins again";
}

// The list shows a visit that was deleted elsewhere, and the next new one there got its key.
TEST_F(VisitRecordsTest, AKeyThatWasGivenAgainLeadsToNobodyElsesVisit)
{
    VisitDetail visit = saved(QDate(2026, 11, 1));
    LastWrite seen = readOwn(database(), visit.id)->written;
    otherWorkstation()->Execute("UPDATE VISITAPROBL SET cod_paz = 18");
    EXPECT_FALSE(readOwn(database(), visit.id));
    EXPECT_EQ(save(visit), WriteResult::Vanished);
    EXPECT_EQ(deleteShared<VisitDetail>(state, visit.id, seen), WriteResult::Vanished);
    EXPECT_EQ(clinical("VISITAPROBL").size(), 1);
}

TEST_F(VisitRecordsTest, AFailedSaveWritesNothing)
{
    VisitDetail visit = detail(QDate(2026, 11, 1));
    visit.symptom = "troppo lungo";
    EXPECT_EQ(save(visit), WriteResult::Failed);
    EXPECT_EQ(visit.id, 0);
    EXPECT_TRUE(clinical("VISITAPROBL").isEmpty());
    EXPECT_EQ(logged().filter("VISITAPROBL - Error 3163 - ").size(), 1);
    visit.symptom = "S02";
    EXPECT_EQ(save(visit), WriteResult::Done);
}

TEST_F(VisitRecordsTest, TypesAndSymptomsComeByName)
{
    QStringList found;
    for (const CodeName &type : visitTypes(*environment.codes))
        found.append(type.code + u' ' + type.name);
    for (const CodeName &symptom : symptoms(*environment.codes))
        found.append(symptom.code + u' ' + symptom.name);
    EXPECT_EQ(found,
              (QStringList{"2 Visita domiciliare", "1 Visita ambulatoriale", "S02 Febbre", "S01 Tosse"}));
}

} // namespace
} // namespace clivara
