// SPDX-License-Identifier: Apache-2.0
#include "app/practice/PracticeReader.h"

#include "app/practice/Practice.h"
#include "dao/native/Account.h"

namespace orvale {

PracticeReader::PracticeReader(const QString &path, const QString &given)
{
    if (isOnServer(path)) {
        const dao::Account account = accountOf(given);
        m_engine.setDefaultUser(account.user);
        m_engine.setDefaultPassword(account.password);
    }
    for (const PracticeFile &file : practiceFiles())
        m_databases[file.database] = m_engine.OpenDatabase(databaseName(path, file));
    m_engine.DefaultWorkspace().BeginReading();
}

} // namespace orvale
