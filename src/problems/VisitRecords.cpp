// SPDX-License-Identifier: Apache-2.0
#include "problems/VisitRecords.h"

#include "chart/ThreeWay.h"
#include "chart/WorkingState.h"
#include "data/NextKey.h"
#include "data/SqlText.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

const std::array<const char *, visitTexts> textFields{"anamnesi", "esameob", "conclusioni", "pianificazione",
                                                      "txtNote"};

// With the patient: the key of a deleted visit is used again, maybe for another patient's visit.
QString byIdAndPatient(qint32 id, qint32 patientCode)
{
    return QStringLiteral("select * from VisitaProbl where (idVisitaProbl = %1) and (cod_paz = %2)")
        .arg(id)
        .arg(patientCode);
}

std::optional<qint32> optionalNumber(const dao::Field &field)
{
    return field.isNull() ? std::nullopt : std::optional(qint32(field.number()));
}

QVariant optionalValue(const std::optional<qint32> &number)
{
    return number ? QVariant(*number) : QVariant();
}

void fill(dao::Recordset &row, const VisitDetail &visit)
{
    row.Fields(QStringLiteral("id_Probl")).setValue(optionalValue(visit.problem));
    writeDay(row.Fields(QStringLiteral("DataReg")), visit.date);
    if (visit.validity.isValid())
        writeDay(row.Fields(QStringLiteral("validita")), visit.validity);
    row.Fields(QStringLiteral("idtipo")).setValue(optionalValue(visit.type));
    row.Fields(QStringLiteral("SINTOMO"))
        .setValue(visit.symptom.isEmpty() ? QVariant() : QVariant(visit.symptom));
    for (std::size_t i = 0; i < textFields.size(); ++i)
        row.Fields(QString::fromLatin1(textFields[i])).setValue(storedText(visit.texts[i]));
}

VisitDetail detailFrom(dao::Recordset &row, qint32 id)
{
    VisitDetail visit;
    visit.id = id;
    visit.problem = optionalNumber(row.Fields(QStringLiteral("id_Probl")));
    visit.date = row.Fields(QStringLiteral("DataReg")).date().date();
    visit.validity = row.Fields(QStringLiteral("validita")).date().date();
    visit.type = optionalNumber(row.Fields(QStringLiteral("idtipo")));
    visit.symptom = row.Fields(QStringLiteral("SINTOMO")).text();
    for (std::size_t i = 0; i < textFields.size(); ++i)
        visit.texts[i] = row.Fields(QString::fromLatin1(textFields[i])).text();
    visit.written = lastWrite(row);
    return visit;
}

// However it is said that a visit is filed against no problem, it is the same.
bool wouldReplaceVisit(VisitDetail read, VisitDetail mine, VisitDetail stored)
{
    for (VisitDetail *const visit : {&read, &mine, &stored}) {
        if (visit->problem.value_or(noProblem) <= noProblem)
            visit->problem.reset();
    }
    return wouldReplace(contentsOf(read), contentsOf(mine), contentsOf(stored));
}

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

std::optional<VisitDetail> readVisit(dao::Database &clinical, qint32 patientCode, qint32 id)
{
    const auto row = clinical.OpenRecordset(byIdAndPatient(id, patientCode), dao::RecordsetType::Snapshot);
    return row->Eof() ? std::nullopt : std::optional(detailFrom(*row, id));
}

bool isDayTaken(dao::Database &clinical, qint32 patientCode, const VisitDetail &visit, QDate before)
{
    if (!visit.date.isValid() || (visit.id != 0 && visit.date == before))
        return false;
    // A visit may carry a time of day in rows that other programs wrote.
    const QString day = jet::slashedDate(visit.date);
    QString query =
        QStringLiteral("select * from VisitaProbl where (cod_paz=%1) and (datareg>=cdate('%2 0.0.0')) "
                       "and (datareg<=cdate('%2 23.59.59'))")
            .arg(patientCode)
            .arg(day);
    if (visit.id != 0)
        query += QStringLiteral(" and (idVisitaProbl <> %1)").arg(visit.id);
    return !clinical.OpenRecordset(query, dao::RecordsetType::Snapshot)->Eof();
}

bool isProblemGone(dao::Database &clinical, qint32 patientCode, const VisitDetail &visit)
{
    return visit.problem.value_or(noProblem) > noProblem
           && !hasProblem(clinical, patientCode, *visit.problem);
}

WriteResult saveVisit(WorkingState &state, VisitDetail &visit, VisitDetail &read)
{
    const bool isNew = visit.id == 0;
    qint32 id = visit.id;
    const WriteResult result = writeTogether(state, QStringLiteral("VISITAPROBL"), [&] {
        const auto row = state.clinical().OpenRecordset(isNew ? QStringLiteral("select * from VisitaProbl ")
                                                              : byIdAndPatient(id, state.header.patientCode));
        if (!isNew && row->Eof())
            return WriteResult::Vanished;
        if (isProblemGone(state.clinical(), state.header.patientCode, visit))
            return WriteResult::Refused;
        const VisitDetail stored = isNew ? VisitDetail() : detailFrom(*row, id);
        if (!isNew && wouldReplaceVisit(read, visit, stored)) {
            read = stored;
            return WriteResult::Changed;
        }
        if (isDayTaken(state.clinical(), state.header.patientCode, visit, stored.date))
            return WriteResult::Refused;
        if (isNew)
            id = nextKey(state.clinical(), QStringLiteral("VISITAPROBL"), QStringLiteral("IdVisitaProbl"));
        if ((isNew ? state.operations.Recordset_AddNew(*row) : state.operations.Recordset_Edit(*row)) != 0)
            return WriteResult::Failed;
        if (isNew) {
            row->Fields(QStringLiteral("cod_paz")).setValue(state.header.patientCode);
            row->Fields(QStringLiteral("IdVisitaProbl")).setValue(id);
        }
        state.sharedRows().writeCurrentPatientStamp(*row, isNew, QStringLiteral("DV"), state.uidAuthor);
        fill(*row, visit);
        return state.operations.Recordset_Update(*row) == 0 ? WriteResult::Done : WriteResult::Failed;
    });
    if (result == WriteResult::Done)
        visit.id = id;
    return result;
}

WriteResult deleteVisit(WorkingState &state, qint32 id, LastWrite &seen)
{
    return writeTogether(state, QStringLiteral("VISITAPROBL"), [&] {
        return deleteSharedRow(state, byIdAndPatient(id, state.header.patientCode), QStringLiteral("DV"),
                               seen);
    });
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
