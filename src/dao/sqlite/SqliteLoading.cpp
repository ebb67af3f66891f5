// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteStorage.h"

#include "dao/sqlite/SqliteInsert.h"

#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <sqlite3.h>

namespace dao {
namespace {

sqlite3 *handleOf(const QSqlDatabase &connection)
{
    return *static_cast<sqlite3 *const *>(connection.driver()->handle().constData());
}

void run(const Storage &storage, sqlite3 *connection, const QString &sql)
{
    SqliteStatement statement(storage, connection, sql);
    while (statement.step()) { }
}

// A connection of its own whose lock nobody else's can stand beside.
class SqliteExclusiveUse final : public ExclusiveUse {
public:
    SqliteExclusiveUse(const Storage &storage, const QString &name)
        : m_connection(QUuid::createUuid().toString())
    {
        QSqlDatabase connection = QSqlDatabase::addDatabase(storage.driverName(), m_connection);
        connection.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=250"));
        connection.setDatabaseName(QFileInfo(name).absoluteFilePath());
        try {
            if (!connection.open())
                throw storage.error(connection.lastError(), name);
            sqlite3 *handle = handleOf(connection);
            sqlite3_extended_result_codes(handle, 1);
            // Asked for before the file is first read, this locks out even those who only have it open.
            for (const char *sql : {"PRAGMA locking_mode = EXCLUSIVE", "BEGIN IMMEDIATE", "COMMIT"})
                run(storage, handle, QString::fromLatin1(sql));
        } catch (const Error &) {
            connection = QSqlDatabase();
            QSqlDatabase::removeDatabase(m_connection);
            throw;
        }
    }
    ~SqliteExclusiveUse() override
    {
        QSqlDatabase::database(m_connection, false).close();
        QSqlDatabase::removeDatabase(m_connection);
    }
    void aboutToMove() override
    {
        // On closing SQLite would remove the file beside the database by its name, which may be another's then.
        int persists = 1;
        sqlite3_file_control(handleOf(QSqlDatabase::database(m_connection, false)), "main",
                             SQLITE_FCNTL_PERSIST_WAL, &persists);
    }
    SqliteExclusiveUse(const SqliteExclusiveUse &) = delete;
    SqliteExclusiveUse &operator=(const SqliteExclusiveUse &) = delete;

private:
    QString m_connection;
};

} // namespace

std::unique_ptr<NativeInsert> SqliteStorage::openInsert(QSqlDatabase &connection, const QString &nativeTable,
                                                        const QList<ColumnInfo> &columns) const
{
    return std::make_unique<SqliteInsert>(*this, handleOf(connection),
                                          m_dialect.insertStatement(nativeTable, columns), columns);
}

const IndexInfo *SqliteStorage::brokenIndex(const Error &error, const TableInfo &table) const
{
    // SQLite names the fields of the index: "UNIQUE constraint failed: table.first, table.second".
    for (const IndexInfo &index : table.indexes) {
        QStringList fields;
        for (const QString &field : index.fields)
            fields.append(table.name + u'.' + field);
        if ((index.unique || index.primary)
            && error.text().endsWith(QStringLiteral(" failed: ") + fields.join(QStringLiteral(", "))))
            return &index;
    }
    return nullptr;
}

void SqliteStorage::setLastAutoNumber(QSqlDatabase &connection, const QString &schema, const QString &table,
                                      qint64 number) const
{
    // SQLite keeps the number in a table of its own, from the first row on.
    sqlite3 *handle = handleOf(connection);
    const QString sequence = m_dialect.identifier(schema) + QStringLiteral(".sqlite_sequence");
    const QString name = m_dialect.textLiteral(table);
    run(*this, handle,
        QStringLiteral("INSERT INTO %1 (name, seq) SELECT %2, 0 WHERE NOT EXISTS "
                       "(SELECT 1 FROM %1 WHERE name = %2)")
            .arg(sequence, name));
    run(*this, handle,
        QStringLiteral("UPDATE %1 SET seq = max(seq, %2) WHERE name = %3")
            .arg(sequence)
            .arg(number)
            .arg(name));
}

qint64 SqliteStorage::lastAutoNumber(QSqlDatabase &connection, const QString &schema,
                                     const TableInfo &table) const
{
    // The table of numbers is there from the first table on that has one.
    SqliteStatement statement(*this, handleOf(connection),
                              QStringLiteral("SELECT seq FROM %1.sqlite_sequence WHERE name = %2")
                                  .arg(m_dialect.identifier(schema), m_dialect.textLiteral(table.name)));
    return statement.step() ? sqlite3_column_int64(statement.get(), 0) : 0;
}

void SqliteStorage::beginLoad(QSqlDatabase &connection, const QString &schema) const
{
    sqlite3 *handle = handleOf(connection);
    const QString prefix = QStringLiteral("PRAGMA ") + m_dialect.identifier(schema) + u'.';
    m_files.remove(schema); // its log goes away, and nobody else knows the file yet
    // New pages need no journal, and one of the few old ones is quickly kept in memory.
    run(*this, handle, prefix + QStringLiteral("journal_mode = MEMORY"));
    run(*this, handle, prefix + QStringLiteral("synchronous = OFF"));
    run(*this, handle, prefix + QStringLiteral("cache_size = -8000"));
    // The keys of a large index are sorted in a file rather than in memory.
    run(*this, handle, QStringLiteral("PRAGMA temp_store = FILE"));
}

void SqliteStorage::endLoad(QSqlDatabase &connection, const QString &schema) const
{
    sqlite3 *handle = handleOf(connection);
    const QString prefix = QStringLiteral("PRAGMA ") + m_dialect.identifier(schema) + u'.';
    run(*this, handle, prefix + QStringLiteral("synchronous = FULL"));
    run(*this, handle, prefix + QStringLiteral("journal_mode = WAL"));
    run(*this, handle, prefix + QStringLiteral("cache_size = -4000"));
    run(*this, handle, QStringLiteral("PRAGMA temp_store = MEMORY"));
}

std::unique_ptr<ExclusiveUse> SqliteStorage::useExclusively(const QString &name) const
{
    return std::make_unique<SqliteExclusiveUse>(*this, name);
}

} // namespace dao
