// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDateTime>
#include <QString>

namespace dao {
class Database;
}

namespace clivara {

class GuidSource;
class Log;

// Global identities (UIDs) of rows, doctors and patients are texts. They come with or without braces and the
// word "guid" around them; only normalised ones are compared.

// Lower case, without braces and "guid", trimmed: "{guid {ABC}}" becomes "abc".
QString normaliseUid(const QString &text);
// The normalised form when `plain`, otherwise the same in braces.
QString formatUid(const QString &text, bool plain);
// A new UID: normalised when `plain`, otherwise 38 characters in braces, upper-case.
QString newUid(GuidSource &guids, bool plain);

// The normalised UID of the doctor with that code (medici_gruppo.cod_smi) in the doctors' database, traced in
// the log. Empty when there is no such doctor, when the row has no UID, and when the lookup fails (an empty
// code, a text that is no number, a database error), which also ends its trace.
QString LeggiUidMedico(const QString &code, dao::Database *doctors, Log &log);

// The code that the practice calls a doctor by ("M001", medici_gruppo.Medico), by the doctor's UID in any
// form. Empty when there is no such doctor, when the text is no UID, and when the lookup fails. Both kinds of
// practice are served: those that keep medici_gruppo.idRowGuid as a GUID and those that keep it as a text.
QString doctorFromUid(const QString &uid, dao::Database &doctors);
// The name of a doctor ("Bruno Verdi"), else the code, by the UID in any form; empty as for doctorFromUid.
QString doctorName(const QString &uid, dao::Database &doctors);

// The UIDs of a patient's registry row, normalised; empty where the row says nothing.
struct PatientUids {
    QString row; // archivio.idRowGuid
    QString record; // archivio.sPatientRecordUid
    QString owner; // archivio.sOwnerUid
};
// All empty when there is no such patient and when the lookup fails.
PatientUids readPatientUids(qint32 patientCode, dao::Database &clinical);

// A date and time as fourteen digits, "yyyymmddhhmmss"; empty for an invalid one.
QString compactTimestamp(const QDateTime &date);

} // namespace clivara
