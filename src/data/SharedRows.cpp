// SPDX-License-Identifier: Apache-2.0
#include "data/SharedRows.h"

#include "data/Identity.h"
#include "data/RecordsetOperations.h"
#include "support/Clock.h"
#include "support/Log.h"
#include "support/SettingsStore.h"
#include "values/JetValues.h"

namespace clivara {

namespace {

constexpr qint16 yes = -1;

void set(dao::Recordset &recordset, const char *field, const QVariant &value)
{
    recordset.Fields(QString::fromLatin1(field)).setValue(value);
}

std::optional<qint32> patientCode(const QString &text)
{
    const auto number = jet::numberFromText(text);
    const auto code = number ? jet::toLong(*number) : std::nullopt;
    return code && *code > 0 ? code : std::nullopt;
}

} // namespace

qint32 SharedRows::patientOf(dao::Recordset &recordset) const
{
    if (m_context.patientCode > 0)
        return m_context.patientCode;
    if (const auto chosen = patientCode(m_context.settings.text(QStringLiteral("CODICE PAZIENTE"))))
        return *chosen;
    try {
        return patientCode(recordset.Fields(QStringLiteral("COD_PAZ")).text()).value_or(-1);
    } catch (const dao::Error &) {
        return -1; // a row that belongs to no patient
    }
}

QString SharedRows::doctorUid()
{
    const QString found =
        LeggiUidMedico(m_context.settings.text(QStringLiteral("medicoP")), m_context.doctors, m_context.log);
    return found.isEmpty() ? normaliseUid(m_context.settings.text(QStringLiteral("uidMedicoP"))) : found;
}

QString SharedRows::CheckOwnerValue(dao::Recordset &recordset, OwnerFallback fallback)
{
    const QString doctor = fallback == OwnerFallback::WorkingDoctor ? doctorUid() : QString();
    const qint32 patient = patientOf(recordset);
    QString owner;
    if (patient > 0 && m_context.clinical)
        owner = readPatientUids(patient, *m_context.clinical).owner;
    if (owner.isEmpty())
        owner = doctor;
    if (owner.isEmpty())
        m_context.log.write(QStringLiteral("CheckOwnerValue - Impossibile recuperare OwnerID"));
    return owner;
}

QString SharedRows::rowUid(dao::Recordset &recordset, bool isNew)
{
    QString uid = isNew ? QString() : normaliseUid(recordset.Fields(QStringLiteral("idRowGuid")).text());
    if (uid.isEmpty()) {
        uid = newUid(m_context.guids, true);
        set(recordset, "idRowGuid", uid);
    }
    return uid;
}

QString SharedRows::writePatientStamp(dao::Recordset &recordset, bool isNew, const PatientStamp &stamp)
{
    if (isNew)
        set(recordset, "sRecordUid", normaliseUid(stamp.key));
    const QString uid = rowUid(recordset, isNew);
    if (isNew) {
        set(recordset, "sOwnerUid", stamp.owner);
        set(recordset, "dCreationDate", stamp.created);
        set(recordset, "sCodSezCli", stamp.section);
        set(recordset, "sPatientUid", stamp.patientUid);
        set(recordset, "sPatientRecordOwnerUid", stamp.patientOwnerUid);
    }
    set(recordset, "dLastModifiedDate", stamp.modified);
    set(recordset, "sAuthorUid", stamp.author);
    return uid;
}

QString SharedRows::ensureRecordUid(dao::Recordset &recordset)
{
    QString uid = normaliseUid(recordset.Fields(QStringLiteral("sRecordUid")).text());
    if (uid.isEmpty()) {
        uid = newUid(m_context.guids, true);
        set(recordset, "sRecordUid", uid);
    }
    return uid;
}

QString SharedRows::writeCurrentPatientStamp(dao::Recordset &recordset, bool isNew, const QString &section,
                                             const QString &author)
{
    PatientStamp stamp;
    stamp.author = author;
    stamp.modified = m_context.clock.local();
    if (!isNew) {
        ensureRecordUid(recordset);
        return writePatientStamp(recordset, false, stamp);
    }
    stamp.key = newUid(m_context.guids, true);
    stamp.owner = CheckOwnerValue(recordset, m_context.settings.isOn(QStringLiteral("MIR_ATTIVO"))
                                                 ? OwnerFallback::WorkingDoctor
                                                 : OwnerFallback::None);
    stamp.created = stamp.modified;
    stamp.section = section;
    if (m_context.clinical) {
        const PatientUids uids = readPatientUids(patientOf(recordset), *m_context.clinical);
        stamp.patientUid = uids.row;
        stamp.patientOwnerUid = uids.owner;
    }
    return writePatientStamp(recordset, true, stamp);
}

QString SharedRows::writePlainStamp(dao::Recordset &recordset, bool isNew, QString &owner,
                                    const QString &author, const QDateTime &created,
                                    const QDateTime &modified, OwnerFallback fallback)
{
    owner = CheckOwnerValue(recordset, fallback);
    if (isNew)
        set(recordset, "dCreationDate", created);
    const QString uid = rowUid(recordset, isNew);
    set(recordset, "sOwnerUid", owner);
    set(recordset, "dLastModifiedDate", modified);
    set(recordset, "sAuthorUid", author.isEmpty() ? owner : author);
    return uid;
}

// Opens the edit buffer on the row with the key, or on a new one.
void SharedRows::begin(dao::Recordset &recordset, qint16 &isNew, const QString &key)
{
    if (!isNew) {
        recordset.Seek(QStringLiteral("="), key);
        if (!recordset.NoMatch()) {
            m_context.operations.edit(recordset);
            return;
        }
        isNew = yes;
    }
    m_context.operations.addNew(recordset);
}

QString SharedRows::StampPatientRow(dao::Recordset &recordset, qint16 &isNew, const PatientStamp &stamp)
{
    const QString key = normaliseUid(stamp.key.trimmed());
    if (key.isEmpty())
        return {};
    try {
        begin(recordset, isNew, key);
        const QString uid = writePatientStamp(recordset, isNew != 0, stamp);
        m_context.operations.update(recordset);
        return uid;
    } catch (const dao::Error &) {
        return {};
    }
}

QString SharedRows::recordDeletion(dao::Database &database, const QString &recordUid,
                                   const QString &tableCode, const QString &author)
{
    const QString key = normaliseUid(recordUid.trimmed());
    if (key.isEmpty())
        return {};
    const auto deletions = database.OpenRecordset(QStringLiteral("DELETIONS"), dao::RecordsetType::Table);
    deletions->setIndex(QStringLiteral("sRecordUid"));
    qint16 isNew = 0;
    begin(*deletions, isNew, key);
    if (isNew)
        set(*deletions, "sRecordUid", key);
    set(*deletions, "sTableCode", tableCode);
    const QDateTime now = m_context.clock.local();
    QString owner;
    const QString uid = writePlainStamp(*deletions, isNew != 0, owner, author, now, now);
    m_context.operations.update(*deletions);
    return uid;
}

} // namespace clivara
