// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDateTime>
#include <QString>
#include <functional>

namespace dao {
class Recordset;
}

namespace clivara {

struct WorkingState;

enum class WriteResult {
    Done,
    Vanished, // another workstation deleted the row
    Failed // still not possible after the retries; the log tells why
};

// Does `write` within one transaction of the host's databases and commits it when the result is Done; otherwise
// nothing of it stays. Waits for other workstations before it begins. Raises nothing: an error is Failed and
// leaves a line in the log that begins with `subject`.
WriteResult writeTogether(WorkingState &state, const QString &subject,
                          const std::function<WriteResult()> &write);

// The part of a deletion that every shared row has in common, within writeTogether: opens the one row of the
// query in the clinical database, makes the working doctor its owner, records the deletion under the table's
// code ("DP") and deletes the row. A row without record UID gets one, so that its deletion can be passed on.
// Throws dao::Error.
WriteResult deleteSharedRow(WorkingState &state, const QString &query, const QString &tableCode);

// When a shared row was last written (dLastModifiedDate); null when no one noted it. Throws dao::Error.
QDateTime modifiedDate(dao::Recordset &row);

} // namespace clivara
