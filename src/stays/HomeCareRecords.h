// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "data/engine/Dao.h"
#include "host/working_state/SharedWrites.h"

#include <QDate>
#include <QList>
#include <QString>
#include <optional>

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
    QString typeName; // "Tipo 77 (non più in elenco)" when its type was removed
    bool isTypeKnown = true;
    QDateTime
        modified; // dLastModifiedDate as it was read; tells whether another workstation has written since
};
// Newest first; of the same day the higher key first. An entry whose type was removed from the table is there as long as
// it is nothing but an entry: of no problem, without symptom and texts. Throws dao::Error.
QList<HomeCareEntry> listHomeCare(dao::Database &clinical, dao::Database &codes, qint32 patientCode);

// The time of the last change of an entry as it is stored now; empty when the entry is not there. Throws dao::Error.
std::optional<QDateTime> entryModified(dao::Database &clinical, qint32 id);

// Another entry of the list on the same day and of the same type.
bool isDuplicateEntry(const QList<HomeCareEntry> &list, const HomeCareEntry &entry);

// Writes the entry of the current patient, with its identity stamps; a new one gets the highest key plus 1 within the
// transaction that writes it. What else the visit holds is left as it is, and so is the hour of a date that is
// still of the same day. Failed also when another workstation wrote the entry while this one waited. Raises nothing; when nothing was written the struct is as it was.
WriteResult saveHomeCare(WorkingState &state, HomeCareEntry &entry);
// Sets the owner to the working doctor, records the deletion ("DV") and deletes the row. All or nothing.
WriteResult deleteHomeCare(WorkingState &state, qint32 id);

} // namespace clivara
