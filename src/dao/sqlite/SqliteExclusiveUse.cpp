// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteExclusiveUse.h"

#include "dao/sqlite/SqliteStatement.h"

#include <QFileInfo>
#include <sqlite3.h>

namespace dao {

SqliteExclusiveUse::SqliteExclusiveUse(const QString &path)
    : m_handle(QFileInfo(path).absoluteFilePath(), SQLITE_OPEN_READWRITE)
{
    constexpr int patienceMs = 250;
    sqlite3_busy_timeout(m_handle.get(), patienceMs);
    // Asked for before the file is first read, this locks out even those who only have it open.
    for (const char *sql : {"PRAGMA locking_mode = EXCLUSIVE", "BEGIN IMMEDIATE", "COMMIT"})
        SqliteStatement(m_handle.get(), QString::fromLatin1(sql)).run();
}

void SqliteExclusiveUse::aboutToMove()
{
    // On closing SQLite would remove the file beside the database by its name, which may be another's then.
    int persists = 1;
    sqlite3_file_control(m_handle.get(), "main", SQLITE_FCNTL_PERSIST_WAL, &persists);
}

} // namespace dao
