// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordFields.h"
#include "chart/SharedWrites.h"
#include "chart/WorkingState.h"

#include <functional>
#include <memory>
#include <optional>

// Records of a patient that the workstations of a practice share: rows with a key, the patient's code and
// identity stamps. Beside its fields() such a record has `id` (0 for a new one), `written` (its last write,
// as it was read) and a static `table`.
namespace clivara {

enum class NewKey { Autonumber, HighestPlusOne };

struct RecordTable {
    const char *name;
    const char *key; // its column
    const char *section; // sCodSezCli, and the code under which deletions are recorded
    NewKey newKey;
    const char *saved; // "Il ricovero è stato salvato"
    const char *vanished; // asks whether a record that was deleted elsewhere is to be saved as a new one
};

// The row with the key; of that patient alone where one is given.
std::unique_ptr<dao::Recordset> openRecord(dao::Database &clinical, const RecordTable &table, qint32 id,
                                           std::optional<qint32> patientCode = {},
                                           dao::RecordsetType type = dao::RecordsetType::Snapshot);

template <typename Record>
Record recordFrom(dao::Recordset &row)
{
    Record record;
    record.id = qint32(row.Fields(QLatin1String(Record::table.key)).number());
    readFields(row, record);
    record.written = lastWrite(row);
    return record;
}

// Empty when it is not there. Throws dao::Error.
template <typename Record>
std::optional<Record> readRecord(dao::Database &clinical, qint32 id, std::optional<qint32> patientCode = {})
{
    const auto row = openRecord(clinical, Record::table, id, patientCode);
    return row->Eof() ? std::nullopt : std::optional(recordFrom<Record>(*row));
}

// Opens the edit buffer on the current row, or on a new one for 0, and gives it patient, key and stamps.
// The result is the key; 0 of a new row that gets it when it is written.
qint32 beginRecord(WorkingState &state, dao::Recordset &row, const RecordTable &table, qint32 id);

// What the save of one kind of record does besides, within its transaction. All may be left out; they may
// throw dao::Error.
template <typename Record>
struct SaveSteps {
    // Asked before the versions are compared: what else is stored allows the save. False is Refused.
    std::function<bool()> isPossible = {};
    // Asked when nothing that was written elsewhere would be replaced. `stored` is a new record where none
    // is.
    std::function<bool(const Record &stored)> isAllowed = {};
    std::function<void()> alsoWrite = {};
};

// Writes a record of the current patient with its identity stamps; a new one gets its id when that has
// succeeded. `read` is the record as it was read: when writing would replace what was stored since then,
// the result is Changed and has what is stored. Raises nothing.
template <typename Record>
SaveResult<Record> saveShared(WorkingState &state, Record &mine, const Record &read,
                              const SaveSteps<Record> &steps = {})
{
    const RecordTable &table = Record::table;
    const auto name = QString::fromLatin1(table.name);
    const bool isNew = mine.id == 0;
    qint32 id = mine.id;
    Record stored;
    const WriteResult result = writeTogether(state, name, [&]() -> WriteResult {
        const auto row = isNew ? state.clinical().OpenRecordset(name)
                               : openRecord(state.clinical(), table, id, state.header.patientCode,
                                            dao::RecordsetType::Dynaset);
        if (!isNew && row->Eof())
            return WriteResult::Vanished;
        if (steps.isPossible && !steps.isPossible())
            return WriteResult::Refused;
        if (!isNew) {
            stored = recordFrom<Record>(*row);
            if (wouldReplace(read, mine, stored))
                return WriteResult::Changed;
        }
        if (steps.isAllowed && !steps.isAllowed(stored))
            return WriteResult::Refused;
        if (steps.alsoWrite)
            steps.alsoWrite();
        id = beginRecord(state, *row, table, mine.id);
        writeFields(*row, mine);
        state.operations.update(*row);
        if (isNew && table.newKey == NewKey::Autonumber)
            id = qint32(row->LastAutoNumber());
        return WriteResult::Done;
    });
    if (result == WriteResult::Done)
        mine.id = id;
    return {result, stored};
}

// Deletes a record of the current patient: makes the working doctor its owner, records the deletion and
// deletes the row. A row without record UID gets one, so that its deletion can be passed on. `seen` is the
// row's last write as the doctor knows it; when it was written again since then, the result is Changed and
// `seen` becomes what is stored. To be called within writeTogether(); throws dao::Error.
WriteResult deleteSharedRow(WorkingState &state, const RecordTable &table, qint32 id, LastWrite &seen);
template <typename Record>
WriteResult deleteShared(WorkingState &state, qint32 id, LastWrite &seen)
{
    return writeTogether(state, QString::fromLatin1(Record::table.name),
                         [&] { return deleteSharedRow(state, Record::table, id, seen); });
}

} // namespace clivara
