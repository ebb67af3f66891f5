// SPDX-License-Identifier: Apache-2.0
#include "app/CurrentPatient.h"

#include "app/Practice.h"
#include "support/SettingsStore.h"
#include "values/JetValues.h"

#include <QDir>

namespace orvale {

bool selectPatient(clivara::SettingsStore &settings, dao::Database &clinical, qint32 code)
{
    const auto rows = clinical.OpenRecordset(
        QStringLiteral("SELECT ESENZ_PAT, ESENZ_INV FROM archivio WHERE cod_paz = %1").arg(code),
        dao::RecordsetType::Snapshot);
    if (rows->Eof())
        return false;
    settings.write(QStringLiteral("CODICE PAZIENTE"), code);
    settings.write(QStringLiteral("ESENZ_PAT"), rows->Fields(0).text().trimmed());
    settings.write(QStringLiteral("ESENZ_INV"), rows->Fields(1).text().trimmed());
    return true;
}

void deselectPatient(clivara::SettingsStore &settings)
{
    settings.write(QStringLiteral("CODICE PAZIENTE"), -1);
    settings.write(QStringLiteral("ESENZ_PAT"), QString());
    settings.write(QStringLiteral("ESENZ_INV"), QString());
}

void prepareDoctor(clivara::SettingsStore &settings, Practice &practice)
{
    const FirstDoctor first = practice.firstDoctor();
    const auto isKnown = [&](const QString &code) {
        const auto number = clivara::jet::numberFromText(code);
        const auto key = number ? clivara::jet::toLong(*number) : std::nullopt;
        if (!key)
            return false;
        const auto rows = practice.environment().doctors->OpenRecordset(
            QStringLiteral("SELECT cod_smi FROM medici_gruppo WHERE cod_smi = %1").arg(*key),
            dao::RecordsetType::Snapshot);
        return !rows->Eof();
    };
    for (const char *key : {"medicoP", "medicoT", "medico_corrente"}) {
        const QString name = QString::fromLatin1(key);
        if (!isKnown(settings.text(name)))
            settings.write(name, first.code);
    }
    const QString region = QStringLiteral("CODICE REGIONE");
    if (settings.text(region).trimmed().isEmpty())
        settings.write(region, first.region);
}

void prepareWorkFolder(clivara::SettingsStore &settings, const Practice &practice)
{
    const QDir folder(QDir(practice.workstationFolder()).filePath(QStringLiteral("work")));
    folder.mkpath(QStringLiteral("logOrvale"));
    settings.write(QStringLiteral("ORVALE_WORK"), folder.absolutePath());
}

} // namespace orvale
