// SPDX-License-Identifier: Apache-2.0
#include "stays/HomeCareRecords.h"

#include "data/NextKey.h"
#include "data/SqlText.h"
#include "host/working_state/ThreeWay.h"
#include "host/working_state/WorkingState.h"

#include <QHash>

namespace clivara {

namespace {

const auto sectionCode = QStringLiteral("DV"); // as all visits

QString byId(qint32 id)
{
    return QStringLiteral("select * from VisitaProbl where (idVisitaProbl = %1)").arg(id);
}

QString numberList(const QList<qint32> &numbers)
{
    QStringList texts;
    for (const qint32 number : numbers)
        texts.append(QString::number(number));
    return u'(' + texts.join(u',') + u')';
}

QList<qint32> allTypes(dao::Database &codes)
{
    QList<qint32> ids;
    for (const auto rows = codes.OpenRecordset(QStringLiteral("select IdTipo from TipoVisita"),
                                               dao::RecordsetType::Snapshot);
         !rows->Eof(); rows->MoveNext())
        ids.append(qint32(rows->Fields(QStringLiteral("IdTipo")).number()));
    return ids;
}

// Which visits are entries of home care, as a condition.
QString entryCondition(const QList<ServiceType> &services, const QList<qint32> &types)
{
    // What an ordinary visit of a removed type would hold, in a row of this kind is empty.
    QString bare =
        QStringLiteral("(not isnull(idtipo)) and (nz(id_Probl, 0) <= 0) and (nz(SINTOMO, '') = '')");
    for (const char *text : {"anamnesi", "esameob", "conclusioni", "pianificazione", "txtNote"})
        bare += QStringLiteral(" and (nz(%1, '') = '')").arg(QLatin1String(text));
    if (!types.isEmpty())
        bare += QStringLiteral(" and (not idtipo in %1)").arg(numberList(types));
    if (services.isEmpty())
        return u'(' + bare + u')';
    QList<qint32> ids;
    for (const ServiceType &service : services)
        ids.append(service.id);
    return QStringLiteral("((idtipo in %1) or (%2))").arg(numberList(ids), bare);
}

// All but what the type is called. An entry without type has none of its own number.
HomeCareEntry entryFrom(dao::Recordset &row)
{
    HomeCareEntry entry;
    entry.id = qint32(row.Fields(QStringLiteral("IdVisitaProbl")).number());
    entry.date = row.Fields(QStringLiteral("DataReg")).date().date();
    entry.validity = row.Fields(QStringLiteral("validita")).date().date();
    entry.type = qint32(row.Fields(QStringLiteral("idtipo")).number());
    entry.written = lastWrite(row);
    return entry;
}

} // namespace

QList<ServiceType> serviceTypes(dao::Database &codes)
{
    QList<ServiceType> types;
    const auto rows = codes.OpenRecordset(
        QStringLiteral("SELECT * from TipoVisita WHERE (CodiceReg <>'') order by descr_tipo"),
        dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext())
        types.append({qint32(rows->Fields(QStringLiteral("idtipo")).number()),
                      rows->Fields(QStringLiteral("descr_tipo")).text().trimmed(),
                      rows->Fields(QStringLiteral("codice")).text()});
    return types;
}

QList<HomeCareEntry> listHomeCare(dao::Database &clinical, dao::Database &codes, qint32 patientCode)
{
    const QList<ServiceType> services = serviceTypes(codes);
    QHash<qint32, QString> names;
    for (const ServiceType &service : services)
        names.insert(service.id, service.name);
    QList<HomeCareEntry> list;
    const auto rows = clinical.OpenRecordset(
        QStringLiteral(
            "SELECT IdVisitaProbl, DataReg, validita, idtipo, dLastModifiedDate, sAuthorUid FROM VISITAPROBL "
            "WHERE (cod_paz = %1) "
            "AND %2 Order By datareg desc, IdVisitaProbl desc")
            .arg(QString::number(patientCode), entryCondition(services, allTypes(codes))),
        dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        HomeCareEntry entry = entryFrom(*rows);
        const qint32 type = entry.type.value_or(0);
        const auto name = names.constFind(type);
        entry.isTypeKnown = name != names.constEnd();
        entry.typeName = entry.isTypeKnown ? *name : QStringLiteral("Tipo %1 (non più in elenco)").arg(type);
        list.append(entry);
    }
    return list;
}

bool isDuplicateEntry(const QList<HomeCareEntry> &list, const HomeCareEntry &entry)
{
    return std::any_of(list.begin(), list.end(), [&](const HomeCareEntry &other) {
        return other.id != entry.id && other.date == entry.date && other.type == entry.type;
    });
}

WriteResult saveHomeCare(WorkingState &state, HomeCareEntry &entry, HomeCareEntry &read)
{
    const bool isNew = entry.id == 0;
    qint32 id = entry.id;
    const WriteResult result = writeTogether(state, QStringLiteral("VISITAPROBL"), [&] {
        const auto row = state.clinical().OpenRecordset(
            isNew ? QStringLiteral("select * from visitaprobl ")
                  : QStringLiteral("select * from visitaprobl where (idvisitaprobl = %1) and (cod_paz = %2)")
                        .arg(id)
                        .arg(state.header.patientCode));
        if (!isNew && row->Eof())
            return WriteResult::Vanished;
        if (!isNew) {
            const HomeCareEntry stored = entryFrom(*row);
            if (wouldReplace(contentsOf(std::as_const(read)), contentsOf(std::as_const(entry)),
                             contentsOf(stored))) {
                read = stored;
                return WriteResult::Changed;
            }
        }
        if (isNew)
            id = nextKey(state.clinical(), QStringLiteral("visitaprobl"), QStringLiteral("idvisitaprobl"));
        if ((isNew ? state.operations.Recordset_AddNew(*row) : state.operations.Recordset_Edit(*row)) != 0)
            return WriteResult::Failed;
        if (isNew) {
            row->Fields(QStringLiteral("IdVisitaProbl")).setValue(id);
            row->Fields(QStringLiteral("cod_paz")).setValue(state.header.patientCode);
        }
        state.sharedRows().writeCurrentPatientStamp(*row, isNew, sectionCode, state.uidAuthor);
        writeDay(row->Fields(QStringLiteral("DataReg")), entry.date);
        writeDay(row->Fields(QStringLiteral("validita")), entry.validity);
        row->Fields(QStringLiteral("idtipo")).setValue(entry.type ? QVariant(*entry.type) : QVariant());
        return state.operations.Recordset_Update(*row) == 0 ? WriteResult::Done : WriteResult::Failed;
    });
    if (result == WriteResult::Done)
        entry.id = id;
    return result;
}

WriteResult deleteHomeCare(WorkingState &state, qint32 id, LastWrite &seen)
{
    return writeTogether(state, QStringLiteral("VISITAPROBL"),
                         [&] { return deleteSharedRow(state, byId(id), sectionCode, seen); });
}

} // namespace clivara
