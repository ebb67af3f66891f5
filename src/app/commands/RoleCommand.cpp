// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"
#include "app/commands/Commands.h"
#include "app/practice/Schema.h"

namespace orvale {

namespace {

// What a workstation may do in the database of a practice: read and write rows. A role of that name is made
// unless there is one; doctors' accounts are its members. It is for the practice's owner to run, and can be
// run again.
const char *const script =
    R"sql(-- Permessi delle postazioni: leggono e scrivono le righe, non cambiano le tabelle.
-- Da eseguire nel database dell'archivio come suo proprietario; si può ripetere.
BEGIN;
DO $$
BEGIN
    IF NOT EXISTS (SELECT 1 FROM pg_roles WHERE rolname = %1) THEN
        CREATE ROLE %2 NOLOGIN;
    END IF;
    EXECUTE format('REVOKE ALL ON DATABASE %I FROM PUBLIC', current_database());
    EXECUTE format('GRANT CONNECT ON DATABASE %I TO %I', current_database(), %1);
END $$;
GRANT USAGE ON SCHEMA jet, %3 TO %2;
GRANT SELECT, INSERT, UPDATE, DELETE ON ALL TABLES IN SCHEMA %3 TO %2;
GRANT USAGE, SELECT, UPDATE ON ALL SEQUENCES IN SCHEMA %3 TO %2;
ALTER DEFAULT PRIVILEGES IN SCHEMA %3
    GRANT SELECT, INSERT, UPDATE, DELETE ON TABLES TO %2;
ALTER DEFAULT PRIVILEGES IN SCHEMA %3
    GRANT USAGE, SELECT, UPDATE ON SEQUENCES TO %2;
-- La versione delle tabelle la scrive solo chi le cambia.
REVOKE INSERT, UPDATE, DELETE ON clinical.orvale_properties FROM %2;
COMMIT;)sql";

QString enclosed(const QString &text, QChar quote)
{
    return quote + QString(text).replace(quote, QString(2, quote)) + quote;
}

} // namespace

int runRole(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("role RUOLO"),
        QStringLiteral("Scrive l'SQL che crea su un server il ruolo RUOLO delle postazioni, con i soli\n"
                       "permessi che servono: leggere e scrivere le righe. Si usa così:\n"
                       "    orvale role postazioni | psql -v ON_ERROR_STOP=1 DATABASE"));
    line.addArgument(QStringLiteral("RUOLO"), QStringLiteral("nome del ruolo, per esempio postazioni"));
    if (!line.parse(arguments))
        return 0;
    QStringList schemas;
    for (const PracticeFile &file : practiceFiles())
        schemas.append(file.database);
    const QString role = line.argument(0);
    printLine(QString::fromUtf8(script).arg(enclosed(role, u'\''), enclosed(role, u'"'),
                                            schemas.join(QStringLiteral(", "))));
    return 0;
}

} // namespace orvale
