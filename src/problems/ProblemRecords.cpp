// SPDX-License-Identifier: Apache-2.0
#include "problems/ProblemRecords.h"

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
QString nameOf(dao::Database &codes, const QString &sql, const QString &code, const QString &field)
{
    const auto row = codes.OpenRecordset({sql, {{"wanted", code}}}, dao::RecordsetType::Snapshot);
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
        {QStringLiteral(
             "select * from PROBLEMS where cod_paz=[patient] order by DataInizio desc, idProblems desc"),
         {{"patient", patientCode}}},
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
    return !openRecord(clinical, ProblemDetail::table, id, patientCode)->Eof();
}

bool isDuplicateProblem(dao::Database &clinical, qint32 patientCode, const ProblemDetail &problem,
                        const ProblemDetail &before)
{
    if (problem.id != noProblem && isSameDiagnosis(problem, before))
        return false;
    const bool hasCode = !problem.code.trimmed().isEmpty();
    const auto sql = QStringLiteral("select * from Problems where (cod_paz=[patient]) and (idProblems <> "
                                    "[problem]) and (%1 = [diagnosis])")
                         .arg(hasCode ? QLatin1String("CodICDSospetto") : QLatin1String("descr_mal"));
    return !clinical
                .OpenRecordset({sql,
                                {{"patient", patientCode},
                                 {"problem", problem.id},
                                 {"diagnosis", hasCode ? problem.code : problem.description}}},
                               dao::RecordsetType::Snapshot)
                ->Eof();
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
                {QStringLiteral("update VISITAPROBL set id_Probl='' where (id_Probl = [problem])"),
                 {{"problem", id}}});
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
        state.operations.update(*row);
        return WriteResult::Done;
    });
}

QString diagnosisName(dao::Database &codes, const QString &code)
{
    const QString wanted = code.trimmed();
    if (wanted.isEmpty())
        return {};
    const QString name = nameOf(codes, QStringLiteral("Select * FROM icd9 WHERE (cod = [wanted])"), wanted,
                                QStringLiteral("des"));
    return name.isEmpty() ? nameOf(codes, QStringLiteral("Select * FROM malattie WHERE (codice = [wanted])"),
                                   wanted, QStringLiteral("descrizione"))
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
