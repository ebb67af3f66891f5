// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/FormCall.h"
#include "dao/Dao.h"

#include <QDateTime>
#include <QList>
#include <QString>

namespace clivara {

struct WorkingState;

// Who wrote a row last, and when, as far as the row says it.
struct LastWrite {
    QString author; // the doctor's UID, normalised; empty when it is not noted
    QDateTime when; // local; null when it is not noted

    bool operator==(const LastWrite &) const = default;
};
// From the stamps of a shared row (sAuthorUid, dLastModifiedDate). Throws dao::Error.
LastWrite lastWrite(dao::Recordset &row);

// One value of a record in both versions, as the doctor reads it.
struct ConflictField {
    QString caption;
    QString read; // as it was when the record was opened here
    QString mine; // as it is in the window
    QString stored; // as another workstation has saved it
};

enum class ConflictChoice {
    BackToEditing, // nothing is written, everything stays as it is
    Mine,
    Theirs // what is in the window is given up
};

// Another workstation has changed a record while it was open in a window here: what the doctor is told and asked.
struct RecordConflict {
    QString event; // "La visita è stata salvata"
    LastWrite before, there; // of the row when it was read here, and as it is stored now
    QList<ConflictField> fields; // all of them, also those that do not differ
    // Mine keeps what was written elsewhere where nothing was changed here; otherwise it replaces the whole record.
    bool mergesFields = true;
};

// Of the form "Conflitto".
struct ConflictCall : FormCall {
    RecordConflict conflict;
    ConflictChoice choice = ConflictChoice::BackToEditing; // the answer
};

// "La visita è stata salvata da Bruno Verdi il 21/11/2026 alle 10:10, da un'altra postazione, ..."; what is not known
// is left out and said to be unknown. A write that has not left a new stamp is nobody's.
QString conflictSentence(WorkingState &state, const RecordConflict &conflict);

// Shows the conflict in the form "Conflitto", and returns what the doctor chooses there. Raises nothing.
ConflictChoice askAboutConflict(WorkingState &state, const RecordConflict &conflict);

} // namespace clivara
