// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordConflict.h"
#include "chart/SharedWrites.h"
#include "dao/Dao.h"

#include <QDate>
#include <QStringList>
#include <concepts>
#include <optional>
#include <tuple>

namespace clivara {

struct WorkingState;

// So many characters the names of a hospital and of a ward may have (sede, denominazione; reparto).
constexpr int longestHospital = 80;
constexpr int longestWard = 60;

// A hospital stay of a patient.
struct Stay {
    qint32 id = 0; // idRicovero; 0: a new one
    QDate admitted, discharged; // data_accesso, data_fineric; null is Null
    QString hospital; // sede, as stored
    QString ward; // reparto, as stored
    LastWrite written; // as it was read
};
// What of a stay its dialog writes, to be compared.
template <typename Record>
auto contentsOf(Record &stay) requires std::same_as<std::remove_const_t<Record>, Stay>
{
    return std::tie(stay.admitted, stay.discharged, stay.hospital, stay.ward);
}
// Oldest first; of the same day the lower key first. Throws dao::Error.
QList<Stay> listStays(dao::Database &clinical, qint32 patientCode);
// True when no other stay of the list begins after this one. Of those that begin on the same day the one with
// the highest key is the newest, and a new one before all.
bool isNewestStay(const QList<Stay> &stays, const Stay &stay);
std::optional<Stay> readStay(dao::Database &clinical, qint32 id); // empty when it is not there

// The names of sedericov and reparth in their order, trimmed, blank ones left out.
QStringList hospitals(dao::Database &clinical);
QStringList wards(dao::Database &codes);
// The name in the list that is the same as the typed one but for case and blanks around it; empty when there
// is none.
QString nameInList(const QStringList &names, const QString &typed);

// Writes the stay of the current patient, with its identity stamps; a new one gets its id. With `extendList`
// its hospital is added to sedericov in the same transaction, unless it has come to be there. The hour of a
// date that is still of the same day stays. Raises nothing; when nothing was written the struct is as it was.
// `read` is the stay as it was read: when writing would replace what was stored since then, the result is
// Changed and `read` becomes what is stored.
WriteResult saveStay(WorkingState &state, Stay &stay, Stay &read, bool extendList);
// Sets the owner to the working doctor, records the deletion ("DR") and deletes the row. All or nothing.
// Changed when it was written since `seen`, which becomes what is stored.
WriteResult deleteStay(WorkingState &state, qint32 id, LastWrite &seen);

} // namespace clivara
