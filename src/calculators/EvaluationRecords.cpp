// SPDX-License-Identifier: Apache-2.0
#include "calculators/EvaluationRecords.h"

#include "chart/SharedWrites.h"
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
        values.append(row.Fields(value.field).Value());
    return values;
}

} // namespace

QString numberAsText(const QVariant &value)
{
    return value.isValid() ? jet::numberText(value.toDouble()) : QString();
}

QString yesOrNo(const QVariant &value)
{
    return value.toBool() ? QStringLiteral("sì") : QStringLiteral("no");
}

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

SaveOutcome saveEvaluation(WorkingState &state, const StoredEvaluation &stored, const QDateTime &when,
                           Existing existing, const std::function<void(dao::Recordset &)> &fill,
                           EvaluationVersions &versions)
{
    const QString query = evaluationQuery(stored.table, state.header.patientCode, when);
    bool refused = false;
    const auto write = [&] {
        const auto row = state.clinical().OpenRecordset(query);
        const bool isNew = row->Eof();
        refused = !isNew && existing == Existing::Refuse;
        if (refused)
            return WriteResult::Failed;
        if (isNew && !versions.read.isEmpty())
            return WriteResult::Vanished;
        const EvaluationValues now = isNew ? EvaluationValues() : valuesOf(*row, stored);
        if ((isNew ? state.operations.Recordset_AddNew(*row) : state.operations.Recordset_Edit(*row)) != 0)
            return WriteResult::Failed;
        if (isNew)
            row->Fields(QStringLiteral("cod_paz")).setValue(state.header.patientCode);
        row->Fields(QStringLiteral("Data_Val")).setValue(when);
        fill(*row);
        if (const EvaluationValues mine = valuesOf(*row, stored);
            !isNew && now != versions.read && now != mine) {
            row->CancelUpdate();
            versions.mine = mine;
            versions.stored = now;
            return WriteResult::Changed;
        }
        if (state.operations.Recordset_Update(*row) != 0)
            return WriteResult::Failed;
        journal(state, stored, when, false);
        return WriteResult::Done;
    };
    try {
        // Told at once, without waiting for other workstations; the transaction looks again.
        if (existing == Existing::Refuse
            && !state.clinical().OpenRecordset(query, dao::RecordsetType::Snapshot)->Eof())
            return SaveOutcome::AlreadyThere;
    } catch (const dao::Error &) {
        // The transaction finds the same error and logs it.
    }
    switch (writeTogether(state, stored.table, write)) {
    case WriteResult::Done:
        return SaveOutcome::Saved;
    case WriteResult::Changed:
        return SaveOutcome::Changed;
    case WriteResult::Vanished:
        return SaveOutcome::Vanished;
    case WriteResult::Refused:
    case WriteResult::Failed:
        break;
    }
    return refused ? SaveOutcome::AlreadyThere : SaveOutcome::Failed;
}

WriteResult deleteEvaluation(WorkingState &state, const StoredEvaluation &stored, const QDateTime &when,
                             EvaluationValues &seen)
{
    const qint32 patient = state.header.patientCode;
    return writeTogether(state, stored.table, [&] {
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

QVariant numberValue(const std::optional<double> &number)
{
    return number ? QVariant(*number) : QVariant();
}

QString optionalText(const std::optional<double> &number)
{
    return number ? jet::numberText(*number) : QString();
}

} // namespace clivara
