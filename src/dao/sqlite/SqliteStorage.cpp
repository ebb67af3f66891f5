// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteStorage.h"

#include "dao/native/FunctionErrors.h"
#include "dao/sqlite/DatabaseFile.h"
#include "dao/sqlite/SqliteCursor.h"
#include "dao/sqlite/SqliteFunctions.h"
#include "jetsql/Error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>
#include <QUrl>
#include <array>
#include <sqlite3.h>

namespace dao {
namespace {

sqlite3 *handleOf(const QSqlDatabase &connection)
{
    return *static_cast<sqlite3 *const *>(connection.driver()->handle().constData());
}

// Waits for another workstation's lock, some 250 ms in all. All who wait look equally often, so that whoever has come
// last is not served before the others again and again, as with SQLite's own growing pauses.
int waitForLock(void *, int attempts)
{
    constexpr int quickAttempts = 10;
    constexpr int mostAttempts = quickAttempts + 48;
    if (attempts >= mostAttempts)
        return 0;
    QThread::msleep(attempts < quickAttempts ? 1 : 5);
    return 1;
}

QString quoted(const QString &name)
{
    return u'"' + QString(name).replace(u'"', QStringLiteral("\"\"")) + u'"';
}

QString qualified(const QString &schema, const QString &name)
{
    return quoted(schema) + u'.' + quoted(name);
}

QString fileUri(const QFileInfo &file, const QString &options)
{
    return QString::fromLatin1(QUrl::fromLocalFile(file.absoluteFilePath()).toEncoded()) + u'?' + options;
}

// Looks at the file before SQLite does: SQLite would take an empty file for an empty database.
void requireDatabaseFile(const QFileInfo &file)
{
    const QString path = file.filePath();
    if (!file.exists() || !file.isFile())
        throw Error(CannotFindFile, QStringLiteral("Impossibile trovare il file '%1'").arg(path));
    constexpr QByteArrayView signature("SQLite format 3\0", 16);
    if (firstBytes(file.absoluteFilePath(), signature.size()) != signature)
        throw Error(NotADatabase, QStringLiteral("Formato di database non riconosciuto '%1'").arg(path));
}

QList<IndexInfo> indexesOf(const Storage &storage, QSqlDatabase &connection, const QString &schema,
                           const QString &table)
{
    QList<IndexInfo> indexes;
    QSqlQuery list =
        runQuery(storage, connection,
                 QStringLiteral("SELECT name, \"unique\" FROM pragma_index_list(?, ?) WHERE origin = 'c' "
                                "ORDER BY seq DESC"),
                 {table, schema});
    while (list.next()) {
        const QString nativeName = list.value(0).toString();
        IndexInfo index = indexOfNativeName(table, nativeName);
        index.unique = list.value(1).toBool();
        QSqlQuery fields = runQuery(storage, connection,
                                    QStringLiteral("SELECT name FROM pragma_index_info(?, ?) ORDER BY seqno"),
                                    {nativeName, schema});
        while (fields.next())
            index.fields.append(fields.value(0).toString());
        indexes.append(index);
    }
    return indexes;
}

} // namespace

QString SqliteStorage::driverName() const
{
    return QStringLiteral("QSQLITE");
}

void SqliteStorage::openConnection(QSqlDatabase &connection, const QString &, const Account &) const
{
    // Databases are attached by file URIs, so that none is created by opening it. The wait is short: callers
    // that want to try longer do so between attempts that the user can see.
    connection.setDatabaseName(QStringLiteral(":memory:"));
    connection.setConnectOptions(QStringLiteral("QSQLITE_OPEN_URI"));
    if (!connection.open())
        throw Error(Failed, connection.lastError().text());
    sqlite3 *handle = handleOf(connection);
    sqlite3_extended_result_codes(handle, 1);
    sqlite3_busy_handler(handle, waitForLock, nullptr);
    registerSqliteFunctions(handle);
    runQuery(*this, connection, QStringLiteral("PRAGMA foreign_keys = ON"));
    runQuery(*this, connection, QStringLiteral("PRAGMA temp_store = MEMORY"));
}

QString SqliteStorage::fullName(const QString &name) const
{
    return QFileInfo(name).absoluteFilePath();
}

QString SqliteStorage::sameName(const QString &name) const
{
    return QFileInfo(name).canonicalFilePath();
}

QString SqliteStorage::attach(QSqlDatabase &connection, const QString &name, const QString &schema,
                              bool readOnly) const
{
    const QFileInfo file(name);
    requireDatabaseFile(file);
    if (!readOnly && SqliteFile::isOpenUnderTwoNames(file.absoluteFilePath()))
        throw Error(InvalidOperation,
                    QStringLiteral(
                        "Il file '%1' ha un secondo nome (collegamento fisso) ed è già aperto: i salvataggi "
                        "di chi lo usa con l'altro nome andrebbero persi. Farne una copia vera (cp -r) e "
                        "aprire quella.")
                        .arg(file.absoluteFilePath()));
    QString options = readOnly ? QStringLiteral("mode=ro") : QStringLiteral("mode=rw");
    // Readers of a WAL database share a file beside it. Where none can be made, nobody can be writing either.
    if (readOnly && !QFileInfo(file.absolutePath()).isWritable()
        && !QFile::exists(file.absoluteFilePath() + QStringLiteral("-wal")))
        options = QStringLiteral("immutable=1");
    runQuery(*this, connection, QStringLiteral("ATTACH DATABASE ? AS ") + quoted(schema),
             {fileUri(file, options)});
    try {
        // A saved row survives the loss of power, at the price of one flush a transaction.
        runQuery(*this, connection, QStringLiteral("PRAGMA %1.synchronous = FULL").arg(quoted(schema)));
        runQuery(*this, connection, QStringLiteral("PRAGMA %1.cache_size = -4000").arg(quoted(schema)));
        runQuery(*this, connection,
                 QStringLiteral("SELECT count(*) FROM %1.sqlite_master").arg(quoted(schema)))
            .next();
    } catch (const Error &error) {
        detach(connection, schema);
        throw Error(error.number(), QStringLiteral("%1: %2").arg(error.text(), name));
    }
    if (!readOnly)
        m_files.insert(schema, SqliteFile(handleOf(connection), schema));
    return schema;
}

void SqliteStorage::requireInPlace() const
{
    for (const SqliteFile &file : std::as_const(m_files)) {
        if (!file.isInPlace())
            throw Error(DatabaseMoved,
                        QStringLiteral("Il file '%1' è stato spostato, sostituito o cancellato mentre era "
                                       "aperto")
                            .arg(file.path()));
    }
}

void SqliteStorage::detach(QSqlDatabase &connection, const QString &schema) const
{
    runQuery(*this, connection, QStringLiteral("DETACH DATABASE ") + quoted(schema));
    m_files.remove(schema);
}

void SqliteStorage::createDatabase(QSqlDatabase &connection, const QString &name) const
{
    const QFileInfo file(name);
    QFile stream(file.absoluteFilePath()); // a new file, which nobody can have open
    if (!stream.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        if (file.exists())
            throw Error(TableExists, QStringLiteral("Il database '%1' esiste già").arg(name));
        throw Error(CannotFindFile,
                    QStringLiteral("Impossibile creare il file '%1': %2").arg(name, stream.errorString()));
    }
    stream.close();
    const QString schema = QStringLiteral("new_database");
    try {
        runQuery(*this, connection, QStringLiteral("ATTACH DATABASE ? AS ") + schema,
                 {fileUri(file, QStringLiteral("mode=rw"))});
        runQuery(*this, connection, QStringLiteral("PRAGMA new_database.journal_mode = WAL")).next();
        detach(connection, schema);
    } catch (const Error &) {
        stream.remove();
        throw;
    }
}

QString SqliteStorage::linkedName(const QString &name, const QString &holder) const
{
    // A practice is copied, moved and restored as a folder: its links stay within it.
    return QFileInfo(holder).absoluteDir().relativeFilePath(QFileInfo(name).absoluteFilePath());
}

QString SqliteStorage::nameOfLinked(const QString &linked, const QString &holder) const
{
    const QDir folder = QFileInfo(holder).absoluteDir();
    if (QDir::isRelativePath(linked))
        return QDir::cleanPath(folder.absoluteFilePath(linked));
    // Earlier versions stored the whole path, which leads to the original after a practice was copied or
    // restored.
    const QString beside = folder.absoluteFilePath(QFileInfo(linked).fileName());
    return QFileInfo::exists(beside) ? beside : linked;
}

QStringList SqliteStorage::tables(QSqlDatabase &connection, const QString &schema) const
{
    QSqlQuery query = runQuery(*this, connection,
                               QStringLiteral("SELECT name FROM %1.sqlite_master WHERE type = 'table' "
                                              "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid")
                                   .arg(quoted(schema)));
    QStringList names;
    while (query.next())
        names.append(query.value(0).toString());
    return names;
}

TableInfo SqliteStorage::describe(QSqlDatabase &connection, const QString &schema, const QString &table) const
{
    TableInfo info;
    info.name = table;
    info.nativeName = qualified(schema, table);
    QSqlQuery query =
        runQuery(*this, connection,
                 QStringLiteral("SELECT name, type, \"notnull\" FROM pragma_table_info(?, ?) ORDER BY cid"),
                 {table, schema});
    while (query.next())
        info.columns.append(SqliteDialect::declaredColumn(
            query.value(0).toString(), query.value(1).toString(), query.value(2).toBool()));
    if (info.columns.isEmpty())
        throw Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(table));
    info.indexes = indexesOf(*this, connection, schema, table);
    return info;
}

qint64 SqliteStorage::insertRow(QSqlDatabase &connection, const QString &sql, const QVariantList &values,
                                const QString &autoNumber) const
{
    execute(connection, sql, values);
    return autoNumber.isEmpty() ? 0 : sqlite3_last_insert_rowid(handleOf(connection));
}

void SqliteStorage::begin(QSqlDatabase &connection) const
{
    // Takes the write lock at once: a transaction that reads first could not get it any more after another
    // process has written.
    control(connection, QStringLiteral("BEGIN IMMEDIATE"));
}

bool SqliteStorage::inTransaction(QSqlDatabase &connection) const
{
    return sqlite3_get_autocommit(handleOf(connection)) == 0;
}

qint64 SqliteStorage::definitionVersion(QSqlDatabase &connection, const QString &schema) const
{
    QSqlQuery query =
        runQuery(*this, connection, QStringLiteral("PRAGMA %1.schema_version").arg(quoted(schema)));
    return query.next() ? query.value(0).toLongLong() : 0;
}

std::unique_ptr<NativeCursor> SqliteStorage::openCursor(QSqlDatabase &connection, const QString &sql,
                                                        const QVariantList &values) const
{
    if (!values.isEmpty())
        return Storage::openCursor(connection, sql, values);
    return std::make_unique<SqliteCursor>(*this, handleOf(connection), sql);
}

int SqliteStorage::errorNumber(const QSqlError &error) const
{
    const QString text = error.databaseText();
    if (const auto function = functionError(text))
        return function->first;
    const int code = error.nativeErrorCode().toInt();
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

QString SqliteStorage::errorText(const QSqlError &error) const
{
    const auto function = functionError(error.databaseText());
    return function ? function->second : error.databaseText();
}

} // namespace dao
