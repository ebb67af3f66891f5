// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteDialect.h"

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

// What SQLite is told a column is. The words decide how SQLite stores values: "INT" whole numbers, "CHAR" and
// "TEXT" texts, "DOUB" and "FLOA" floating point; the others keep numbers as they come.
struct DeclaredType {
    FieldType type;
    QLatin1String name;
};
constexpr std::array declaredTypes{
    DeclaredType{FieldType::Boolean, QLatin1String("YESNO")},
    DeclaredType{FieldType::Byte, QLatin1String("TINYINT")},
    DeclaredType{FieldType::Integer, QLatin1String("SMALLINT")},
    DeclaredType{FieldType::Long, QLatin1String("INT")},
    DeclaredType{FieldType::AutoNumber, QLatin1String("INTEGER")},
    DeclaredType{FieldType::Currency, QLatin1String("CURRENCY")},
    DeclaredType{FieldType::Single, QLatin1String("FLOAT")},
    DeclaredType{FieldType::Double, QLatin1String("DOUBLE")},
    DeclaredType{FieldType::Date, QLatin1String("DATETIMETEXT")},
    DeclaredType{FieldType::Text, QLatin1String("VARCHAR")},
    DeclaredType{FieldType::Memo, QLatin1String("TEXT")},
    DeclaredType{FieldType::Guid, QLatin1String("CHAR(38)")},
    DeclaredType{FieldType::Binary, QLatin1String("BLOB")},
};

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

// The column that a declared type stands for.
ColumnInfo declaredColumn(const QString &name, const QString &declaredType, bool required)
{
    ColumnInfo column{name, FieldType::Unknown, 0, required};
    for (const DeclaredType &declared : declaredTypes) {
        if (declaredType.compare(declared.name, Qt::CaseInsensitive) == 0)
            column.type = declared.type;
    }
    const qsizetype bracket = declaredType.indexOf(u'(');
    if (column.type == FieldType::Unknown && bracket > 0
        && QStringView(declaredType).left(bracket).compare(QLatin1String("VARCHAR"), Qt::CaseInsensitive)
               == 0) {
        column.type = FieldType::Text;
        column.size = QStringView(declaredType).mid(bracket + 1).chopped(1).toInt();
    }
    // A table made by another program: the value tells its type.
    if (column.type == FieldType::Boolean || column.type == FieldType::AutoNumber)
        column.required = false;
    return column;
}

QList<IndexInfo> indexesOf(const SqlDialect &dialect, QSqlDatabase &connection, const QString &schema,
                           const QString &table)
{
    QList<IndexInfo> indexes;
    QSqlQuery list =
        runQuery(dialect, connection,
                 QStringLiteral("SELECT name, \"unique\" FROM pragma_index_list(?, ?) WHERE origin = 'c' "
                                "ORDER BY seq DESC"),
                 {table, schema});
    while (list.next()) {
        const QString nativeName = list.value(0).toString();
        IndexInfo index = indexOfNativeName(table, nativeName);
        index.unique = list.value(1).toBool();
        QSqlQuery fields = runQuery(dialect, connection,
                                    QStringLiteral("SELECT name FROM pragma_index_info(?, ?) ORDER BY seqno"),
                                    {nativeName, schema});
        while (fields.next())
            index.fields.append(fields.value(0).toString());
        indexes.append(index);
    }
    return indexes;
}

} // namespace

QString SqliteDialect::columnDeclaration(const ColumnInfo &column) const
{
    const auto declared = std::find_if(declaredTypes.begin(), declaredTypes.end(),
                                       [&](const DeclaredType &type) { return type.type == column.type; });
    if (declared == declaredTypes.end())
        throw Error(SyntaxError, QStringLiteral("Tipo del campo non valido: '%1'").arg(column.name));
    QString text = identifier(column.name) + u' ' + declared->name;
    if (column.type == FieldType::AutoNumber)
        return text + QStringLiteral(" PRIMARY KEY AUTOINCREMENT NOT NULL");
    if (column.type == FieldType::Boolean)
        return text + QStringLiteral(" NOT NULL DEFAULT 0");
    if (column.type == FieldType::Text)
        text += QStringLiteral("(%1)").arg(column.size > 0 ? column.size : 255);
    if (isText(column.type))
        text += QStringLiteral(" COLLATE JET_TEXT");
    if (column.required)
        text += QStringLiteral(" NOT NULL");
    return text;
}

QString SqliteDialect::rowNumberDeclaration() const
{
    return QStringLiteral("INTEGER PRIMARY KEY");
}

QVariant SqliteDialect::toNative(const QVariant &value, FieldType type) const
{
    if (type == FieldType::Boolean && value.isValid() && !value.isNull())
        return value.toBool() ? -1 : 0;
    return SqlDialect::toNative(value, type);
}

QString SqliteDialect::driverName() const
{
    return QStringLiteral("QSQLITE");
}

void SqliteDialect::openConnection(QSqlDatabase &connection, const QString &, const Account &) const
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

QString SqliteDialect::fullName(const QString &name) const
{
    return QFileInfo(name).absoluteFilePath();
}

QString SqliteDialect::sameName(const QString &name) const
{
    return QFileInfo(name).canonicalFilePath();
}

QString SqliteDialect::attach(QSqlDatabase &connection, const QString &name, const QString &schema,
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

void SqliteDialect::requireInPlace() const
{
    for (const SqliteFile &file : std::as_const(m_files)) {
        if (!file.isInPlace())
            throw Error(DatabaseMoved,
                        QStringLiteral("Il file '%1' è stato spostato, sostituito o cancellato mentre era "
                                       "aperto")
                            .arg(file.path()));
    }
}

void SqliteDialect::detach(QSqlDatabase &connection, const QString &schema) const
{
    runQuery(*this, connection, QStringLiteral("DETACH DATABASE ") + quoted(schema));
    m_files.remove(schema);
}

void SqliteDialect::createDatabase(QSqlDatabase &connection, const QString &name) const
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

QString SqliteDialect::linkedName(const QString &name, const QString &holder) const
{
    // A practice is copied, moved and restored as a folder: its links stay within it.
    return QFileInfo(holder).absoluteDir().relativeFilePath(QFileInfo(name).absoluteFilePath());
}

QString SqliteDialect::nameOfLinked(const QString &linked, const QString &holder) const
{
    const QDir folder = QFileInfo(holder).absoluteDir();
    if (QDir::isRelativePath(linked))
        return QDir::cleanPath(folder.absoluteFilePath(linked));
    // Earlier versions stored the whole path, which leads to the original after a practice was copied or
    // restored.
    const QString beside = folder.absoluteFilePath(QFileInfo(linked).fileName());
    return QFileInfo::exists(beside) ? beside : linked;
}

QStringList SqliteDialect::tables(QSqlDatabase &connection, const QString &schema) const
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

TableInfo SqliteDialect::describe(QSqlDatabase &connection, const QString &schema, const QString &table) const
{
    TableInfo info;
    info.name = table;
    info.nativeName = qualified(schema, table);
    QSqlQuery query =
        runQuery(*this, connection,
                 QStringLiteral("SELECT name, type, \"notnull\" FROM pragma_table_info(?, ?) ORDER BY cid"),
                 {table, schema});
    while (query.next())
        info.columns.append(
            declaredColumn(query.value(0).toString(), query.value(1).toString(), query.value(2).toBool()));
    if (info.columns.isEmpty())
        throw Error(ObjectNotFound, QStringLiteral("Tabella o query inesistente: '%1'").arg(table));
    info.indexes = indexesOf(*this, connection, schema, table);
    return info;
}

QString SqliteDialect::createIndex(const QString &schema, const QString &table, const IndexInfo &index) const
{
    QStringList fields;
    for (const QString &field : index.fields)
        fields.append(quoted(field));
    const QString name = nativeIndexName(table, index);
    return QStringLiteral("CREATE %1 %2 ON %3 (%4)")
        .arg(index.unique || index.primary ? QStringLiteral("UNIQUE INDEX") : QStringLiteral("INDEX"),
             qualified(schema, name), quoted(table), fields.join(QStringLiteral(", ")));
}

QString SqliteDialect::dropIndex(const QString &schema, const QString &table, const IndexInfo &index) const
{
    return QStringLiteral("DROP INDEX ") + qualified(schema, nativeIndexName(table, index));
}

qint64 SqliteDialect::insertRow(QSqlDatabase &connection, const QString &sql, const QVariantList &values,
                                const QString &autoNumber) const
{
    execute(connection, sql, values);
    return autoNumber.isEmpty() ? 0 : sqlite3_last_insert_rowid(handleOf(connection));
}

void SqliteDialect::begin(QSqlDatabase &connection) const
{
    // Takes the write lock at once: a transaction that reads first could not get it any more after another
    // process has written.
    control(connection, QStringLiteral("BEGIN IMMEDIATE"));
}

bool SqliteDialect::inTransaction(QSqlDatabase &connection) const
{
    return sqlite3_get_autocommit(handleOf(connection)) == 0;
}

qint64 SqliteDialect::definitionVersion(QSqlDatabase &connection, const QString &schema) const
{
    QSqlQuery query =
        runQuery(*this, connection, QStringLiteral("PRAGMA %1.schema_version").arg(quoted(schema)));
    return query.next() ? query.value(0).toLongLong() : 0;
}

std::unique_ptr<NativeCursor> SqliteDialect::openCursor(QSqlDatabase &connection, const QString &sql,
                                                        const QVariantList &values) const
{
    if (!values.isEmpty())
        return SqlDialect::openCursor(connection, sql, values);
    return std::make_unique<SqliteCursor>(*this, handleOf(connection), sql);
}

int SqliteDialect::errorNumber(const QSqlError &error) const
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

QString SqliteDialect::errorText(const QSqlError &error) const
{
    const auto function = functionError(error.databaseText());
    return function ? function->second : error.databaseText();
}

} // namespace dao
