// SPDX-License-Identifier: Apache-2.0
#pragma once

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

} // namespace clivara
