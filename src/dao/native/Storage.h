// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Dialect.h"
#include "dao/native/ExclusiveUse.h"
#include "dao/native/NativeCursor.h"
#include "dao/native/NativeInsert.h"
#include "jetsql/Catalog.h"
#include "jetsql/Error.h"

#include <QDateTime>
#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>

class QSqlError;
class QSqlQuery;

namespace dao {

// The account of a database server, as the host names it; empty texts leave it to the environment.
struct Account {
    QString user;
    QString password;
};

// What a native database engine does in its own way: its connection, the databases on it and their definitions. A further
// engine is a further subclass of this class, and of Dialect for its SQL.
class Storage {
public:
    virtual ~Storage() = default;

    virtual const Dialect &dialect() const = 0;

    // --- connection -----------------------------------------------------------------------------
    virtual QString driverName() const = 0; // of Qt SQL
    // Opens the connection that is to reach the database of that name: functions, collations, waits. Throws Error.
    virtual void openConnection(QSqlDatabase &connection, const QString &name,
                                const Account &account) const = 0;
    // The full name of a database, as it is kept in links; and what is equal for two names of the same one.
    virtual QString fullName(const QString &name) const = 0;
    virtual QString sameName(const QString &name) const = 0;
    // Makes the database of that name (file, schema) reachable and returns the schema name under which it is:
    // the proposed one unless it has one of its own. Throws Error (CannotFindFile, NotADatabase, Corrupt).
    virtual QString attach(QSqlDatabase &connection, const QString &name, const QString &proposed,
                           bool readOnly) const = 0;
    virtual void detach(QSqlDatabase &connection, const QString &schema) const = 0;
    // Throws Error (DatabaseMoved) when a file of the attached databases was moved, replaced or deleted, so
    // that what is written would be lost. By default does nothing: a server's databases cannot be taken away.
    virtual void requireInPlace() const { }
    // Makes a new, empty database of that name; TableExists when there is something of that name.
    virtual void createDatabase(QSqlDatabase &connection, const QString &name) const = 0;
    // Tables of a schema; the definition of one (nativeName set); throws Error when it cannot be read.
    virtual QStringList tables(QSqlDatabase &connection, const QString &schema) const = 0;
    virtual TableInfo describe(QSqlDatabase &connection, const QString &schema,
                               const QString &table) const = 0;
    // Statements outside and inside transactions, each wholly or not at all; rows affected. Throws Error. The
    // default writes through Qt's driver.
    virtual int execute(QSqlDatabase &connection, const QString &sql, const QVariantList &values) const;
    // INSERT of one row; the number that it got in the autonumber column, 0 when there is none (empty name).
    virtual qint64 insertRow(QSqlDatabase &connection, const QString &sql, const QVariantList &values,
                             const QString &autoNumber) const = 0;
    // Begins a transaction that may write and that no other one writes beside: Locked.
    virtual void begin(QSqlDatabase &connection) const = 0;
    // Begins a transaction that reads one state of all databases, however long it takes. The default is begin().
    virtual void beginReading(QSqlDatabase &connection) const { begin(connection); }
    // COMMIT, ROLLBACK and savepoints.
    virtual void control(QSqlDatabase &connection, const QString &sql) const;
    // False also when the native engine gave a transaction up by itself (disk full, for example).
    virtual bool inTransaction(QSqlDatabase &connection) const = 0;
    // The error of what stands in a transaction that the native engine has given up by itself.
    virtual Error goneTransaction() const;
    // A number that changes with every definition in the schema, by whatever process.
    virtual qint64 definitionVersion(QSqlDatabase &connection, const QString &schema) const = 0;
    // The autonumber field of a table goes on after this number, or after its highest row if that is more.
    virtual void setLastAutoNumber(QSqlDatabase &connection, const QString &schema, const QString &table,
                                   qint64 number) const = 0;
    // The number above which that field goes on; 0 before the first one. The table has an autonumber field.
    virtual qint64 lastAutoNumber(QSqlDatabase &connection, const QString &schema,
                                  const TableInfo &table) const = 0;
    // While a schema is being loaded that is thrown away if anything fails, nothing waits for the disk;
    // afterwards it is again a database that survives the loss of power and that several programs share.
    virtual void beginLoad(QSqlDatabase &connection, const QString &schema) const = 0;
    virtual void endLoad(QSqlDatabase &connection, const QString &schema) const = 0;
    // Takes the database of that name for one's own, until the result goes away: nobody has it open, and
    // nobody can open it. Throws Error (Locked).
    virtual std::unique_ptr<ExclusiveUse> useExclusively(const QString &name) const = 0;
    // A statement that reads, its values bound; its rows are stepped through with the cursor. Throws Error.
    // The default reads through Qt's driver.
    virtual std::unique_ptr<NativeCursor> openCursor(QSqlDatabase &connection, const QString &sql,
                                                     const QVariantList &values) const;
    // The same rows, of which most often no more than `rows` are read. The default is openCursor(), for engines that find
    // a row when it is stepped to.
    virtual std::unique_ptr<NativeCursor> openFirstRows(QSqlDatabase &connection, const QString &sql,
                                                        const QVariantList &values, int rows) const;
    // The same without values, for more rows than are to be kept in memory; nothing else is done on the connection
    // as long as the cursor is there. The default is openCursor().
    virtual std::unique_ptr<NativeCursor> openStream(QSqlDatabase &connection, const QString &sql) const;
    // Adds rows to a table, of which these columns are given values.
    virtual std::unique_ptr<NativeInsert> openInsert(QSqlDatabase &connection, const QString &nativeTable,
                                                     const QList<ColumnInfo> &columns) const = 0;
    // A database's name as a link from `holder` keeps it, and the name that it stands for: a link to another
    // database of the same practice holds wherever the practice is. The default keeps the name.
    virtual QString linkedName(const QString &name, const QString &holder) const;
    virtual QString nameOfLinked(const QString &linked, const QString &holder) const;
    // The unique index of the table that a DuplicateKey error speaks of; null when it cannot be told.
    virtual const IndexInfo *brokenIndex(const Error &error, const TableInfo &table) const = 0;
    // The error of a native error: the engine's own text where people meet it, the native text beside it.
    Error error(const QSqlError &error, const QString &sql) const;
    // The engine's error number for a native error.
    virtual int errorNumber(const QSqlError &error) const = 0;
    // The native text of an error, without what the dialect itself wrote around it.
    virtual QString errorText(const QSqlError &error) const = 0;
};

// A statement through Qt's driver, its values bound; its rows can be read once, forwards. Throws Error.
QSqlQuery runQuery(const Storage &storage, const QSqlDatabase &connection, const QString &sql,
                   const QVariantList &values = {});

} // namespace dao
