// SPDX-License-Identifier: Apache-2.0
#include "data/Identity.h"

#include "dao/Dao.h"
#include "support/Log.h"
#include "support/Seams.h"
#include "values/JetValues.h"

#include <QUuid>

namespace clivara {

namespace {

// Whether a UID column holds texts, as practices that were moved between systems may have it.
bool holdsTexts(dao::Database &database, const QString &table, const QString &field)
{
    const QList<dao::ColumnInfo> columns = database.TableDefs()[table].Fields();
    return std::any_of(columns.begin(), columns.end(), [&](const dao::ColumnInfo &column) {
        return jet::sameText(column.name, field) && column.type != dao::FieldType::Guid;
    });
}

// What `read` finds in the row of the doctor with that UID; empty where there is none.
QString ofDoctor(const QString &uid, dao::Database &doctors, QString (*read)(dao::Recordset &row))
{
    const QString plain = normaliseUid(uid);
    try {
        const bool texts = holdsTexts(doctors, QStringLiteral("medici_gruppo"), QStringLiteral("idRowGuid"));
        const QVariant value = texts ? QVariant(plain) : QVariant(QUuid(plain));
        if (value.isNull())
            return {};
        const auto rows = doctors.OpenRecordset(
            {QStringLiteral("select * from medici_gruppo where idRowGuid=[uid]"), {{"uid", value}}});
        return rows->Eof() ? QString() : read(*rows);
    } catch (const dao::Error &) {
        return {};
    }
}

} // namespace

QString normaliseUid(const QString &text)
{
    QString plain = text.toLower();
    for (const QLatin1String part : {QLatin1String("{"), QLatin1String("}"), QLatin1String("guid")})
        plain.remove(part);
    return plain.trimmed();
}

QString formatUid(const QString &text, bool plain)
{
    const QString normalised = normaliseUid(text);
    return plain ? normalised : QLatin1Char('{') + normalised + QLatin1Char('}');
}

QString newUid(GuidSource &guids, bool plain)
{
    const QString guid = guids.newGuid();
    return plain ? normaliseUid(guid) : guid;
}

QString LeggiUidMedico(const QString &code, dao::Database *doctors, Log &log)
{
    log.write(QStringLiteral("   .LeggiUidMedico codMed=") + code);
    const auto number = jet::numberFromText(code);
    if (!doctors || !number)
        return {};
    try {
        const auto rows = doctors->OpenRecordset(
            {QStringLiteral("select * from medici_gruppo where (cod_smi=[doctor])"), {{"doctor", *number}}});
        const QString uid =
            rows->Eof() ? QString() : normaliseUid(rows->Fields(QStringLiteral("idRowGuid")).text());
        log.write(QStringLiteral("   .LeggiUidMedico UidUtente=") + uid);
        log.write(QStringLiteral("   .LeggiUidMedico end "));
        return uid;
    } catch (const dao::Error &) {
        return {};
    }
}

QString doctorFromUid(const QString &uid, dao::Database &doctors)
{
    return ofDoctor(uid, doctors,
                    [](dao::Recordset &row) { return row.Fields(QStringLiteral("Medico")).text(); });
}

QString doctorName(const QString &uid, dao::Database &doctors)
{
    return ofDoctor(uid, doctors, [](dao::Recordset &row) {
        const QString name =
            QStringLiteral("%1 %2")
                .arg(row.Fields(QStringLiteral("nome")).text(), row.Fields(QStringLiteral("cognome")).text())
                .simplified();
        return name.isEmpty() ? row.Fields(QStringLiteral("Medico")).text().trimmed() : name;
    });
}

PatientUids readPatientUids(qint32 patientCode, dao::Database &clinical)
{
    try {
        const auto rows = clinical.OpenRecordset(
            {QStringLiteral("select * from archivio where cod_paz=[patient]"), {{"patient", patientCode}}});
        if (rows->Eof())
            return {};
        const auto uid = [&](const QString &field) { return normaliseUid(rows->Fields(field).text()); };
        return {uid(QStringLiteral("idRowGuid")), uid(QStringLiteral("sPatientRecordUid")),
                uid(QStringLiteral("sOwnerUid"))};
    } catch (const dao::Error &) {
        return {};
    }
}

QString compactTimestamp(const QDateTime &date)
{
    return jet::formatDate(date, u"yyyymmddhhnnss");
}

} // namespace clivara
