// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/SharedRecord.h"

#include <QList>
#include <array>

namespace clivara {

struct WorkingState;

// What the selected problem (WorkingState::selected) is besides a problem's idProblems.
constexpr qint32 noProblem = 0; // none chosen, or a new one
constexpr qint32 unassociated = -1; // the row of items that are filed against no problem

// PROBLEMS.stato_probl; the values are also the positions in the list that the doctor chooses from.
enum class ProblemState : qint16 { Unspecified = 0, Open = 1, Closed = 2, Chronic = 3 };
// "<non specificato>", "Aperto", "Chiuso", "Cronico". An unknown value is shown as "<non specificato>".
QString problemStateText(qint16 state);

// One problem of a patient, as lists show it.
struct ProblemRow {
    qint32 id = noProblem;
    QDate start; // DataInizio; null when unknown
    QDate closed; // DataChiusura
    QString suspectedCode, finalCode; // CodICDSospetto, CodICDFinale; trimmed
    QString description; // descr_mal, trimmed
    qint16 state = 0; // as stored: a practice may hold other values than ProblemState has
    LastWrite written; // as it was read

    // True when it is closed and its closing date is before its start, which lists mark. A closing date that
    // an open problem has kept does not count.
    bool closedBeforeStart() const
    {
        return state == qint16(ProblemState::Closed) && start.isValid() && closed.isValid() && closed < start;
    }
};
// Newest start first, then the higher key; those without a start last. Throws dao::Error.
QList<ProblemRow> listProblems(dao::Database &clinical, qint32 patientCode);

// A problem as its dialog edits it.
struct ProblemDetail {
    qint32 id = noProblem; // noProblem: a new one
    QString code;
    QString description;
    qint16 state = 0;
    QDate opened, started, closed;
    QString symptoms, findings, assessment, plan;
    LastWrite written; // as it was read

    static constexpr auto fields()
    {
        using Problem = ProblemDetail;
        return std::tuple{
            RecordField{"CodICDSospetto", &Problem::code, "Problema", {}, Storage::Trimmed},
            RecordField{"descr_mal", &Problem::description, "Descrizione", {255, "La descrizione"}},
            RecordField{"stato_probl", &Problem::state, "Stato"},
            RecordField{"DataApertura", &Problem::opened, "Data apertura", {}, {}, dashedDay},
            RecordField{"DataInizio", &Problem::started, "Data inizio", {}, {}, dashedDay},
            RecordField{"DataChiusura", &Problem::closed, "Data chiusura", {}, {}, dashedDay},
            RecordField{"anamnesi", &Problem::symptoms, "Sintomi", {}, Storage::Memo},
            RecordField{"esameob", &Problem::findings, "Obiettivo", {}, Storage::Memo},
            RecordField{"conclusioni", &Problem::assessment, "Valutazione", {}, Storage::Memo},
            RecordField{"pianificazione", &Problem::plan, "Pianificazione", {}, Storage::Memo},
        };
    }
    static constexpr RecordTable table{
        .name = "PROBLEMS",
        .key = "idProblems",
        .section = "DP",
        .newKey = NewKey::Autonumber,
        .saved = "Il problema è stato salvato",
        .vanished = "Il problema è stato eliminato da un'altra postazione mentre lo si modificava.\n"
                    "Quanto scritto è ancora nella finestra. Salvarlo come nuovo problema?",
    };
};
// In the order in which the dialog shows them.
inline constexpr std::array problemTexts{&ProblemDetail::symptoms, &ProblemDetail::findings,
                                         &ProblemDetail::assessment, &ProblemDetail::plan};

// False for noProblem, and for a problem of another patient.
bool hasProblem(dao::Database &clinical, qint32 patientCode, qint32 id);

// Another problem of the patient with the same code or, without a code, with the same description. False for
// an edited problem that still has the code, or description, of `before`.
bool isDuplicateProblem(dao::Database &clinical, qint32 patientCode, const ProblemDetail &problem,
                        const ProblemDetail &before);

// As saveShared(). Refused when it is a duplicate.
SaveResult<ProblemDetail> saveProblem(WorkingState &state, ProblemDetail &problem, const ProblemDetail &read);
// As deleteShared(); the problem's visits are detached (id_Probl becomes empty).
WriteResult deleteProblem(WorkingState &state, qint32 id, LastWrite &seen);
// How a problem stood when it was last looked at.
struct ProblemStanding {
    qint16 state = 0;
    LastWrite written;

    bool operator==(const ProblemStanding &) const = default;
};
// Sets the state of an open problem to closed, and the stamps of an edit. The closing date is left as it is.
// Changed when it is not open, or its state or last write is not that of `seen`; `seen` becomes what is
// stored.
WriteResult closeProblem(WorkingState &state, qint32 id, ProblemStanding &seen);

// The text that a problem is called by: its description (descr_mal), else the name of its code in icd9 or,
// when that does not know it, in malattie, else the code itself; with the code in brackets before it when
// both are known ("[250.0] Diabete mellito"). Empty for noProblem, unassociated and a problem that is not
// there.
QString problemText(dao::Database &clinical, dao::Database &codes, qint32 id);
// The name of a diagnosis code: icd9.des, else malattie.descrizione, else empty.
QString diagnosisName(dao::Database &codes, const QString &code);

} // namespace clivara
