// SPDX-License-Identifier: Apache-2.0
#include "evaluations/EvaluationRecords.h"

#include "chart/WorkingState.h"
#include "dao/Dao.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

// In the transaction of the change itself, so that none goes without the other.
void journal(WorkingState &state, const StoredEvaluation &stored, const QDateTime &when, bool deleted)
{
    state.changeJournal().recordChange(stored.kind, state.header.patientCode, jet::slashedDate(when.date()),
                                       deleted);
}

EvaluationValues valuesOf(dao::Recordset &row, const StoredEvaluation &stored)
{
    EvaluationValues values;
    for (const StoredEvaluation::Value &value : stored.values)
        values.append(row.Fields(value.column).Value());
    return values;
}

} // namespace

QList<HistoryRow> readHistory(dao::Database &clinical, const QString &sql, qint32 patientCode)
{
    QList<HistoryRow> history;
    for (const auto rows =
             clinical.OpenRecordset({sql, {{"patient", patientCode}}}, dao::RecordsetType::Snapshot);
         !rows->Eof(); rows->MoveNext()) {
        HistoryRow row{rows->Fields(2).date(), rows->Fields(0).text(), rows->Fields(1).text(), std::nullopt};
        if (!rows->Fields(3).isNull())
            row.number = rows->Fields(3).number();
        history.append(row);
    }
    return history;
}

dao::Query evaluationQuery(const QString &table, qint32 patientCode, const QDateTime &when)
{
    return {QStringLiteral("SELECT * FROM %1 WHERE cod_paz = [patient] AND data_val = [day]").arg(table),
            {{"patient", patientCode}, {"day", when}}};
}

QHash<QDateTime, EvaluationValues> readEvaluations(dao::Database &clinical, const StoredEvaluation &stored,
                                                   qint32 patientCode)
{
    QHash<QDateTime, EvaluationValues> evaluations;
    for (const auto rows = clinical.OpenRecordset(
             {QStringLiteral("SELECT * FROM %1 WHERE cod_paz = [patient]").arg(stored.table),
              {{"patient", patientCode}}},
             dao::RecordsetType::Snapshot);
         !rows->Eof(); rows->MoveNext())
        evaluations.insert(rows->Fields(QStringLiteral("Data_Val")).date(), valuesOf(*rows, stored));
    return evaluations;
}

bool hasEvaluation(dao::Database &clinical, const StoredEvaluation &stored, qint32 patientCode,
                   const QDateTime &when)
{
    return !clinical
                .OpenRecordset(evaluationQuery(stored.table, patientCode, when), dao::RecordsetType::Snapshot)
                ->Eof();
}

WriteResult saveEvaluation(WorkingState &state, const StoredEvaluation &stored, const QDateTime &when,
                           bool isNew, const std::function<void(dao::Recordset &)> &fill,
                           EvaluationVersions &versions)
{
    return writeTogether(state, stored.table, [&]() -> WriteResult {
        const auto row =
            state.clinical().OpenRecordset(evaluationQuery(stored.table, state.header.patientCode, when));
        const bool isThere = !row->Eof();
        if (isThere && isNew && stored.ofSameDate == Existing::Refuse)
            return WriteResult::Refused;
        if (!isThere && !versions.read.isEmpty())
            return WriteResult::Vanished;
        const EvaluationValues now = isThere ? valuesOf(*row, stored) : EvaluationValues();
        if (isThere) {
            state.operations.edit(*row);
        } else {
            state.operations.addNew(*row);
            row->Fields(QStringLiteral("cod_paz")).setValue(state.header.patientCode);
        }
        row->Fields(QStringLiteral("Data_Val")).setValue(when);
        fill(*row);
        // As the row holds them: a value may lose decimals there.
        if (const EvaluationValues mine = valuesOf(*row, stored);
            isThere && now != versions.read && now != mine) {
            row->CancelUpdate();
            versions.mine = mine;
            versions.stored = now;
            return WriteResult::Changed;
        }
        state.operations.update(*row);
        journal(state, stored, when, false);
        return WriteResult::Done;
    });
}

WriteResult deleteEvaluation(WorkingState &state, const StoredEvaluation &stored, const QDateTime &when,
                             EvaluationValues &seen)
{
    const qint32 patient = state.header.patientCode;
    return writeTogether(state, stored.table, [&]() -> WriteResult {
        const auto row = state.clinical().OpenRecordset(evaluationQuery(stored.table, patient, when));
        if (row->Eof())
            return WriteResult::Vanished;
        if (const EvaluationValues now = valuesOf(*row, stored); now != seen) {
            seen = now;
            return WriteResult::Changed;
        }
        row->Delete();
        journal(state, stored, when, true);
        return WriteResult::Done;
    });
}

std::optional<double> optionalNumber(dao::Recordset &row, const QString &field)
{
    const dao::Field value = row.Fields(field);
    return value.isNull() ? std::nullopt : std::optional(value.number());
}

QString optionalText(const std::optional<double> &number)
{
    return number ? jet::numberText(*number) : QString();
}

} // namespace clivara
