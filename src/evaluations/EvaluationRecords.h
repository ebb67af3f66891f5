// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordFields.h"
#include "chart/SharedWrites.h"
#include "data/ChangeJournal.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <functional>

// What the evaluations of a patient have in common: a table with one row for each patient and date.
namespace clivara {

struct WorkingState;

// One saved evaluation as the history shows it.
struct HistoryRow {
    QDateTime when; // its key
    QString date; // "dd/mm/yyyy"
    QString value; // as a text; empty when none was stored
    std::optional<double> number; // the same as a number
};

// The patient's evaluations, newest first. The query, of the parameter [patient], gives, in this order, the
// date and the value as texts, the date and the value. Throws dao::Error.
QList<HistoryRow> readHistory(dao::Database &clinical, const QString &sql, qint32 patientCode);

// The query for one evaluation.
dao::Query evaluationQuery(const QString &table, qint32 patientCode, const QDateTime &when);

// How an evaluation is stored: its table, the kind by which its changes are journalled, what becomes of a
// new one where one of its date is stored, and its fields as the doctor knows them.
enum class Existing { Refuse, Replace };
struct StoredEvaluation {
    struct Value {
        QString column;
        QString caption;
        std::function<QString(const QVariant &stored)> text;
    };
    QString table;
    ChangeKind kind;
    Existing ofSameDate;
    QList<Value> values;
};
// That of a struct with fields().
template <typename Evaluation>
StoredEvaluation storedEvaluation(const QString &table, ChangeKind kind, Existing ofSameDate)
{
    StoredEvaluation stored{table, kind, ofSameDate, {}};
    forEachField<Evaluation>([&]<typename Value>(const RecordField<Evaluation, Value> &field) {
        stored.values.append(
            {QString::fromLatin1(field.column), QString::fromUtf8(field.caption),
             [field](const QVariant &value) { return fieldText(field, memberValue<Value>(value)); }});
    });
    return stored;
}

// The stored values of an evaluation, in the order of its description; empty for one that is not there.
using EvaluationValues = QVariantList;
// All evaluations of a patient. Throws dao::Error.
QHash<QDateTime, EvaluationValues> readEvaluations(dao::Database &clinical, const StoredEvaluation &stored,
                                                   qint32 patientCode);

// Empty when there is no such evaluation (any more). Throws dao::Error.
template <typename Evaluation>
std::optional<Evaluation> readEvaluation(dao::Database &clinical, const StoredEvaluation &stored,
                                         qint32 patientCode, const QDateTime &when)
{
    const auto row = clinical.OpenRecordset(evaluationQuery(stored.table, patientCode, when),
                                            dao::RecordsetType::Snapshot);
    if (row->Eof())
        return std::nullopt;
    Evaluation evaluation;
    readFields(*row, evaluation);
    return evaluation;
}
bool hasEvaluation(dao::Database &clinical, const StoredEvaluation &stored, qint32 patientCode,
                   const QDateTime &when);

// What two workstations have made of one evaluation.
struct EvaluationVersions {
    EvaluationValues read; // what may be replaced; empty where nothing was there
    EvaluationValues mine, stored; // when a save is Changed
};

// Writes one evaluation of the current patient in a transaction: adds the row of the date or edits it, sets
// its date and lets `fill` set its values; the change is journalled with it. What another workstation has
// stored since it was read is not replaced, and Refused where the evaluation is new and must not replace
// one of its date. Raises nothing.
WriteResult saveEvaluation(WorkingState &state, const StoredEvaluation &stored, const QDateTime &when,
                           bool isNew, const std::function<void(dao::Recordset &)> &fill,
                           EvaluationVersions &versions);

// Deletes one evaluation of the current patient and journals it. `seen` is the evaluation as it was read;
// when it is stored otherwise, the result is Changed and `seen` becomes what is stored. Raises nothing.
WriteResult deleteEvaluation(WorkingState &state, const StoredEvaluation &stored, const QDateTime &when,
                             EvaluationValues &seen);

// A number of a row, and as the forms show it. An empty one is Null and an empty text.
std::optional<double> optionalNumber(dao::Recordset &row, const QString &field);
QString optionalText(const std::optional<double> &number);

} // namespace clivara
