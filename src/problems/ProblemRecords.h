// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordConflict.h"
#include "chart/SharedWrites.h"
#include "dao/Dao.h"

#include <QDate>
#include <QList>
#include <QString>
#include <array>
#include <concepts>
#include <optional>
#include <tuple>

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

// So many characters the description of a problem may have (descr_mal).
constexpr int longestDescription = 255;

// A problem as its dialog edits it.
struct ProblemDetail {
    qint32 id = noProblem; // noProblem: a new one
    QString code; // CodICDSospetto
    QString description; // descr_mal
    qint16 state = 0;
    QDate opened, started, closed; // DataApertura, DataInizio, DataChiusura; null is Null
    std::array<QString, 4> texts; // anamnesi, esameob, conclusioni, pianificazione
    LastWrite written; // as it was read
};
// What of a problem its dialog writes, to be compared.
template <typename Problem>
auto contentsOf(Problem &problem) requires std::same_as<std::remove_const_t<Problem>, ProblemDetail>
{
    auto &[symptoms, findings, assessment, plan] = problem.texts;
    return std::tie(problem.code, problem.description, problem.state, problem.opened, problem.started,
                    problem.closed, symptoms, findings, assessment, plan);
}
std::optional<ProblemDetail> readProblem(dao::Database &clinical, qint32 id); // empty when it is not there

// False for noProblem, and for a problem of another patient.
bool hasProblem(dao::Database &clinical, qint32 patientCode, qint32 id);

// Another problem of the patient with the same code or, without a code, with the same description. False for
// an edited problem that still has the code, or description, of `before`.
bool isDuplicateProblem(dao::Database &clinical, qint32 patientCode, const ProblemDetail &problem,
                        const ProblemDetail &before);

// Writes the problem of the current patient, with its identity stamps; a new one gets its id. Texts that are
// blank after trimming are stored as empty texts, the others as they are. Raises nothing; when nothing was
// written the struct is as it was. `read` is the problem as it was read: when writing would replace what was
// stored since then, the result is Changed and `read` becomes what is stored. Refused when it is a duplicate.
// The hour of a date stays while its day does.
WriteResult saveProblem(WorkingState &state, ProblemDetail &problem, ProblemDetail &read);
// Sets the owner to the working doctor, records the deletion ("DP"), deletes the row and detaches its visits
// (id_Probl becomes empty). All or nothing. Changed when it was written since `seen`, which becomes what is stored.
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

// The text that a problem is called by: its description (descr_mal), else the name of its code in icd9 or, when
// that does not know it, in malattie, else the code itself; with the code in brackets before it when both are
// known ("[250.0] Diabete mellito"). Empty for noProblem, unassociated and a problem that is not there.
QString problemText(dao::Database &clinical, dao::Database &codes, qint32 id);
// The name of a diagnosis code: icd9.des, else malattie.descrizione, else empty.
QString diagnosisName(dao::Database &codes, const QString &code);

} // namespace clivara
