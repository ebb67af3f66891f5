// SPDX-License-Identifier: Apache-2.0
#include "stays/HomeCareRecords.h"

#include <QHash>

namespace clivara {

namespace {

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
    QList<dao::Parameter> values{{"patient", patientCode}};
    for (const ServiceType &service : serviceTypes(codes)) {
        names.insert(service.id, service.name);
        const auto name = QStringLiteral("type%1").arg(types.size());
        types.append(u'[' + name + u']');
        values.append({name, service.id});
    }
    QList<HomeCareEntry> list;
    if (types.isEmpty())
        return list;
    const auto rows = clinical.OpenRecordset(
        {QStringLiteral(
             "SELECT IdVisitaProbl, DataReg, validita, idtipo, dLastModifiedDate, sAuthorUid FROM "
             "VISITAPROBL "
             "WHERE (cod_paz = [patient]) AND (idtipo in (%1)) Order By datareg desc, IdVisitaProbl desc")
             .arg(types.join(u',')),
         values},
        dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        HomeCareEntry entry = recordFrom<HomeCareEntry>(*rows);
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

SaveResult<HomeCareEntry> saveHomeCare(WorkingState &state, HomeCareEntry &entry, const HomeCareEntry &read)
{
    const auto isOnlyOne = [&](const HomeCareEntry &) {
        return !isDuplicateEntry(listHomeCare(state.clinical(), state.codes(), state.header.patientCode),
                                 entry);
    };
    return saveShared<HomeCareEntry>(state, entry, read, {.isAllowed = isOnlyOne});
}

QStringList visitContents(dao::Database &clinical, qint32 id)
{
    const auto row = openRecord(clinical, HomeCareEntry::table, id);
    return row->Eof() ? QStringList() : contentsOfVisit(*row);
}

WriteResult deleteHomeCare(WorkingState &state, qint32 id, LastWrite &seen, QStringList &told)
{
    const RecordTable &table = HomeCareEntry::table;
    return writeTogether(state, QString::fromLatin1(table.name), [&]() -> WriteResult {
        const auto row = openRecord(state.clinical(), table, id, state.header.patientCode);
        if (!row->Eof()) {
            const QStringList contents = contentsOfVisit(*row);
            if (contents != told) {
                told = contents;
                seen = lastWrite(*row);
                return WriteResult::Changed;
            }
        }
        return deleteSharedRow(state, table, id, seen);
    });
}

} // namespace clivara
