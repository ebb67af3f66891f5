// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "problems/ProblemRecords.h"

namespace clivara {

// However it is said that a visit is filed against no problem, it is the same.
inline bool isSameFiling(const std::optional<qint32> &a, const std::optional<qint32> &b)
{
    const auto problem = [](const std::optional<qint32> &id) {
        return std::max(id.value_or(noProblem), noProblem);
    };
    return problem(a) == problem(b);
}

// A visit as its dialog edits it.
struct VisitDetail {
    qint32 id = 0; // IdVisitaProbl; 0: a new one
    QDate date;
    QDate validity; // null is Null in a new visit, and leaves a stored one's as it is
    std::optional<qint32> type;
    QString symptom; // empty when none
    std::optional<qint32> problem; // as stored or as chosen; empty for Null
    QString history, findings, conclusions, plan, notes;
    LastWrite written; // as it was read

    static constexpr auto fields()
    {
        using Visit = VisitDetail;
        return std::tuple{
            RecordField{"DataReg", &Visit::date, "Data", {}, {}, dashedDay},
            RecordField{"validita", &Visit::validity, "Validità", {}, Storage::KeptWhenEmpty, dashedDay},
            RecordField{"idtipo", &Visit::type, "Tipo"},
            RecordField{"SINTOMO", &Visit::symptom, "Sintomo", {}, Storage::NullWhenEmpty},
            RecordField{"id_Probl", &Visit::problem, "Problema associato", {}, {}, nullptr, isSameFiling},
            RecordField{"anamnesi", &Visit::history, "Anamnesi", {}, Storage::Memo},
            RecordField{"esameob", &Visit::findings, "Esame obiettivo", {}, Storage::Memo},
            RecordField{"conclusioni", &Visit::conclusions, "Conclusioni", {}, Storage::Memo},
            RecordField{"pianificazione", &Visit::plan, "Pianificazione", {}, Storage::Memo},
            RecordField{"txtNote", &Visit::notes, "Note", {}, Storage::Memo},
        };
    }
    static constexpr RecordTable table{
        .name = "VISITAPROBL",
        .key = "IdVisitaProbl",
        .section = "DV",
        .newKey = NewKey::HighestPlusOne,
        .saved = "La visita è stata salvata",
        .vanished = "La visita è stata eliminata da un'altra postazione mentre la si modificava.\n"
                    "Quanto scritto è ancora nella finestra. Salvarla come nuova visita?",
    };
};
// In the order in which the dialog shows them.
inline constexpr std::array visitTexts{&VisitDetail::history, &VisitDetail::findings,
                                       &VisitDetail::conclusions, &VisitDetail::plan, &VisitDetail::notes};

// True when the patient has another visit on the visit's day. False for a stored visit whose day is still
// `before`: it may go on sharing its day.
bool isDayTaken(dao::Database &clinical, qint32 patientCode, const VisitDetail &visit, QDate before);
// True when the visit is to be filed against a problem that the patient does not have (any more): it would be
// in no list of a problem.
bool isProblemGone(dao::Database &clinical, qint32 patientCode, const VisitDetail &visit);

// As saveShared(). Refused when the day is taken or the problem is gone.
SaveResult<VisitDetail> saveVisit(WorkingState &state, VisitDetail &visit, const VisitDetail &read);

struct CodeName {
    QString code;
    QString name;
};
QList<CodeName> visitTypes(dao::Database &codes); // by name; the code is IdTipo
QList<CodeName> symptoms(dao::Database &codes); // by name

} // namespace clivara
