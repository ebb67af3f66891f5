// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "problems/ProblemRecords.h"

namespace clivara {

// The texts of a visit in the order in which they are written and shown: anamnesi, esameob, conclusioni,
// pianificazione, txtNote.
constexpr int visitTexts = 5;

// A visit as its dialog edits it.
struct VisitDetail {
    qint32 id = 0; // IdVisitaProbl; 0: a new one
    std::optional<qint32> problem; // id_Probl as stored or as chosen; empty for Null
    QDate date; // DataReg
    QDate validity; // null is Null
    std::optional<qint32> type; // idtipo
    QString symptom; // SINTOMO; empty when none
    std::array<QString, visitTexts> texts;
    LastWrite written; // as it was read
};
// What of a visit its dialog writes, to be compared.
template <typename Visit>
auto contentsOf(Visit &visit) requires std::same_as<std::remove_const_t<Visit>, VisitDetail>
{
    auto &[history, findings, conclusions, plan, notes] = visit.texts;
    return std::tie(visit.problem, visit.date, visit.validity, visit.type, visit.symptom, history, findings,
                    conclusions, plan, notes);
}
// Empty when it is not there, or not of this patient.
std::optional<VisitDetail> readVisit(dao::Database &clinical, qint32 patientCode, qint32 id);

// True when the patient has another visit on the visit's day. False for a stored visit whose day is still
// `before`: it may go on sharing its day.
bool isDayTaken(dao::Database &clinical, qint32 patientCode, const VisitDetail &visit, QDate before);
// True when the visit is to be filed against a problem that the patient does not have (any more): it would be
// in no list of a problem.
bool isProblemGone(dao::Database &clinical, qint32 patientCode, const VisitDetail &visit);

// As saveProblem and deleteProblem ("DV"). A new visit gets the highest key plus 1 (1 in an empty table)
// within the transaction that writes it. A validity that is null is left out for a new visit and leaves an
// edited one's as it was; the hour of a date stays while its day does. Refused when the day is taken or the
// problem is gone.
WriteResult saveVisit(WorkingState &state, VisitDetail &visit, VisitDetail &read);
WriteResult deleteVisit(WorkingState &state, qint32 id, LastWrite &seen);

struct CodeName {
    QString code;
    QString name;
};
QList<CodeName> visitTypes(dao::Database &codes); // by name; the code is IdTipo
QList<CodeName> symptoms(dao::Database &codes); // by name

} // namespace clivara
