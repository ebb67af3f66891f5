// SPDX-License-Identifier: Apache-2.0
#include "data/Identity.h"

#include "data/engine/Dao.h"
#include "support/Log.h"
#include "support/Seams.h"
#include "values/JetValues.h"

namespace clivara {

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

} // namespace clivara
