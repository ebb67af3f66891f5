// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/SharedRecord.h"

#include <QList>
#include <QStringList>

namespace clivara {

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
    QDate date, validity;
    std::optional<qint32> type; // empty: none chosen
    QString typeName; // in a list
    LastWrite written; // as it was read

    static constexpr auto fields()
    {
        return std::tuple{
            RecordField{"DataReg", &HomeCareEntry::date, "Data Domiciliare"},
            RecordField{"validita", &HomeCareEntry::validity, "Data Inizio Validità"},
            RecordField{"idtipo", &HomeCareEntry::type, "Tipo"},
        };
    }
    static constexpr RecordTable table{
        .name = "VISITAPROBL",
        .key = "IdVisitaProbl",
        .section = "DV", // as all visits
        .newKey = NewKey::HighestPlusOne,
        .saved = "L'elemento è stato salvato",
        .vanished = "L'elemento è stato eliminato da un'altra postazione mentre lo si modificava.\n"
                    "Quanto scritto è ancora nella finestra. Salvarlo come nuovo?",
    };
};
// Newest first; of the same day the higher key first. Visits without a type, or of a type without a regional
// code, are left out. Throws dao::Error.
QList<HomeCareEntry> listHomeCare(dao::Database &clinical, dao::Database &codes, qint32 patientCode);

// Another entry of the list on the same day and of the same type.
bool isDuplicateEntry(const QList<HomeCareEntry> &list, const HomeCareEntry &entry);

// As saveShared(). What else the visit holds is left as it is. Refused when the list has another entry of
// this type and day.
SaveResult<HomeCareEntry> saveHomeCare(WorkingState &state, HomeCareEntry &entry, const HomeCareEntry &read);
// What of a visit the entry holds besides, as the visit's dialog calls it: "Sintomo", "Anamnesi", "Problema
// associato"...
QStringList visitContents(dao::Database &clinical, qint32 id);
// As deleteShared(). `told` are the contents of the visit that the doctor knows of: others are Changed, and
// `told` becomes what is stored.
WriteResult deleteHomeCare(WorkingState &state, qint32 id, LastWrite &seen, QStringList &told);

} // namespace clivara
