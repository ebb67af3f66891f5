// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteHandle.h"

#include "dao/native/NativeErrors.h"

#include <QFile>
#include <QUrl>
#include <sqlite3.h>

namespace dao {
namespace {

// The engine's error number for an extended code of SQLite and its text.
int errorNumber(int code, const QString &text)
{
    switch (code) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
        return DuplicateKey;
    case SQLITE_CONSTRAINT_NOTNULL:
        return FieldRequired;
    default:
        break;
    }
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return Locked;
    case SQLITE_READONLY:
        return ReadOnly;
    case SQLITE_CORRUPT:
        return Corrupt;
    case SQLITE_NOTADB:
        return NotADatabase;
    case SQLITE_CANTOPEN:
        return CannotFindFile;
    case SQLITE_FULL:
        return DiskFull;
    case SQLITE_IOERR:
        return DiskError;
    case SQLITE_TOOBIG:
        return RecordTooLarge;
    default:
        break;
    }
    if (text.contains(QLatin1String("no such table")))
        return ObjectNotFound;
    if (text.contains(QLatin1String("no such column")) || text.contains(QLatin1String("has no column")))
        return TooFewParameters;
    if (text.contains(QLatin1String("already exists")))
        return TableExists;
    if (text.contains(QLatin1String("integer overflow")))
        return Overflow;
    return Failed;
}

} // namespace

void SqliteHandle::Close::operator()(sqlite3 *connection) const
{
    sqlite3_close_v2(connection);
}

SqliteHandle::SqliteHandle(const QString &name, int flags)
{
    sqlite3 *opened = nullptr;
    const int result = sqlite3_open_v2(QFile::encodeName(name).constData(), &opened, flags, nullptr);
    m_connection.reset(opened);
    if (result != SQLITE_OK)
        throw sqliteError(opened, name);
    sqlite3_extended_result_codes(opened, 1);
}

SqliteHandle SqliteHandle::asItStands(const QString &path)
{
    const QString address = QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
    return SqliteHandle(address + QStringLiteral("?immutable=1"), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

Error sqliteError(sqlite3 *connection, const QString &sql)
{
    const QString text = QString::fromUtf8(sqlite3_errmsg(connection));
    if (const auto function = functionError(text))
        return describedError(function->first, function->second, sql);
    return describedError(errorNumber(sqlite3_extended_errcode(connection), text), text, sql);
}

} // namespace dao
