// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "data/ChangeJournal.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>
#include <functional>
#include <optional>

// What the evaluations of a patient have in common: a table with one row for each patient and date.
namespace clivara {

struct WorkingState;
enum class WriteResult;

// One saved evaluation as the history shows it.
struct HistoryRow {
    QDateTime when; // its key
    QString date; // "dd/mm/yyyy"
    QString value; // as a text; empty when none was stored
    std::optional<double> number; // the same as a number
};

// The patient's evaluations, newest first. The query gives, in this order, the date and the value as texts, the date
// and the value. Throws dao::Error.
QList<HistoryRow> readHistory(dao::Database &clinical, const QString &query);

// The query for one evaluation. The date goes in as "dd/mm/yyyy", with the time only where it is not midnight.
QString evaluationQuery(const QString &table, qint32 patientCode, const QDateTime &when);

// How an evaluation is stored: its table, the kind by which its changes are journalled, and what the doctor
// calls its fields.
struct StoredEvaluation {
    struct Value {
        QString field;
        QString caption;
        QString (*text)(const QVariant &value); // as the doctor reads it
    };
    QString table;
    ChangeKind kind;
    QList<Value> values;
};
QString numberAsText(const QVariant &value);
QString yesOrNo(const QVariant &value);

// The stored values of an evaluation, in the order of its description; empty for one that is not there.
using EvaluationValues = QVariantList;
// All evaluations of a patient. Throws dao::Error.
QHash<QDateTime, EvaluationValues> readEvaluations(dao::Database &clinical, const StoredEvaluation &stored,
                                                   qint32 patientCode);

enum class SaveOutcome {
    Saved,
    AlreadyThere, // there is an evaluation of that date, and it was not to be replaced
    Vanished, // another workstation deleted it
    Changed, // another workstation wrote it otherwise than it was read
    Failed // still not possible after the retries; the log tells why
};

enum class Existing { Refuse, Replace };

// What two workstations have made of one evaluation.
struct EvaluationVersions {
    EvaluationValues read; // what may be replaced; empty where nothing was there
    EvaluationValues mine, stored; // when a save is Changed
};

// Writes one evaluation of the current patient in a transaction: adds the row of the date or edits it, sets
// its date and lets `fill` set its values; the change is journalled with it. What another workstation has
// stored since it was read is not replaced. Raises nothing.
SaveOutcome saveEvaluation(WorkingState &state, const StoredEvaluation &stored, const QDateTime &when,
                           Existing existing, const std::function<void(dao::Recordset &)> &fill,
                           EvaluationVersions &versions);

// Deletes one evaluation of the current patient and journals it. `seen` is the evaluation as it was read;
// when it is stored otherwise, the result is Changed and `seen` becomes what is stored. Raises nothing.
WriteResult deleteEvaluation(WorkingState &state, const StoredEvaluation &stored, const QDateTime &when,
                             EvaluationValues &seen);

// A number of a row: from its field, into a field and as the forms show it. An empty one is Null and an empty text.
std::optional<double> optionalNumber(dao::Recordset &row, const QString &field);
QVariant numberValue(const std::optional<double> &number);
QString optionalText(const std::optional<double> &number);

} // namespace clivara
