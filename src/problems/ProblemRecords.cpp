// SPDX-License-Identifier: Apache-2.0
#include "problems/ProblemRecords.h"

#include "data/SqlText.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

qint16 stateOf(dao::Recordset &row)
{
    return qint16(row.Fields(QStringLiteral("stato_probl")).number());
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

SaveResult<ProblemDetail> saveProblem(WorkingState &state, ProblemDetail &problem, const ProblemDetail &read)
{
    const auto isOnlyOne = [&](const ProblemDetail &stored) {
        return !isDuplicateProblem(state.clinical(), state.header.patientCode, problem, stored);
    };
    return saveShared<ProblemDetail>(state, problem, read, {.isAllowed = isOnlyOne});
}

WriteResult deleteProblem(WorkingState &state, qint32 id, LastWrite &seen)
{
    const RecordTable &table = ProblemDetail::table;
    return writeTogether(state, QString::fromLatin1(table.name), [&] {
        const WriteResult result = deleteSharedRow(state, table, id, seen);
        if (result == WriteResult::Done)
            state.clinical().Execute(
                QStringLiteral("update VISITAPROBL set id_Probl='' where (id_Probl = %1)").arg(id));
        return result;
    });
}

WriteResult closeProblem(WorkingState &state, qint32 id, ProblemStanding &seen)
{
    const RecordTable &table = ProblemDetail::table;
    return writeTogether(state, QString::fromLatin1(table.name), [&]() -> WriteResult {
        const auto row =
            openRecord(state.clinical(), table, id, state.header.patientCode, dao::RecordsetType::Dynaset);
        if (row->Eof())
            return WriteResult::Vanished;
        const ProblemStanding stored{stateOf(*row), lastWrite(*row)};
        if (stored != seen || stored.state != qint16(ProblemState::Open)) {
            seen = stored;
            return WriteResult::Changed;
        }
        beginRecord(state, *row, table, id);
        row->Fields(QStringLiteral("stato_probl")).setValue(qint16(ProblemState::Closed));
        state.operations.Recordset_Update(*row);
        return WriteResult::Done;
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
    const auto problem = readRecord<ProblemDetail>(clinical, id);
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
