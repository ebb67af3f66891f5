// SPDX-License-Identifier: Apache-2.0
#include "problems/VisitRecords.h"

#include "values/JetValues.h"

namespace clivara {

namespace {

QList<CodeName> codeNames(dao::Database &codes, const QString &query, const QString &code,
                          const QString &name)
{
    QList<CodeName> list;
    for (const auto rows = codes.OpenRecordset(query, dao::RecordsetType::Snapshot); !rows->Eof();
         rows->MoveNext())
        list.append({rows->Fields(code).text(), rows->Fields(name).text().trimmed()});
    return list;
}

} // namespace

bool isDayTaken(dao::Database &clinical, qint32 patientCode, const VisitDetail &visit, QDate before)
{
    if (!visit.date.isValid() || (visit.id != 0 && visit.date == before))
        return false;
    // A visit may carry a time of day in rows that other programs wrote.
    const dao::Query query{
        QStringLiteral("select * from VisitaProbl where (cod_paz=[patient]) and (datareg>=[day]) "
                       "and (datareg<=[evening]) and (idVisitaProbl <> [visit])"),
        {{"patient", patientCode},
         {"day", visit.date},
         {"evening", jet::dateTime(visit.date, QTime(23, 59, 59))},
         {"visit", visit.id}}};
    return !clinical.OpenRecordset(query, dao::RecordsetType::Snapshot)->Eof();
}

bool isProblemGone(dao::Database &clinical, qint32 patientCode, const VisitDetail &visit)
{
    return visit.problem.value_or(noProblem) > noProblem
           && !hasProblem(clinical, patientCode, *visit.problem);
}

SaveResult<VisitDetail> saveVisit(WorkingState &state, VisitDetail &visit, const VisitDetail &read)
{
    const qint32 patient = state.header.patientCode;
    const auto hasItsProblem = [&] { return !isProblemGone(state.clinical(), patient, visit); };
    const auto hasItsDay = [&](const VisitDetail &stored) {
        return !isDayTaken(state.clinical(), patient, visit, stored.date);
    };
    return saveShared<VisitDetail>(state, visit, read, {.isPossible = hasItsProblem, .isAllowed = hasItsDay});
}

QList<CodeName> visitTypes(dao::Database &codes)
{
    return codeNames(codes, QStringLiteral("select * from tipoVisita order by descr_tipo"),
                     QStringLiteral("idTipo"), QStringLiteral("descr_tipo"));
}

QList<CodeName> symptoms(dao::Database &codes)
{
    return codeNames(codes, QStringLiteral("select * from Sintomi order by descrizione"),
                     QStringLiteral("codice"), QStringLiteral("descrizione"));
}

} // namespace clivara
