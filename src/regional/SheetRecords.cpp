// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetRecords.h"

#include "chart/SharedWrites.h"
#include "chart/WorkingState.h"

namespace clivara {

namespace {

const auto table = QStringLiteral("AIR15_7");

dao::Query byNumber(int type, qint32 number)
{
    return {QStringLiteral("select * from AIR15_7 where (idTipo=[kind]) and (idScheda = [sheet])"),
            {{"kind", type}, {"sheet", number}}};
}

dao::Field field(dao::Recordset &rows, const char *name)
{
    return rows.Fields(QString::fromLatin1(name));
}

StoredSheet sheetOf(dao::Recordset &rows)
{
    StoredSheet sheet;
    sheet.number = qint32(field(rows, "idScheda").number());
    sheet.type = int(field(rows, "idTipo").number());
    readFields(rows, sheet);
    return sheet;
}

bool isOf(dao::Recordset &rows, qint32 patient)
{
    return qint32(field(rows, "cod_paz").number()) == patient;
}

} // namespace

QList<StoredSheet> listSheets(dao::Database &clinical, qint32 patient)
{
    const auto rows =
        clinical.OpenRecordset({QStringLiteral("select * from AIR15_7 where (cod_paz = [patient]) "
                                               "Order By datareg desc, idTipo desc, idScheda desc"),
                                {{"patient", patient}}},
                               dao::RecordsetType::Snapshot);
    QList<StoredSheet> sheets;
    for (; !rows->Eof(); rows->MoveNext())
        sheets.append(sheetOf(*rows));
    return sheets;
}

std::optional<StoredSheet> readSheet(dao::Database &clinical, qint32 patient, int type, qint32 number)
{
    const auto rows = clinical.OpenRecordset(byNumber(type, number), dao::RecordsetType::Snapshot);
    if (rows->Eof() || !isOf(*rows, patient))
        return std::nullopt;
    return sheetOf(*rows);
}

qint32 nextSheetNumber(dao::Database &clinical, int type)
{
    const auto rows = clinical.OpenRecordset(
        {QStringLiteral("SELECT Max(idScheda) AS maxId FROM AIR15_7 where (idTipo=[kind])"),
         {{"kind", type}}},
        dao::RecordsetType::Snapshot);
    return qint32(rows->Eof() ? 0 : field(*rows, "maxId").number()) + 1; // Null is 0
}

WriteResult addSheet(WorkingState &state, StoredSheet &sheet)
{
    qint32 number = sheet.number;
    const WriteResult result = writeTogether(state, table, [&]() -> WriteResult {
        dao::Database &clinical = state.clinical();
        if (number < 1 || !clinical.OpenRecordset(byNumber(sheet.type, number))->Eof())
            number = nextSheetNumber(clinical, sheet.type);
        const auto rows = clinical.OpenRecordset(QStringLiteral("select * from AIR15_7 "));
        state.operations.addNew(*rows);
        field(*rows, "idScheda").setValue(number);
        field(*rows, "cod_paz").setValue(state.header.patientCode);
        field(*rows, "idTipo").setValue(sheet.type);
        writeFields(*rows, sheet);
        state.operations.update(*rows);
        return WriteResult::Done;
    });
    if (result == WriteResult::Done)
        sheet.number = number;
    return result;
}

SaveResult<StoredSheet> changeSheet(WorkingState &state, const StoredSheet &sheet, const StoredSheet &read)
{
    StoredSheet stored;
    const WriteResult result = writeTogether(state, table, [&]() -> WriteResult {
        const auto rows = state.clinical().OpenRecordset(byNumber(sheet.type, sheet.number));
        if (rows->Eof() || !isOf(*rows, state.header.patientCode))
            return WriteResult::Vanished;
        stored = sheetOf(*rows);
        if (stored != read && stored != sheet)
            return WriteResult::Changed;
        state.operations.edit(*rows);
        writeFields(*rows, sheet);
        state.operations.update(*rows);
        return WriteResult::Done;
    });
    return {result, stored};
}

WriteResult deleteSheet(WorkingState &state, StoredSheet &seen)
{
    return writeTogether(state, table, [&]() -> WriteResult {
        const auto rows = state.clinical().OpenRecordset(byNumber(seen.type, seen.number));
        if (rows->Eof() || !isOf(*rows, state.header.patientCode))
            return WriteResult::Vanished;
        if (const StoredSheet stored = sheetOf(*rows); stored != seen) {
            seen = stored;
            return WriteResult::Changed;
        }
        rows->Delete();
        return WriteResult::Done;
    });
}

} // namespace clivara
