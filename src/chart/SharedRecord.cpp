// SPDX-License-Identifier: Apache-2.0
#include "chart/SharedRecord.h"

#include "data/NextKey.h"

namespace clivara {

std::unique_ptr<dao::Recordset> openRecord(dao::Database &clinical, const RecordTable &table, qint32 id,
                                           std::optional<qint32> patientCode, dao::RecordsetType type)
{
    dao::Query query{QStringLiteral("select * from %1 where (%2 = [record])")
                         .arg(QLatin1String(table.name), QLatin1String(table.key)),
                     {{"record", id}}};
    if (patientCode) {
        query.sql += QStringLiteral(" and (cod_paz = [patient])");
        query.parameters.append({"patient", *patientCode});
    }
    return clinical.OpenRecordset(query, type);
}

qint32 beginRecord(WorkingState &state, dao::Recordset &row, const RecordTable &table, qint32 id)
{
    const bool isNew = id == 0;
    const auto key = QString::fromLatin1(table.key);
    if (isNew && table.newKey == NewKey::HighestPlusOne)
        id = nextKey(state.clinical(), QString::fromLatin1(table.name), key);
    if (isNew)
        state.operations.addNew(row);
    else
        state.operations.edit(row);
    if (isNew) {
        row.Fields(QStringLiteral("cod_paz")).setValue(state.header.patientCode);
        if (id != 0)
            row.Fields(key).setValue(id);
    }
    state.sharedRows().writeCurrentPatientStamp(row, isNew, QString::fromLatin1(table.section),
                                                state.uidAuthor);
    return id;
}

WriteResult deleteSharedRow(WorkingState &state, const RecordTable &table, qint32 id, LastWrite &seen)
{
    const auto row =
        openRecord(state.clinical(), table, id, state.header.patientCode, dao::RecordsetType::Dynaset);
    if (row->Eof())
        return WriteResult::Vanished;
    if (const LastWrite stored = lastWrite(*row); stored != seen) {
        seen = stored;
        return WriteResult::Changed;
    }
    state.operations.edit(*row);
    SharedRows shared = state.sharedRows();
    const QString uid = shared.ensureRecordUid(*row);
    row->Fields(QStringLiteral("sOwnerUid")).setValue(state.uidAuthor);
    state.operations.update(*row);
    shared.recordDeletion(state.clinical(), uid, QString::fromLatin1(table.section), state.uidAuthor);
    row->Delete();
    return WriteResult::Done;
}

} // namespace clivara
