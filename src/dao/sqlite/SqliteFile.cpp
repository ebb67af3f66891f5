// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteFile.h"

#include "dao/sqlite/DatabaseFile.h"
#include "jetsql/Error.h"

#include <QFile>
#include <memory>
#include <sqlite3.h>
#include <sys/stat.h>

namespace dao {

namespace {

Error unreadable(const QString &path, int code)
{
    return Error(Failed, QStringLiteral("Impossibile leggere il file '%1': %2")
                             .arg(path, QString::fromUtf8(sqlite3_errstr(code))));
}

// A file as SQLite opens it, without a look at what is in it.
class OpenedFile {
public:
    OpenedFile(const QString &path, int flags)
    {
        sqlite3 *opened = nullptr;
        const int result = sqlite3_open_v2(QFile::encodeName(path).constData(), &opened, flags, nullptr);
        m_connection.reset(opened);
        if (result != SQLITE_OK)
            throw unreadable(path, result);
        sqlite3_file_control(opened, "main", SQLITE_FCNTL_FILE_POINTER, &m_file);
        if (!m_file || !m_file->pMethods)
            throw unreadable(path, SQLITE_CANTOPEN);
    }
    sqlite3_file *operator->() const { return m_file; }
    sqlite3_file *get() const { return m_file; }

private:
    std::unique_ptr<sqlite3, decltype(&sqlite3_close)> m_connection{nullptr, sqlite3_close};
    sqlite3_file *m_file = nullptr;
};

} // namespace

QByteArray firstBytes(const QString &path, int most)
{
    const OpenedFile file(path, SQLITE_OPEN_READONLY);
    sqlite3_int64 size = 0;
    if (const int code = file->pMethods->xFileSize(file.get(), &size); code != SQLITE_OK)
        throw unreadable(path, code);
    QByteArray bytes(int(std::min<sqlite3_int64>(size, most)), '\0');
    // Shorter than it was a moment ago: what is gone is 0.
    const int code = file->pMethods->xRead(file.get(), bytes.data(), int(bytes.size()), 0);
    if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ)
        throw unreadable(path, code);
    return bytes;
}

bool SqliteFile::isOpenUnderTwoNames(const QString &path)
{
    struct stat status { };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || status.st_nlink < 2)
        return false;
    // Whoever has a database with a log open shares a lock on the file itself, which has no name.
    const OpenedFile file(path, SQLITE_OPEN_READWRITE);
    const bool isFree = file->pMethods->xLock(file.get(), SQLITE_LOCK_SHARED) == SQLITE_OK
                        && file->pMethods->xLock(file.get(), SQLITE_LOCK_EXCLUSIVE) == SQLITE_OK;
    file->pMethods->xUnlock(file.get(), SQLITE_LOCK_NONE);
    return !isFree;
}

SqliteFile::SqliteFile(sqlite3 *connection, const QString &schema)
    : m_connection(connection)
    , m_schema(schema.toUtf8())
    , m_path(QFile::decodeName(sqlite3_db_filename(connection, m_schema.constData())))
    , m_log(identityOf(m_path + QStringLiteral("-wal")))
    , m_index(identityOf(m_path + QStringLiteral("-shm")))
{
}

SqliteFile::Identity SqliteFile::identityOf(const QString &path)
{
    struct stat status { };
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? Identity{status.st_dev, status.st_ino}
                                                                     : Identity();
}

bool SqliteFile::isInPlace() const
{
    // SQLite compares the file that it has open with that of the name.
    int hasMoved = 0;
    sqlite3_file_control(m_connection, m_schema.constData(), SQLITE_FCNTL_HAS_MOVED, &hasMoved);
    if (hasMoved)
        return false;
    // Log and index exist as long as anybody has the database open; one without a log has no index either.
    return m_log == Identity()
           || (identityOf(m_path + QStringLiteral("-wal")) == m_log
               && identityOf(m_path + QStringLiteral("-shm")) == m_index);
}

} // namespace dao
