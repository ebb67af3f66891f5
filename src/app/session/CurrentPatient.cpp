// SPDX-License-Identifier: Apache-2.0
#include "app/session/CurrentPatient.h"

#include "app/practice/Practice.h"
#include "app/practice/Regions.h"
#include "app/session/WorkingDoctor.h"
#include "support/SettingsStore.h"

#include <QDir>
#include <algorithm>

namespace orvale {

bool selectPatient(clivara::SettingsStore &settings, dao::Database &clinical, qint32 code)
{
    const auto rows = clinical.OpenRecordset(
        {QStringLiteral("SELECT ESENZ_PAT, ESENZ_INV FROM archivio WHERE cod_paz = [patient]"),
         {{"patient", code}}},
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

void prepareSettings(clivara::SettingsStore &settings, Practice &practice)
{
    WorkingDoctor(settings, practice).write(settings);
    prepareRegion(settings, practice);
}

void prepareRegion(clivara::SettingsStore &settings, const Practice &practice)
{
    const QString code = practice.property(QStringLiteral("region"));
    const auto known = std::find_if(regions().begin(), regions().end(),
                                    [&](const Region &region) { return region.code == code; });
    settings.write(QStringLiteral("CODICE REGIONE"), code);
    settings.write(QStringLiteral("REGIONE"), known == regions().end() ? QString() : known->name.toUpper());
}

void prepareWorkFolder(clivara::SettingsStore &settings, const Practice &practice)
{
    const QDir folder(QDir(practice.workstationFolder()).filePath(QStringLiteral("work")));
    folder.mkpath(QStringLiteral("logOrvale"));
    settings.write(QStringLiteral("ORVALE_WORK"), folder.absolutePath());
}

} // namespace orvale
