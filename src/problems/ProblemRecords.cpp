// SPDX-License-Identifier: Apache-2.0
#include "problems/ProblemRecords.h"

#include "chart/ThreeWay.h"
#include "chart/WorkingState.h"
#include "data/SqlText.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

const std::array problemTexts{"anamnesi", "esameob", "conclusioni", "pianificazione"};

QString byId(qint32 id)
{
    return QStringLiteral("select * from Problems where (idProblems = %1)").arg(id);
}

// With the patient: a command of a list acts on nobody else's problem.
QString byIdAndPatient(const WorkingState &state, qint32 id)
{
    return byId(id) + QStringLiteral(" and (COD_PAZ = %1)").arg(state.header.patientCode);
}

qint16 stateOf(dao::Recordset &row)
{
    return qint16(row.Fields(QStringLiteral("stato_probl")).number());
}

void fill(dao::Recordset &row, const ProblemDetail &problem)
{
    writeDay(row.Fields(QStringLiteral("dataapertura")), problem.opened);
    writeDay(row.Fields(QStringLiteral("datachiusura")), problem.closed);
    writeDay(row.Fields(QStringLiteral("dataInizio")), problem.started);
    row.Fields(QStringLiteral("stato_probl")).setValue(problem.state);
    row.Fields(QStringLiteral("descr_mal")).setValue(problem.description);
    row.Fields(QStringLiteral("CodICDSospetto")).setValue(problem.code);
    for (std::size_t i = 0; i < problemTexts.size(); ++i)
        row.Fields(QString::fromLatin1(problemTexts[i])).setValue(storedText(problem.texts[i]));
}

ProblemDetail detailFrom(dao::Recordset &row, qint32 id)
{
    ProblemDetail problem;
    problem.id = id;
    problem.code = row.Fields(QStringLiteral("CodICDSospetto")).text().trimmed();
    problem.description = row.Fields(QStringLiteral("descr_mal")).text();
    problem.state = stateOf(row);
    problem.opened = row.Fields(QStringLiteral("dataapertura")).date().date();
    problem.started = row.Fields(QStringLiteral("dataInizio")).date().date();
    problem.closed = row.Fields(QStringLiteral("datachiusura")).date().date();
    for (std::size_t i = 0; i < problemTexts.size(); ++i)
        problem.texts[i] = row.Fields(QString::fromLatin1(problemTexts[i])).text();
    problem.written = lastWrite(row);
    return problem;
}

// Whether two problems are the same by their code or, without one, by their description.
bool isSameDiagnosis(const ProblemDetail &a, const ProblemDetail &b)
{
    const QString code = a.code.trimmed();
    return jet::sameText(code, b.code.trimmed())
           && (!code.isEmpty() || jet::sameText(a.description, b.description));
}

// A name out of a list of codes; empty when the list does not have the code.
QString nameOf(dao::Database &codes, const QString &query, const QString &field)
{
    const auto row = codes.OpenRecordset(query, dao::RecordsetType::Snapshot);
    return row->Eof() ? QString() : row->Fields(field).text().trimmed();
}

} // namespace

QString problemStateText(qint16 state)
{
    switch (ProblemState(state)) {
    case ProblemState::Open:
        return QStringLiteral("Aperto");
    case ProblemState::Closed:
        return QStringLiteral("Chiuso");
    case ProblemState::Chronic:
        return QStringLiteral("Cronico");
    case ProblemState::Unspecified:
        break;
    }
    return QStringLiteral("<non specificato>");
}

QList<ProblemRow> listProblems(dao::Database &clinical, qint32 patientCode)
{
    QList<ProblemRow> problems;
    const auto rows = clinical.OpenRecordset(
        QStringLiteral("select * from PROBLEMS where cod_paz=%1 order by DataInizio desc, idProblems desc")
            .arg(patientCode),
        dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        const auto text = [&](const char *field) {
            return rows->Fields(QString::fromLatin1(field)).text().trimmed();
        };
        const auto date = [&](const char *field) {
            return rows->Fields(QString::fromLatin1(field)).date().date();
        };
        problems.append({qint32(rows->Fields(QStringLiteral("idProblems")).number()), date("DataInizio"),
                         date("DataChiusura"), text("CodICDSospetto"), text("CodICDFinale"),
                         text("descr_mal"), stateOf(*rows), lastWrite(*rows)});
    }
    return problems;
}

std::optional<ProblemDetail> readProblem(dao::Database &clinical, qint32 id)
{
    const auto row = clinical.OpenRecordset(byId(id), dao::RecordsetType::Snapshot);
    return row->Eof() ? std::nullopt : std::optional(detailFrom(*row, id));
}

bool hasProblem(dao::Database &clinical, qint32 patientCode, qint32 id)
{
    return !clinical
                .OpenRecordset(QStringLiteral("select idProblems from Problems where (idProblems = %1) "
                                              "and (cod_paz = %2)")
                                   .arg(id)
                                   .arg(patientCode),
                               dao::RecordsetType::Snapshot)
                ->Eof();
}

bool isDuplicateProblem(dao::Database &clinical, qint32 patientCode, const ProblemDetail &problem,
                        const ProblemDetail &before)
{
    if (problem.id != noProblem && isSameDiagnosis(problem, before))
        return false;
    QString query = QStringLiteral("select * from Problems where (cod_paz=%1) ").arg(patientCode);
    if (problem.code.trimmed().isEmpty())
        query += QStringLiteral("and (descr_mal = ") + sqlText(problem.description) + QStringLiteral(") ");
    else
        query += QStringLiteral("and (CodICDSospetto = ") + sqlText(problem.code) + QStringLiteral(") ");
    if (problem.id != noProblem)
        query += QStringLiteral("and (idProblems <> %1)").arg(problem.id);
    return !clinical.OpenRecordset(query, dao::RecordsetType::Snapshot)->Eof();
}

WriteResult saveProblem(WorkingState &state, ProblemDetail &problem, ProblemDetail &read)
{
    const bool isNew = problem.id == noProblem;
    qint32 id = problem.id;
    const WriteResult result = writeTogether(state, QStringLiteral("PROBLEMS"), [&] {
        const auto row =
            state.clinical().OpenRecordset(isNew ? QStringLiteral("select * from Problems ") : byId(id));
        if (!isNew && row->Eof())
            return WriteResult::Vanished;
        const ProblemDetail stored = isNew ? ProblemDetail() : detailFrom(*row, id);
        if (!isNew
            && wouldReplace(contentsOf(std::as_const(read)), contentsOf(std::as_const(problem)),
                            contentsOf(stored))) {
            read = stored;
            return WriteResult::Changed;
        }
        if (isDuplicateProblem(state.clinical(), state.header.patientCode, problem, stored))
            return WriteResult::Refused;
        if ((isNew ? state.operations.Recordset_AddNew(*row) : state.operations.Recordset_Edit(*row)) != 0)
            return WriteResult::Failed;
        if (isNew)
            row->Fields(QStringLiteral("cod_paz")).setValue(state.header.patientCode);
        state.sharedRows().writeCurrentPatientStamp(*row, isNew, QStringLiteral("DP"), state.uidAuthor);
        fill(*row, problem);
        if (state.operations.Recordset_Update(*row) != 0)
            return WriteResult::Failed;
        if (isNew)
            id = qint32(row->LastAutoNumber());
        return WriteResult::Done;
    });
    if (result == WriteResult::Done)
        problem.id = id;
    return result;
}

WriteResult deleteProblem(WorkingState &state, qint32 id, LastWrite &seen)
{
    return writeTogether(state, QStringLiteral("PROBLEMS"), [&] {
        const WriteResult result =
            deleteSharedRow(state, byIdAndPatient(state, id), QStringLiteral("DP"), seen);
        if (result == WriteResult::Done)
            state.clinical().Execute(
                QStringLiteral("update VISITAPROBL set id_Probl='' where (id_Probl = %1)").arg(id));
        return result;
    });
}

WriteResult closeProblem(WorkingState &state, qint32 id, ProblemStanding &seen)
{
    return writeTogether(state, QStringLiteral("PROBLEMS"), [&] {
        const auto row = state.clinical().OpenRecordset(byIdAndPatient(state, id));
        if (row->Eof())
            return WriteResult::Vanished;
        const ProblemStanding stored{stateOf(*row), lastWrite(*row)};
        if (stored != seen || stored.state != qint16(ProblemState::Open)) {
            seen = stored;
            return WriteResult::Changed;
        }
        if (state.operations.Recordset_Edit(*row) != 0)
            return WriteResult::Failed;
        row->Fields(QStringLiteral("stato_probl")).setValue(qint16(ProblemState::Closed));
        state.sharedRows().writeCurrentPatientStamp(*row, false, QStringLiteral("DP"), state.uidAuthor);
        return state.operations.Recordset_Update(*row) == 0 ? WriteResult::Done : WriteResult::Failed;
    });
}

QString diagnosisName(dao::Database &codes, const QString &code)
{
    const QString wanted = code.trimmed();
    if (wanted.isEmpty())
        return {};
    const QString name =
        nameOf(codes, QStringLiteral("Select * FROM icd9 WHERE (cod = ") + sqlText(wanted) + u')',
               QStringLiteral("des"));
    return name.isEmpty()
               ? nameOf(codes,
                        QStringLiteral("Select * FROM malattie WHERE (codice = ") + sqlText(wanted) + u')',
                        QStringLiteral("descrizione"))
               : name;
}

QString problemText(dao::Database &clinical, dao::Database &codes, qint32 id)
{
    if (id == noProblem || id == unassociated)
        return {};
    const auto problem = readProblem(clinical, id);
    if (!problem)
        return {};
    QString name = problem->description.trimmed();
    if (name.isEmpty())
        name = diagnosisName(codes, problem->code);
    if (name.isEmpty())
        return problem->code;
    return problem->code.isEmpty() ? name : u'[' + problem->code + QStringLiteral("] ") + name;
}

} // namespace clivara
