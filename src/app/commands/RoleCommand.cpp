// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"
#include "app/commands/Commands.h"
#include "app/practice/ResourceText.h"
#include "app/practice/Schema.h"

// The resource stands in a static library; naming it here keeps it in the program.
static void useCommandsResource()
{
    Q_INIT_RESOURCE(commands);
}

namespace orvale {

namespace {

// What a workstation may do in the database of a practice: read and write rows. A role of that name is created if
// missing; doctors' accounts are its members. The practice's owner runs the script, and may run it again.
QString script()
{
    useCommandsResource();
    return resourceText(QStringLiteral(":/orvale/role.sql")).trimmed();
}

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
    printLine(script().arg(enclosed(role, u'\''), enclosed(role, u'"'), schemas.join(QStringLiteral(", "))));
    return 0;
}

} // namespace orvale
