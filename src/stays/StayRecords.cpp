// SPDX-License-Identifier: Apache-2.0
#include "stays/StayRecords.h"

#include "values/JetValues.h"

namespace clivara {

namespace {

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

void addHospital(WorkingState &state, const QString &name)
{
    const auto table = state.clinical().OpenRecordset(QStringLiteral("sedericov"));
    state.operations.addNew(*table);
    table->Fields(QStringLiteral("denominazione")).setValue(name);
    state.operations.update(*table);
}

} // namespace

QList<Stay> listStays(dao::Database &clinical, qint32 patientCode)
{
    QList<Stay> stays;
    const auto rows = clinical.OpenRecordset(
        {QStringLiteral(
             "select * from ricoveri2 where (cod_paz = [patient]) Order By data_accesso, idRicovero"),
         {{"patient", patientCode}}},
        dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext())
        stays.append(recordFrom<Stay>(*rows));
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

SaveResult<Stay> saveStay(WorkingState &state, Stay &stay, const Stay &read, bool extendList)
{
    const auto addToList = [&] {
        if (extendList && nameInList(hospitals(state.clinical()), stay.hospital).isEmpty())
            addHospital(state, stay.hospital);
    };
    return saveShared<Stay>(state, stay, read, {.alsoWrite = addToList});
}

} // namespace clivara
