// SPDX-License-Identifier: Apache-2.0
#include "data/Identity.h"

#include "dao/Dao.h"
#include "support/Log.h"
#include "support/Seams.h"
#include "values/JetValues.h"

#include <QRegularExpression>

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
    static const QRegularExpression digits(QStringLiteral("^[0-9a-f-]+$"));
    if (!digits.match(plain).hasMatch())
        return {};
    try {
        const bool texts = holdsTexts(doctors, QStringLiteral("medici_gruppo"), QStringLiteral("idRowGuid"));
        const auto rows = doctors.OpenRecordset(
            texts ? QStringLiteral("select * from medici_gruppo where idRowGuid='%1'").arg(plain)
                  : QStringLiteral("SELECT * From medici_gruppo WHERE (medici_gruppo.idRowGuid={guid {%1}}) ")
                        .arg(plain));
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
    // The code goes into the query as the number it must be, and as nothing else.
    if (!doctors || !jet::numberFromText(code))
        return {};
    try {
        const auto rows = doctors->OpenRecordset(QStringLiteral("select * from medici_gruppo where (cod_smi=")
                                                 + code + QStringLiteral(")"));
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
            QStringLiteral("select * from archivio where cod_paz=%1").arg(patientCode));
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
