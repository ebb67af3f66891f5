// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"

#include <QDateTime>
#include <QString>

namespace clivara {

class Clock;
class GuidSource;
class Log;
class RecordsetOperations;
class SettingsStore;

// What a row of a patient says of itself to the practice's other workstations. UIDs are normalised; the times
// are local.
struct PatientStamp {
    QString key; // the row's record UID, sRecordUid
    QString owner; // the doctor who owns the row
    QString author; // the doctor who writes it
    QDateTime created, modified;
    QString section; // clinical section code, sCodSezCli
    QString patientUid; // idRowGuid of the patient's registry row
    QString patientOwnerUid; // the owner of the patient's record
};

// Whose row it is when its patient has no owner.
enum class OwnerFallback {
    None,
    WorkingDoctor // the doctor of the setting "medicoP"
};

// Writes rows that are exchanged between the workstations and doctors of a practice: gives them their
// identity, owner, author and times, and leaves a trace of the deleted ones. Made for a moment, out of what
// is current.
class SharedRows {
public:
    struct Context {
        dao::Database *clinical = nullptr; // null: no owner is found
        dao::Database *doctors = nullptr;
        qint32 patientCode = -1; // of the current patient; -1 for none
        const SettingsStore &settings;
        const Clock &clock;
        GuidSource &guids;
        Log &log;
        RecordsetOperations &operations;
    };
    explicit SharedRows(const Context &context)
        : m_context(context)
    {
    }

    // The normalised UID of the doctor who owns the row of the recordset's edit buffer (or current row): the
    // owner of the current patient, else of the patient in the setting "CODICE PAZIENTE", else of the patient
    // in the row's COD_PAZ; else the fallback. Without any the log says so and the result is empty.
    QString CheckOwnerValue(dao::Recordset &recordset, OwnerFallback fallback = OwnerFallback::None);

    // Gives the row of the open edit buffer its identity: everything when `isNew`, else only the time and the
    // author of the change (and an idRowGuid where it has none). The result is the normalised idRowGuid.
    // Nothing is saved. Throws dao::Error (a missing field, no edit buffer).
    QString writePatientStamp(dao::Recordset &recordset, bool isNew, const PatientStamp &stamp);
    // The same for the current patient's row, the stamp made here: a new record UID, the patient's owner
    // (while the host setting "MIR_ATTIVO" is on the working doctor stands in for one that is missing), the
    // patient's UIDs, the time of now. A row from before rows had a record UID gets one when it is edited.
    QString writeCurrentPatientStamp(dao::Recordset &recordset, bool isNew, const QString &section,
                                     const QString &author);
    // The record UID of the row of the open edit buffer, normalised; creates the UID if missing.
    QString ensureRecordUid(dao::Recordset &recordset);
    // The stamp of a row that belongs to no patient: `owner` becomes what CheckOwnerValue finds and is
    // written to new and old rows alike; an empty author is the owner. The row's record UID is not touched.
    QString writePlainStamp(dao::Recordset &recordset, bool isNew, QString &owner, const QString &author,
                            const QDateTime &created, const QDateTime &modified,
                            OwnerFallback fallback = OwnerFallback::None);

    // Writes and saves a patient's row of a table recordset with an index on the record UID. With isNew 0 the
    // row with the stamp's key is edited; where there is none, isNew becomes -1 and the row is added. The
    // result is the row's normalised idRowGuid; empty when nothing was written: an empty key, or a failure,
    // which may leave an open edit buffer behind.
    QString StampPatientRow(dao::Recordset &recordset, qint16 &isNew, const PatientStamp &stamp);

    // Records in DELETIONS that the row with that record UID was deleted from the table of that code
    // ("DP"), so that the deletion is passed on. A record that is deleted again keeps its one row, which
    // then tells the last deletion. The result is the normalised idRowGuid of the row in DELETIONS; empty,
    // and nothing is written, for an empty record UID. Throws dao::Error.
    QString recordDeletion(dao::Database &database, const QString &recordUid, const QString &tableCode,
                           const QString &author = {});

private:
    QString doctorUid();
    qint32 patientOf(dao::Recordset &recordset) const;
    void begin(dao::Recordset &recordset, qint16 &isNew, const QString &key);
    QString rowUid(dao::Recordset &recordset, bool isNew);

    Context m_context;
};

} // namespace clivara
