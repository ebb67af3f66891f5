// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QVariant>
#include <functional>
#include <optional>

namespace dao {
class Database;
class Recordset;
} // namespace dao

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

enum class SaveOutcome {
    Saved,
    AlreadyThere, // there is an evaluation of that date, and it was not to be replaced
    Failed // still not possible after the retries; the log tells why
};

enum class Existing { Refuse, Replace };

// Writes one evaluation of the current patient in a transaction: adds the row of the date or edits it, sets its date
// and lets `fill` set its values. Raises nothing.
SaveOutcome saveEvaluation(WorkingState &state, const QString &table, const QDateTime &when,
                           Existing existing, const std::function<void(dao::Recordset &)> &fill);

// Deletes one evaluation of the current patient. Raises nothing.
WriteResult deleteEvaluation(WorkingState &state, const QString &table, const QDateTime &when);

// A number of a row: from its field, into a field and as the forms show it. An empty one is Null and an empty text.
std::optional<double> optionalNumber(dao::Recordset &row, const QString &field);
QVariant numberValue(const std::optional<double> &number);
QString optionalText(const std::optional<double> &number);

} // namespace clivara
