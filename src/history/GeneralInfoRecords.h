// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordConflict.h"
#include "data/AllergyRecords.h"

#include <QChar>
#include <QDateTime>
#include <QString>
#include <optional>

namespace dao {
class Database;
}

// What the forms of the general information read and write in the clinical database. Everything throws
// dao::Error; writing belongs inside writeTogether().
namespace clivara {

struct WorkingState;

// The questionnaires of a patient, by their letter in ESAME_OB.tipo_dati.
enum class QuestionnaireKind : char16_t { Allergies = u'X', Infections = u'M' };

struct StoredCode {
    bool exists = false; // the patient has a row of that kind
    std::optional<QString> code; // as stored; empty for Null
    // What is known of the last save: of the infections its time (data_reg), of the allergies the day of
    // the journal.
    LastWrite written;
};

// Of several rows of a kind (an older program's, or another workstation's) the one with an empty key
// speaks, else the first; it is also the one that is written.
StoredCode readCode(dao::Database &clinical, qint32 patientCode, QuestionnaireKind kind);

// Writes the current patient's row, which is added when it is missing, and journals it. `time` goes into
// data_reg; an invalid one leaves that as it is.
void writeCode(WorkingState &state, QuestionnaireKind kind, const QString &code, const QDateTime &time = {});

// False when the current patient has no general information. Journals what it writes.
bool writeFreeText(WorkingState &state, const QString &text);

} // namespace clivara
