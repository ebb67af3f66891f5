// SPDX-License-Identifier: Apache-2.0
#include "stays/StayRecords.h"

#include "chart/ThreeWay.h"
#include "chart/WorkingState.h"
#include "data/SqlText.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

const auto sectionCode = QStringLiteral("DR");

QString byId(qint32 id)
{
    return QStringLiteral("select * from ricoveri2 where idRicovero = %1").arg(id);
}

Stay stayFrom(dao::Recordset &row)
{
    Stay stay;
    stay.id = qint32(row.Fields(QStringLiteral("idRicovero")).number());
    stay.admitted = row.Fields(QStringLiteral("data_accesso")).date().date();
    stay.discharged = row.Fields(QStringLiteral("data_fineric")).date().date();
    stay.hospital = row.Fields(QStringLiteral("sede")).text();
    stay.ward = row.Fields(QStringLiteral("reparto")).text();
    stay.written = lastWrite(row);
    return stay;
}

QStringList names(dao::Database &database, const QString &query, const QString &field)
{
    QStringList list;
    for (const auto rows = database.OpenRecordset(query, dao::RecordsetType::Snapshot); !rows->Eof();
         rows->MoveNext()) {
        const QString name = rows->Fields(field).text().trimmed();
        if (!name.isEmpty())
            list.append(name);
    }
    return list;
}

bool addHospital(WorkingState &state, const QString &name)
{
    const auto table = state.clinical().OpenRecordset(QStringLiteral("select * from sedericov "));
    if (state.operations.Recordset_AddNew(*table) != 0)
        return false;
    table->Fields(QStringLiteral("denominazione")).setValue(name);
    return state.operations.Recordset_Update(*table) == 0;
}

} // namespace

QList<Stay> listStays(dao::Database &clinical, qint32 patientCode)
{
    QList<Stay> stays;
    const auto rows = clinical.OpenRecordset(
        QStringLiteral("select * from ricoveri2 where (cod_paz = %1) Order By data_accesso, idRicovero")
            .arg(patientCode),
        dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext())
        stays.append(stayFrom(*rows));
    return stays;
}

bool isNewestStay(const QList<Stay> &stays, const Stay &stay)
{
    return std::none_of(stays.begin(), stays.end(), [&](const Stay &other) {
        const bool isLater = other.admitted > stay.admitted
                             || (other.admitted == stay.admitted && stay.id != 0 && other.id > stay.id);
        return other.id != stay.id && other.admitted.isValid() && isLater;
    });
}

std::optional<Stay> readStay(dao::Database &clinical, qint32 id)
{
    const auto row = clinical.OpenRecordset(byId(id), dao::RecordsetType::Snapshot);
    return row->Eof() ? std::nullopt : std::optional(stayFrom(*row));
}

QStringList hospitals(dao::Database &clinical)
{
    return names(clinical, QStringLiteral("select * from sedericov order by denominazione"),
                 QStringLiteral("denominazione"));
}

QStringList wards(dao::Database &codes)
{
    return names(codes, QStringLiteral("select * from reparth order by tipo"), QStringLiteral("Tipo"));
}

QString nameInList(const QStringList &names, const QString &typed)
{
    const QString wanted = typed.trimmed();
    const auto found = std::find_if(names.begin(), names.end(),
                                    [&](const QString &name) { return jet::sameText(name, wanted); });
    return found == names.end() ? QString() : *found;
}

WriteResult saveStay(WorkingState &state, Stay &stay, Stay &read, bool extendList)
{
    const bool isNew = stay.id == 0;
    qint32 id = stay.id;
    const WriteResult result = writeTogether(state, QStringLiteral("ricoveri2"), [&] {
        const auto row =
            state.clinical().OpenRecordset(isNew ? QStringLiteral("select * from ricoveri2") : byId(stay.id));
        if (!isNew && row->Eof())
            return WriteResult::Vanished;
        if (!isNew) {
            const Stay stored = stayFrom(*row);
            if (wouldReplace(contentsOf(std::as_const(read)), contentsOf(std::as_const(stay)),
                             contentsOf(stored))) {
                read = stored;
                return WriteResult::Changed;
            }
        }
        if (extendList && nameInList(hospitals(state.clinical()), stay.hospital).isEmpty()
            && !addHospital(state, stay.hospital))
            return WriteResult::Failed;
        if ((isNew ? state.operations.Recordset_AddNew(*row) : state.operations.Recordset_Edit(*row)) != 0)
            return WriteResult::Failed;
        if (isNew)
            row->Fields(QStringLiteral("cod_paz")).setValue(state.header.patientCode);
        state.sharedRows().writeCurrentPatientStamp(*row, isNew, sectionCode, state.uidAuthor);
        writeDay(row->Fields(QStringLiteral("data_accesso")), stay.admitted);
        writeDay(row->Fields(QStringLiteral("data_fineric")), stay.discharged);
        row->Fields(QStringLiteral("sede")).setValue(stay.hospital);
        row->Fields(QStringLiteral("reparto")).setValue(stay.ward);
        if (state.operations.Recordset_Update(*row) != 0)
            return WriteResult::Failed;
        if (isNew)
            id = qint32(row->LastAutoNumber());
        return WriteResult::Done;
    });
    if (result == WriteResult::Done)
        stay.id = id;
    return result;
}

WriteResult deleteStay(WorkingState &state, qint32 id, LastWrite &seen)
{
    return writeTogether(state, QStringLiteral("ricoveri2"),
                         [&] { return deleteSharedRow(state, byId(id), sectionCode, seen); });
}

} // namespace clivara
