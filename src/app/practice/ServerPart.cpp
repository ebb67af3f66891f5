// SPDX-License-Identifier: Apache-2.0
#include "app/practice/ServerPart.h"

#include "app/practice/Practice.h"
#include "jetsql/Error.h"

namespace orvale {

namespace {

const QString making = QStringLiteral("new_");
const QString functions = QStringLiteral("jet"); // the data engine's own

} // namespace

ServerPart::ServerPart(const QString &address)
    : m_practice(practicePath(address))
    , m_schemas(address, accountOf(address), dao::PostgresSchemas::Missing::Created)
    , m_hadFunctions(m_schemas.names().contains(functions))
{
    if (!present({}).isEmpty())
        throw UserError(QStringLiteral("Il database %1 contiene già un archivio.").arg(m_practice));
    const QStringList left = present(making);
    if (!left.isEmpty() && m_schemas.isInUse())
        throw UserError(QStringLiteral("Nel database %1 si sta già creando un archivio.").arg(m_practice));
    m_schemas.remove(left);
}

ServerPart::~ServerPart()
{
    if (m_isPlaced)
        return;
    try {
        if (m_schemas.hasCreated()) {
            m_schemas.removeCreated();
            return;
        }
        QStringList left = present(making);
        if (!m_hadFunctions && m_schemas.names().contains(functions))
            left.append(functions);
        m_schemas.remove(left);
    } catch (const dao::Error &) {
        // The next program that makes a practice there removes them.
    }
}

QStringList ServerPart::present(const QString &beginning) const
{
    const QStringList names = m_schemas.names();
    QStringList found;
    for (const PracticeFile &file : practiceFiles()) {
        if (names.contains(beginning + file.database))
            found.append(beginning + file.database);
    }
    return found;
}

QString ServerPart::path() const
{
    return m_practice + QStringLiteral("#new");
}

void ServerPart::place()
{
    QList<std::pair<QString, QString>> names;
    for (const PracticeFile &file : practiceFiles())
        names.append({making + file.database, file.database});
    m_schemas.rename(names);
    m_isPlaced = true;
}

} // namespace orvale
