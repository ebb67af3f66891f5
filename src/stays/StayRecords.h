// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/SharedRecord.h"

#include <QStringList>

namespace clivara {

// A hospital stay of a patient.
struct Stay {
    qint32 id = 0; // idRicovero; 0: a new one
    QDate admitted, discharged;
    QString hospital, ward; // as stored
    LastWrite written; // as it was read

    static constexpr auto fields()
    {
        return std::tuple{
            RecordField{"data_accesso", &Stay::admitted, "Data accesso"},
            RecordField{"data_fineric", &Stay::discharged, "Data fine ricovero"},
            RecordField{"sede", &Stay::hospital, "Sede", {.most = 80, .of = "La sede"}},
            RecordField{"reparto", &Stay::ward, "Reparto"},
        };
    }
    static constexpr RecordTable table{
        .name = "ricoveri2",
        .key = "idRicovero",
        .section = "DR",
        .newKey = NewKey::Autonumber,
        .saved = "Il ricovero è stato salvato",
        .vanished = "Il ricovero è stato eliminato da un'altra postazione mentre lo si modificava.\n"
                    "Quanto scritto è ancora nella finestra. Salvarlo come nuovo ricovero?",
    };
};
// Oldest first; of the same day the lower key first. Throws dao::Error.
QList<Stay> listStays(dao::Database &clinical, qint32 patientCode);
// True when no other stay of the list begins after this one. Of those that begin on the same day the one with
// the highest key is the newest, and a new one before all.
bool isNewestStay(const QList<Stay> &stays, const Stay &stay);

// The names of sedericov and reparth in their order, trimmed, blank ones left out.
QStringList hospitals(dao::Database &clinical);
QStringList wards(dao::Database &codes);
// The name in the list that is the same as the typed one but for case and blanks around it; empty when there
// is none.
QString nameInList(const QStringList &names, const QString &typed);

// As saveShared(). With `extendList` the stay's hospital is added to sedericov in the same transaction,
// unless it has come to be there.
SaveResult<Stay> saveStay(WorkingState &state, Stay &stay, const Stay &read, bool extendList);

} // namespace clivara
