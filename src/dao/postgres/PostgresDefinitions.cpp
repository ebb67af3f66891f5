// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresDefinitions.h"

#include <QResource>
#include <QStringList>

// The resource stands in a static library; naming it here keeps it in the program.
static void useDefinitions()
{
    Q_INIT_RESOURCE(postgres_definitions);
}

namespace dao {
namespace {

// A statement ends with a semicolon at the end of a line, outside the body that stands between two $$ or
// $do$.
void appendStatements(const QString &file, QList<PostgresDefinition> &definitions)
{
    const QString text =
        QString::fromUtf8(QResource(QStringLiteral(":/postgres/") + file).uncompressedData());
    const QStringList lines = text.split(u'\n');
    QString statement;
    bool isBody = false;
    for (const QString &line : lines) {
        statement += line + u'\n';
        isBody ^= (line.count(QStringLiteral("$$")) + line.count(QStringLiteral("$do$"))) % 2 == 1;
        if (isBody || !line.endsWith(u';'))
            continue;
        definitions.append({file, statement});
        statement.clear();
    }
}

} // namespace

QList<PostgresDefinition> postgresDefinitions()
{
    useDefinitions();
    QList<PostgresDefinition> definitions;
    for (const char *part : {"schema", "helpers", "texts", "numbers", "dates", "aggregates"})
        appendStatements(QString::fromLatin1(part) + QStringLiteral(".sql"), definitions);
    definitions.append(
        {QString(), QStringLiteral("COMMENT ON SCHEMA jet IS 'orvale %1'").arg(postgresDefinitionsVersion)});
    return definitions;
}

} // namespace dao
