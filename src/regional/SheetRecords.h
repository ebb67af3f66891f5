// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordFields.h"
#include "chart/SharedWrites.h"

#include <QDate>
#include <QList>
#include <QString>

#include <optional>

namespace dao {
class Database;
}

namespace clivara {

struct WorkingState;

// Rows of AIR15_7. Numbers are counted for each type over all patients. Reading throws dao::Error.

struct StoredSheet {
    qint32 number = 0; // idScheda
    int type = 0; // idTipo
    QDate date; // null when it has none
    QString data; // as stored; empty for Null

    bool operator==(const StoredSheet &) const = default;
    static constexpr auto fields()
    {
        return std::tuple{
            RecordField{"DataReg", &StoredSheet::date, "Data"},
            RecordField{"SEQDATI", &StoredSheet::data, "Dati come sono registrati"},
        };
    }
};
// The sheets of a patient, newest first; of one day the later type and number first.
QList<StoredSheet> listSheets(dao::Database &clinical, qint32 patient);
// Nothing when the patient has no such sheet.
std::optional<StoredSheet> readSheet(dao::Database &clinical, qint32 patient, int type, qint32 number);

// The highest number of the type plus 1; 1 for the first.
qint32 nextSheetNumber(dao::Database &clinical, int type);

// Adds a sheet of the current patient under its number, or under the next one when that was given away
// meanwhile; `sheet` then has the number that it was stored under. Raises nothing.
WriteResult addSheet(WorkingState &state, StoredSheet &sheet);
// Replaces date and data of a stored sheet. `read` is the sheet as it was read: when writing would replace
// what was stored since then, the result is Changed and has what is stored.
SaveResult<StoredSheet> changeSheet(WorkingState &state, const StoredSheet &sheet, const StoredSheet &read);
// Deletes the sheet of the current patient with that type and number. `seen` is the sheet as the list has
// it; when it is stored otherwise, the result is Changed and `seen` becomes what is stored.
WriteResult deleteSheet(WorkingState &state, StoredSheet &seen);

} // namespace clivara
