// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordConflict.h"
#include "chart/SharedWrites.h"
#include "dao/Dao.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <concepts>
#include <optional>
#include <tuple>

namespace clivara {

struct WorkingState;

// A service of home care, or another that the region has a code for.
struct ServiceType {
    qint32 id = 0; // IdTipo
    QString name; // descr_tipo, trimmed
    QString code; // codice
};
// The types of TipoVisita that carry a regional code, by name. Throws dao::Error.
QList<ServiceType> serviceTypes(dao::Database &codes);

// A dated entry: a visit (VISITAPROBL) of a type with a regional code.
struct HomeCareEntry {
    qint32 id = 0; // IdVisitaProbl; 0: a new one
    QDate date; // DataReg
    QDate validity; // validita; null is Null
    std::optional<qint32> type; // idtipo; empty: none chosen
    QString typeName;
    LastWrite written; // as it was read
};
// What of an entry its form writes, to be compared.
template <typename Record>
auto contentsOf(Record &entry) requires std::same_as<std::remove_const_t<Record>, HomeCareEntry>
{
    return std::tie(entry.date, entry.validity, entry.type);
}
// Newest first; of the same day the higher key first. Visits without a type, or of a type without a regional
// code, are left out. Throws dao::Error.
QList<HomeCareEntry> listHomeCare(dao::Database &clinical, dao::Database &codes, qint32 patientCode);

// Another entry of the list on the same day and of the same type.
bool isDuplicateEntry(const QList<HomeCareEntry> &list, const HomeCareEntry &entry);

// Writes the entry of the current patient, with its identity stamps; a new one gets the highest key plus 1
// within the transaction that writes it. What else the visit holds is left as it is, and so is the hour of a
// date that is still of the same day. Refused when the list has another entry of this type and day. Raises
// nothing; when nothing was written the struct is as it was. `read` as with saveStay; of what is stored it
// gets everything but the type's name.
WriteResult saveHomeCare(WorkingState &state, HomeCareEntry &entry, HomeCareEntry &read);
// What of a visit the entry holds besides, as the visit's dialog calls it: "Sintomo", "Anamnesi", "Problema
// associato"...
QStringList visitContents(dao::Database &clinical, qint32 id);
// Sets the owner to the working doctor, records the deletion ("DV") and deletes the row of the current
// patient. All or nothing. `seen` as with deleteStay; `told` are the contents of the visit that the doctor
// knows of, in the same way.
WriteResult deleteHomeCare(WorkingState &state, qint32 id, LastWrite &seen, QStringList &told);

} // namespace clivara
