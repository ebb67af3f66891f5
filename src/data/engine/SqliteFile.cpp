// SPDX-License-Identifier: Apache-2.0
#include "data/engine/SqliteFile.h"

#include "data/engine/DatabaseFile.h"
#include "data/engine/Error.h"

#include <QFile>
#include <memory>
#include <sqlite3.h>
#include <sys/stat.h>

namespace dao {

QByteArray firstBytes(const QString &path, int most)
{
    sqlite3 *opened = nullptr;
    const int result =
        sqlite3_open_v2(QFile::encodeName(path).constData(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> connection(opened, sqlite3_close);
    const auto fail = [&](int code) {
        return Error(Failed, QStringLiteral("Impossibile leggere il file '%1': %2")
                                 .arg(path, QString::fromUtf8(sqlite3_errstr(code))));
    };
    if (result != SQLITE_OK)
        throw fail(result);
    sqlite3_file *file = nullptr;
    sqlite3_file_control(connection.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    sqlite3_int64 size = 0;
    if (!file || !file->pMethods)
        throw fail(SQLITE_CANTOPEN);
    if (const int code = file->pMethods->xFileSize(file, &size); code != SQLITE_OK)
        throw fail(code);
    QByteArray bytes(int(std::min<sqlite3_int64>(size, most)), '\0');
    // Shorter than it was a moment ago: what is gone is 0.
    const int code = file->pMethods->xRead(file, bytes.data(), int(bytes.size()), 0);
    if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ)
        throw fail(code);
    return bytes;
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
