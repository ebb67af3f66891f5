// SPDX-License-Identifier: Apache-2.0
#include "stays/HomeCareRecords.h"

#include "chart/ThreeWay.h"
#include "chart/WorkingState.h"
#include "data/NextKey.h"
#include "data/SqlText.h"

#include <QHash>

namespace clivara {

namespace {

const auto sectionCode = QStringLiteral("DV"); // as all visits

QString byIdAndPatient(const WorkingState &state, qint32 id)
{
    return QStringLiteral("select * from visitaprobl where (idvisitaprobl = %1) and (cod_paz = %2)")
        .arg(id)
        .arg(state.header.patientCode);
}

// All but what the type is called.
HomeCareEntry entryFrom(dao::Recordset &row)
{
    HomeCareEntry entry;
    entry.id = qint32(row.Fields(QStringLiteral("IdVisitaProbl")).number());
    entry.date = row.Fields(QStringLiteral("DataReg")).date().date();
    entry.validity = row.Fields(QStringLiteral("validita")).date().date();
    const dao::Field type = row.Fields(QStringLiteral("idtipo"));
    entry.type = type.isNull() ? std::nullopt : std::optional(qint32(type.number()));
    entry.written = lastWrite(row);
    return entry;
}

QStringList contentsOfVisit(dao::Recordset &row)
{
    const std::pair<const char *, const char *> texts[]{
        {"SINTOMO", "Sintomo"},
        {"anamnesi", "Anamnesi"},
        {"esameob", "Esame obiettivo"},
        {"conclusioni", "Conclusioni"},
        {"pianificazione", "Pianificazione"},
        {"txtNote", "Note"},
    };
    QStringList contents;
    for (const auto &[field, caption] : texts) {
        if (!row.Fields(QLatin1String(field)).text().trimmed().isEmpty())
            contents.append(QLatin1String(caption));
    }
    if (row.Fields(QStringLiteral("id_Probl")).number() > 0)
        contents.append(QStringLiteral("Problema associato"));
    return contents;
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
    QHash<qint32, QString> names;
    QStringList types;
    for (const ServiceType &service : serviceTypes(codes)) {
        names.insert(service.id, service.name);
        types.append(QString::number(service.id));
    }
    QList<HomeCareEntry> list;
    if (types.isEmpty())
        return list;
    const auto rows = clinical.OpenRecordset(
        QStringLiteral(
            "SELECT IdVisitaProbl, DataReg, validita, idtipo, dLastModifiedDate, sAuthorUid FROM VISITAPROBL "
            "WHERE (cod_paz = %1) AND (idtipo in (%2)) Order By datareg desc, IdVisitaProbl desc")
            .arg(QString::number(patientCode), types.join(u',')),
        dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        HomeCareEntry entry = entryFrom(*rows);
        entry.typeName = names.value(*entry.type);
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
        const auto row = state.clinical().OpenRecordset(isNew ? QStringLiteral("select * from visitaprobl ")
                                                              : byIdAndPatient(state, id));
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
        if (isDuplicateEntry(listHomeCare(state.clinical(), state.codes(), state.header.patientCode), entry))
            return WriteResult::Refused;
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

QStringList visitContents(dao::Database &clinical, qint32 id)
{
    const auto row =
        clinical.OpenRecordset(QStringLiteral("select * from VisitaProbl where (idVisitaProbl = %1)").arg(id),
                               dao::RecordsetType::Snapshot);
    return row->Eof() ? QStringList() : contentsOfVisit(*row);
}

WriteResult deleteHomeCare(WorkingState &state, qint32 id, LastWrite &seen, QStringList &told)
{
    return writeTogether(state, QStringLiteral("VISITAPROBL"), [&] {
        const QString query = byIdAndPatient(state, id);
        const auto row = state.clinical().OpenRecordset(query, dao::RecordsetType::Snapshot);
        if (!row->Eof()) {
            const QStringList contents = contentsOfVisit(*row);
            if (contents != told) {
                told = contents;
                seen = lastWrite(*row);
                return WriteResult::Changed;
            }
        }
        return deleteSharedRow(state, query, sectionCode, seen);
    });
}

} // namespace clivara
