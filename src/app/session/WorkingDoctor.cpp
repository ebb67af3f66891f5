// SPDX-License-Identifier: Apache-2.0
#include "app/session/WorkingDoctor.h"

#include "app/practice/Practice.h"
#include "support/SettingsStore.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <algorithm>

namespace orvale {

namespace {

// The setting that says to which practice the doctors in the user's settings belong.
const QLatin1String settingsPractice("STUDIO CORRENTE");

// The user's setting with the doctor who was chosen in a practice, by practiceName(): keys do not tell case
// apart, paths do.
QString rememberedKey(const QString &practice)
{
    return QStringLiteral("MEDICO DELLO STUDIO ") + practice;
}

QString practiceName(const Practice &practice)
{
    const QString folder = QFileInfo(practice.path()).canonicalFilePath(); // empty for a server's address
    const QByteArray path = (folder.isEmpty() ? practice.path() : folder).toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(path, QCryptographicHash::Sha1).toHex().left(16));
}

} // namespace

QList<GroupDoctor> groupDoctors(Practice &practice)
{
    QList<GroupDoctor> doctors;
    const auto rows = practice.environment().doctors->OpenRecordset(
        QStringLiteral(
            "SELECT cod_smi, cognome, nome, idRowGuid FROM medici_gruppo WHERE cod_smi IS NOT NULL ORDER BY "
            "cognome, nome, cod_smi"),
        dao::RecordsetType::Snapshot);
    for (; !rows->Eof(); rows->MoveNext()) {
        const QString name =
            (rows->Fields(1).text().trimmed() + u' ' + rows->Fields(2).text().trimmed()).trimmed();
        doctors.append({rows->Fields(0).text(), name, rows->Fields(3).text()});
    }
    QHash<QString, int> namesakes;
    for (const GroupDoctor &doctor : std::as_const(doctors))
        ++namesakes[doctor.name.toCaseFolded()];
    for (GroupDoctor &doctor : doctors) {
        if (doctor.name.isEmpty())
            doctor.name = QStringLiteral("medico %1").arg(doctor.code);
        else if (namesakes.value(doctor.name.toCaseFolded()) > 1)
            doctor.name += QStringLiteral(" (codice %1)").arg(doctor.code);
    }
    return doctors;
}

WorkingDoctor::WorkingDoctor(clivara::SettingsStore &user, Practice &practice)
    : m_user(user)
    , m_practice(practiceName(practice))
    , m_group(groupDoctors(practice))
{
    const QString owner = user.text(settingsPractice);
    m_chosen = take(user.text(rememberedKey(m_practice)));
    if (!m_chosen
        && !((owner.isEmpty() || owner == m_practice) && take(user.text(QStringLiteral("medicoP")))))
        take(practice.firstDoctor());
    m_chosen = m_chosen || m_group.size() < 2;
}

bool WorkingDoctor::take(const QString &code)
{
    const auto doctor = std::find_if(m_group.cbegin(), m_group.cend(),
                                     [&](const GroupDoctor &each) { return each.code == code.trimmed(); });
    if (doctor == m_group.cend())
        return false;
    m_current = *doctor;
    return true;
}

void WorkingDoctor::choose(const QString &code)
{
    if (!take(code))
        return;
    m_chosen = true;
    m_user.write(rememberedKey(m_practice), m_current.code);
}

void WorkingDoctor::write(clivara::SettingsStore &settings) const
{
    for (const char *key : {"medicoP", "medicoT", "medico_corrente", "MEDICO"})
        settings.write(QString::fromLatin1(key), m_current.code);
    settings.write(QStringLiteral("uidMedicoP"), m_current.uid);
    settings.write(settingsPractice, m_practice);
}

} // namespace orvale
