// SPDX-License-Identifier: Apache-2.0
#include "calculators/EvaluationRecords.h"

#include "chart/WorkingState.h"
#include "dao/Dao.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

QString evaluationCondition(const QString &table, qint32 patientCode, const QDateTime &when)
{
    const QString date = jet::formatDate(
        when, when.time() == QTime(0, 0) ? QStringView(u"dd/mm/yyyy") : QStringView(u"dd/mm/yyyy hh.nn.ss"));
    return QStringLiteral("* FROM %1 WHERE cod_paz = %2 AND data_val = CDATE('%3')")
        .arg(table)
        .arg(patientCode)
        .arg(date);
}

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

QList<HistoryRow> readHistory(dao::Database &clinical, const QString &query)
{
    QList<HistoryRow> history;
    for (const auto rows = clinical.OpenRecordset(query, dao::RecordsetType::Snapshot); !rows->Eof();
         rows->MoveNext()) {
        HistoryRow row{rows->Fields(2).date(), rows->Fields(0).text(), rows->Fields(1).text(), std::nullopt};
        if (!rows->Fields(3).isNull())
            row.number = rows->Fields(3).number();
        history.append(row);
    }
    return history;
}

QString evaluationQuery(const QString &table, qint32 patientCode, const QDateTime &when)
{
    return QStringLiteral("SELECT ") + evaluationCondition(table, patientCode, when);
}

QHash<QDateTime, EvaluationValues> readEvaluations(dao::Database &clinical, const StoredEvaluation &stored,
                                                   qint32 patientCode)
{
    QHash<QDateTime, EvaluationValues> evaluations;
    for (const auto rows = clinical.OpenRecordset(
             QStringLiteral("SELECT * FROM %1 WHERE cod_paz = %2").arg(stored.table).arg(patientCode),
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
            state.operations.Recordset_Edit(*row);
        } else {
            state.operations.Recordset_AddNew(*row);
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
        state.operations.Recordset_Update(*row);
        journal(state, stored, when, false);
        return WriteResult::Done;
    });
}

WriteResult deleteEvaluation(WorkingState &state, const StoredEvaluation &stored, const QDateTime &when,
                             EvaluationValues &seen)
{
    const qint32 patient = state.header.patientCode;
    return writeTogether(state, stored.table, [&]() -> WriteResult {
        const auto row = state.clinical().OpenRecordset(evaluationQuery(stored.table, patient, when),
                                                        dao::RecordsetType::Snapshot);
        if (row->Eof())
            return WriteResult::Vanished;
        if (const EvaluationValues now = valuesOf(*row, stored); now != seen) {
            seen = now;
            return WriteResult::Changed;
        }
        state.clinical().Execute(QStringLiteral("DELETE ")
                                 + evaluationCondition(stored.table, patient, when));
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
