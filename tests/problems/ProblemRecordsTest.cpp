// SPDX-License-Identifier: Apache-2.0
#include "problems/ProblemRecords.h"

#include "ProblemFixture.h"
#include "data/Connection.h"

namespace clivara {
namespace {

class ProblemRecordsTest : public ProblemFixture {
protected:
    WriteResult remove(qint32 id) { return removeRead<ProblemDetail, deleteProblem>(id); }
    WriteResult save(ProblemDetail &problem) { return saveRead<saveProblem>(problem); }
    ProblemDetail detail(const QString &code, const QString &description)
    {
        ProblemDetail problem;
        problem.code = code;
        problem.description = description;
        problem.state = 1;
        problem.opened = problem.started = clock.today();
        return problem;
    }

    QStringList descriptions()
    {
        QStringList found;
        for (const ProblemRow &row : listProblems(database(), 17))
            found.append(row.description);
        return found;
    }
};

TEST_F(ProblemRecordsTest, ListShowsThePatientsProblemsNewestFirst)
{
    addProblem("401.9", "senza inizio");
    addProblem("401.9", " vecchio ", QDate(1925, 3, 1), 2);
    addProblem("401.9", "nuovo", QDate(2026, 1, 31), 7);
    addProblem("401.9", "nuovo, inserito dopo", QDate(2026, 1, 31));
    execute("INSERT INTO PROBLEMS (cod_paz, descr_mal) VALUES (18, 'di un altro')");
    execute("UPDATE PROBLEMS SET DataChiusura = #02/28/1925#, CodICDFinale = ' 402 ' WHERE stato_probl = 2");
    EXPECT_EQ(descriptions(), (QStringList{"nuovo, inserito dopo", "nuovo", "vecchio", "senza inizio"}));

    const QList<ProblemRow> rows = listProblems(database(), 17);
    EXPECT_EQ(rows[2].start, QDate(1925, 3, 1));
    EXPECT_EQ(rows[2].closed, QDate(1925, 2, 28));
    EXPECT_TRUE(rows[2].closedBeforeStart());
    EXPECT_EQ(rows[2].finalCode, "402");
    EXPECT_EQ(rows[1].state, 7) << "a state that nobody knows is kept";
    EXPECT_FALSE(rows[3].start.isValid());
    for (const int other : {0, 1, 3})
        EXPECT_FALSE(rows[other].closedBeforeStart()) << other;
    EXPECT_TRUE(listProblems(database(), 99).isEmpty());

    const QStringList states{"<non specificato>", "Aperto", "Chiuso", "Cronico", "<non specificato>"};
    for (qint16 i = 0; i < states.size(); ++i)
        EXPECT_EQ(problemStateText(i), states[i]);
}

TEST_F(ProblemRecordsTest, NewProblemIsReadBackAsItWasTyped)
{
    ProblemDetail problem = detail("250.00", awkwardText(255));
    problem.started = QDate(1925, 2, 28);
    problem.closed = QDate(1924, 12, 31); // before it started: as the doctor says
    problem.state = 2;
    problem.symptoms = awkwardText();
    problem.findings = " \r\n\t ";
    problem.assessment = "  con spazi  ";
    ASSERT_EQ(save(problem), WriteResult::Done);
    ASSERT_GT(problem.id, 0);

    const auto read = readRecord<ProblemDetail>(database(), problem.id);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->code, "250.00");
    EXPECT_EQ(read->description, problem.description);
    EXPECT_EQ(read->opened, clock.today());
    EXPECT_EQ(read->started, problem.started);
    EXPECT_EQ(read->closed, problem.closed);
    EXPECT_EQ(read->state, 2);
    EXPECT_EQ(read->symptoms, awkwardText());
    EXPECT_EQ((QStringList{read->findings, read->assessment, read->plan}),
              (QStringList{"", "  con spazi  ", ""}));
    EXPECT_EQ(clinical("SELECT cod_paz, " + stamps + " FROM PROBLEMS"),
              QStringList("17|" + newStamps(1, "DP")));
    EXPECT_EQ(clinical("SELECT esameob, pianificazione FROM PROBLEMS"), QStringList("|"))
        << "blank texts are empty, not Null";
}

TEST_F(ProblemRecordsTest, EditKeepsWhoseTheRowIs)
{
    ProblemDetail problem = detail("250.00", "Diabete");
    ASSERT_EQ(save(problem), WriteResult::Done);
    clock.set(jet::dateTime(2026, 11, 25, 18));
    state.uidAuthor = bruno;
    problem.closed = {};
    problem.opened = {};
    problem.code = "";
    ASSERT_EQ(save(problem), WriteResult::Done);
    const QString created = newStamps(1, "DP").section('|', 0, 6);
    EXPECT_EQ(clinical("SELECT DataApertura, DataChiusura, CodICDSospetto, " + stamps + " FROM PROBLEMS"),
              QStringList("Null|Null||" + created + "|2026-11-25 18:00:00|" + bruno));

    // A row from before rows had identities gets one and keeps what it never had.
    const qint32 old = addProblem("401.9", "Ipertensione");
    auto read = readRecord<ProblemDetail>(database(), old);
    ASSERT_TRUE(read);
    ASSERT_EQ(save(*read), WriteResult::Done);
    EXPECT_EQ(
        clinical(QStringLiteral("SELECT %1 FROM PROBLEMS WHERE idProblems = %2").arg(stamps).arg(old)),
        QStringList(guid(3) + "|{" + guid(4) + "}|Null|Null|Null|Null|Null|2026-11-25 18:00:00|" + bruno));
}

TEST_F(ProblemRecordsTest, SameCodeOrSameDescriptionIsADuplicate)
{
    const qint32 coded = addProblem("250.00", "Diabete dell'anziano");
    const qint32 described = addProblem("", "C'è \"altro\" [*] 100%");
    state.header.patientCode = 18;
    addProblem("401.9", "di un altro");
    state.header.patientCode = 17;
    const auto duplicate = [&](const QString &code, const QString &description, qint32 id = noProblem) {
        ProblemDetail problem = detail(code, description);
        problem.id = id;
        return isDuplicateProblem(database(), 17, problem,
                                  readRecord<ProblemDetail>(database(), id).value_or(ProblemDetail()));
    };
    EXPECT_TRUE(duplicate("250.00", "con altre parole"));
    EXPECT_FALSE(duplicate("250.01", "Diabete dell'anziano")) << "with a code only the code counts";
    EXPECT_TRUE(duplicate("", "diabete DELL'ANZIANO")) << "without one the description does";
    EXPECT_TRUE(duplicate("  ", "c'È \"altro\" [*] 100%"));
    EXPECT_FALSE(duplicate("", "C'è \"altro\" *")) << "no pattern";
    EXPECT_FALSE(duplicate("401.9", "di un altro")) << "of another patient";
    EXPECT_FALSE(duplicate("250.00", "", coded)) << "itself";
    EXPECT_TRUE(duplicate("250.00", "", described));
    EXPECT_FALSE(duplicate("x' or '1'='1", ""));

    // Other programs have stored some twice.
    const qint32 again = addProblem("250.00", "Di nuovo");
    const qint32 saidAgain = addProblem("", "c'è \"altro\" [*] 100%");
    EXPECT_FALSE(duplicate("250.00", "con altre parole", again)) << "its code is what it was";
    EXPECT_FALSE(duplicate("", "C'è \"altro\" [*] 100%", saidAgain));
    EXPECT_TRUE(duplicate("", "Diabete dell'anziano", saidAgain)) << "another description";
    EXPECT_TRUE(duplicate("", "Diabete dell'anziano", again)) << "no code any more";
    EXPECT_TRUE(duplicate("250.00", "", saidAgain)) << "a code that it had not";
}

TEST_F(ProblemRecordsTest, AProblemThatIsThereTwiceIsEditedAndNoThirdOneMade)
{
    for (int i = 0; i < 2; ++i)
        addProblem("250.00", "Diabete");
    ProblemDetail second = *readRecord<ProblemDetail>(database(), 2);
    second.state = 3;
    EXPECT_EQ(save(second), WriteResult::Done);
    ProblemDetail third = detail("250.00", "Diabete");
    const WriteResult result = save(third);
    EXPECT_EQ(result, WriteResult::Refused);
    EXPECT_EQ(result.error, 0) << "the archive is neither busy nor broken";
    EXPECT_EQ(clinical("SELECT stato_probl FROM PROBLEMS ORDER BY idProblems"), (QStringList{"1", "3"}));
}

TEST_F(ProblemRecordsTest, TheHourOfADateStaysWhileItsDayDoes)
{
    ProblemDetail problem = detail("250.00", "Diabete");
    problem.state = 2;
    ASSERT_EQ(save(problem), WriteResult::Done);
    execute("UPDATE PROBLEMS SET DataApertura = #11/01/2026 08:00:00#, DataInizio = #10/01/2026 23:59:59#, "
            "DataChiusura = #11/20/2026 12:15:00#");
    ProblemDetail read = *readRecord<ProblemDetail>(database(), problem.id);
    read.symptoms = "scritto";
    ASSERT_EQ(save(read), WriteResult::Done);
    const QString dates = "SELECT DataApertura, DataInizio, DataChiusura FROM PROBLEMS";
    EXPECT_EQ(clinical(dates), QStringList("2026-11-01 08:00:00|2026-10-01 23:59:59|2026-11-20 12:15:00"));
    read.started = QDate(2026, 10, 2);
    read.closed = {};
    ASSERT_EQ(save(read), WriteResult::Done);
    EXPECT_EQ(clinical(dates), QStringList("2026-11-01 08:00:00|2026-10-02 00:00:00|Null"));
}

TEST_F(ProblemRecordsTest, ClosingChangesTheStateAndTheStampsOnly)
{
    ProblemDetail problem = detail("250.00", "Diabete");
    ASSERT_EQ(save(problem), WriteResult::Done);
    ProblemStanding seen{1, readRecord<ProblemDetail>(database(), problem.id)->written};
    clock.set(jet::dateTime(2026, 11, 22, 9));
    state.header.patientCode = 18;
    EXPECT_EQ(closeProblem(state, problem.id, seen), WriteResult::Vanished) << "not this patient's";
    state.header.patientCode = 17;
    EXPECT_EQ(closeProblem(state, problem.id, seen), WriteResult::Done);
    EXPECT_EQ(clinical("SELECT stato_probl, DataChiusura, dCreationDate, dLastModifiedDate FROM PROBLEMS"),
              QStringList("2|Null|2026-11-21 10:00:00|2026-11-22 09:00:00"));
}

TEST_F(ProblemRecordsTest, OnlyAnOpenProblemIsClosed)
{
    ProblemDetail problem = detail("250.00", "Diabete");
    for (const qint16 standing : {qint16(2), qint16(3), qint16(4)}) {
        problem.id = noProblem;
        problem.state = standing;
        problem.code += u'1';
        ASSERT_EQ(save(problem), WriteResult::Done);
        const auto before = readRecord<ProblemDetail>(database(), problem.id);
        ProblemStanding seen{standing, before->written};
        EXPECT_EQ(closeProblem(state, problem.id, seen), WriteResult::Changed) << standing;
        EXPECT_EQ(readRecord<ProblemDetail>(database(), problem.id)->state, standing);
        EXPECT_EQ(readRecord<ProblemDetail>(database(), problem.id)->written, before->written) << standing;
    }
}

TEST_F(ProblemRecordsTest, ClosingReplacesNothingThatWasSavedSince)
{
    ProblemDetail problem = detail("250.00", "Diabete");
    ASSERT_EQ(save(problem), WriteResult::Done);
    const ProblemStanding seen{1, readRecord<ProblemDetail>(database(), problem.id)->written};
    const auto other = otherWorkstation();
    struct Case {
        const char *name, *theirs;
        qint16 state; // that is there afterwards
    };
    const Case cases[]{
        {"chronic, without a stamp", "stato_probl = 3", 3},
        {"chronic, with a stamp", "stato_probl = 3, dLastModifiedDate = #11/21/2026 10:05:00#", 3},
        {"closed already", "stato_probl = 2", 2},
        {"another text", "stato_probl = 1, dLastModifiedDate = #11/21/2026 10:05:00#", 1},
    };
    for (const Case &c : cases) {
        // The other one's save comes while this workstation waits to begin.
        std::optional<dao::Transaction> theirs(std::in_place, otherWorkspace());
        other->Execute(QStringLiteral("UPDATE PROBLEMS SET ") + QString::fromUtf8(c.theirs));
        pauses.taken.clear();
        pauses.actAt = 1;
        pauses.during = [&] { theirs->commit(); };
        ProblemStanding there = seen;
        EXPECT_EQ(closeProblem(state, problem.id, there), WriteResult::Changed) << c.name;
        const auto stored = readRecord<ProblemDetail>(database(), problem.id);
        EXPECT_EQ(stored->state, c.state) << c.name;
        EXPECT_EQ(there, (ProblemStanding{c.state, stored->written})) << c.name << ": it is told";
    }
}

TEST_F(ProblemRecordsTest, DeletingDetachesTheVisitsAndLeavesATrace)
{
    ProblemDetail problem = detail("250.00", "Diabete");
    ASSERT_EQ(save(problem), WriteResult::Done);
    const qint32 other = addProblem("401.9", "Ipertensione"); // without a record UID
    for (const int visit : {1, 2, 3})
        execute(
            QStringLiteral("INSERT INTO VISITAPROBL (IdVisitaProbl, cod_paz, id_Probl) VALUES (%1, 17, %2)")
                .arg(visit)
                .arg(visit < 3 ? problem.id : other));

    state.header.patientCode = 18;
    EXPECT_EQ(remove(problem.id), WriteResult::Vanished) << "not this patient's";
    state.header.patientCode = 17;
    EXPECT_EQ(remove(problem.id), WriteResult::Done);
    EXPECT_EQ(clinical("SELECT idProblems FROM PROBLEMS"), QStringList(QString::number(other)));
    EXPECT_EQ(clinical("SELECT IdVisitaProbl, id_Probl FROM VISITAPROBL ORDER BY IdVisitaProbl"),
              (QStringList{"1|Null", "2|Null", "3|" + QString::number(other)}));
    EXPECT_EQ(clinical("SELECT sRecordUid, sTableCode, sOwnerUid, sAuthorUid FROM DELETIONS"),
              QStringList(guid(1) + "|DP|" + bruno + '|' + anna));

    EXPECT_EQ(remove(other), WriteResult::Done);
    EXPECT_EQ(clinical("SELECT sRecordUid FROM DELETIONS ORDER BY idDeletion").value(1), guid(4))
        << "a row without record UID gets one to be known by";
    EXPECT_EQ(remove(other), WriteResult::Vanished);
}

// Whatever fails half way, nothing of the deletion stays.
TEST_F(ProblemRecordsTest, DeletionIsWholeOrNotAtAll)
{
    ProblemDetail problem = detail("250.00", "Diabete");
    ASSERT_EQ(save(problem), WriteResult::Done);
    const QString rows = "SELECT descr_mal, sOwnerUid FROM PROBLEMS";
    const QStringList before = clinical(rows);
    for (const char *table : {"VISITAPROBL", "DELETIONS"}) {
        execute(QStringLiteral("DROP TABLE ") + table);
        EXPECT_EQ(remove(problem.id), WriteResult::Failed) << table;
        EXPECT_EQ(clinical(rows), before) << table;
        EXPECT_EQ(tableExists(database(), "DELETIONS") ? clinical("DELETIONS") : QStringList(), QStringList())
            << table;
    }
    EXPECT_EQ(logged().filter("PROBLEMS - Error 3078 - ").size(), 2);
    EXPECT_EQ(save(problem), WriteResult::Done) << "no transaction was left behind";
}

TEST_F(ProblemRecordsTest, AnotherWorkstationDeletesTheRow)
{
    ProblemDetail problem = detail("250.00", "Diabete");
    ASSERT_EQ(save(problem), WriteResult::Done);
    const auto other = otherWorkstation();
    other->Execute("DELETE * FROM PROBLEMS");
    problem.symptoms = "scritto intanto";
    EXPECT_EQ(save(problem), WriteResult::Vanished);
    ProblemStanding seen{1, {}};
    EXPECT_EQ(closeProblem(state, problem.id, seen), WriteResult::Vanished);
    EXPECT_EQ(remove(problem.id), WriteResult::Vanished);
    EXPECT_FALSE(readRecord<ProblemDetail>(database(), problem.id));
    EXPECT_TRUE(clinical("DELETIONS").isEmpty());
    EXPECT_TRUE(pauses.taken.isEmpty()) << "nothing to wait for";

    problem.id = noProblem; // the doctor keeps what was typed as a new problem
    EXPECT_EQ(save(problem), WriteResult::Done);
    EXPECT_EQ(readRecord<ProblemDetail>(database(), problem.id)->symptoms, "scritto intanto");
}

TEST_F(ProblemRecordsTest, ALockIsWaitedForAndOneThatStaysFailsTheSave)
{
    ProblemDetail problem = detail("250.00", "Diabete");
    {
        LockHolder other(path("Orvale.sqlite"));
        EXPECT_EQ(save(problem), WriteResult::Failed);
        EXPECT_EQ(problem.id, noProblem) << "still to be saved";
        EXPECT_EQ(pauses.taken.size(), 19);
        EXPECT_EQ(logged().filter("Workspace_BeginTrans - Failed").size(), 1);
        EXPECT_TRUE(descriptions().isEmpty()) << "reading goes on";

        pauses.actAt = 21;
        pauses.during = [&] { other.release(); };
        EXPECT_EQ(save(problem), WriteResult::Done);
    }
    EXPECT_EQ(descriptions(), QStringList("Diabete"));
}

TEST_F(ProblemRecordsTest, ATooLongDescriptionIsRefusedWhole)
{
    ProblemDetail problem = detail("250.00", QString(256, 'x'));
    EXPECT_EQ(save(problem), WriteResult::Failed);
    EXPECT_TRUE(clinical("PROBLEMS").isEmpty());
    EXPECT_EQ(logged().filter("PROBLEMS - Error 3163 - ").size(), 1);

    state.environment = nullptr;
    EXPECT_EQ(save(problem), WriteResult::Failed) << "no host";
    EXPECT_EQ(remove(1), WriteResult::Failed);
}

TEST_F(ProblemRecordsTest, AProblemIsCalledByItsDescriptionElseByItsCodesName)
{
    struct Case {
        const char *code, *description;
        QString text;
    };
    const Case cases[]{
        {" 250.00 ", "  Diabete dell'anziano ", "[250.00] Diabete dell'anziano"},
        {"250.00", " ", "[250.00] Diabete mellito tipo 2"},
        {"ml001", "", "[ml001] CATARRO D'ESTATE"},
        {"x' or 1=1", "", "x' or 1=1"},
        {"", "Solo a parole", "Solo a parole"},
        {"", "", ""},
    };
    for (const Case &c : cases) {
        const qint32 id = addProblem(c.code, c.description);
        EXPECT_EQ(problemText(database(), *environment.codes, id), c.text);
    }
    for (const qint32 none : {noProblem, unassociated, 999})
        EXPECT_EQ(problemText(database(), *environment.codes, none), "");
    EXPECT_EQ(diagnosisName(*environment.codes, " 250.00 "), "Diabete mellito tipo 2");
    EXPECT_EQ(diagnosisName(*environment.codes, "999"), "");
}

} // namespace
} // namespace clivara
