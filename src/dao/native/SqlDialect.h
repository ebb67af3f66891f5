// SPDX-License-Identifier: Apache-2.0
#pragma once

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

// What a native database engine does in its own way. Everything else of the data engine is one code path, so
// that a further engine is a further subclass of this class. Functions that write SQL get operands that are
// native SQL already, parenthesised where needed.
class SqlDialect {
public:
    virtual ~SqlDialect() = default;

    // --- text of the language -------------------------------------------------------------------
    virtual QString identifier(const QString &name) const; // "name", inner quotes doubled
    virtual QString textLiteral(const QString &text) const; // 'text', quotes doubled
    virtual QString dateLiteral(const QDateTime &date) const = 0; // compares with stored dates by their index
    virtual QString numberLiteral(double value) const; // not negative
    virtual QString booleanLiteral(bool value) const = 0; // as a stored value
    // A Yes/No value as a condition, and a condition (true, false or Null) as a Yes/No value.
    virtual QString conditionFromBoolean(const QString &value) const = 0;
    virtual QString booleanFromCondition(const QString &condition) const = 0;
    // A Yes/No value as a number: -1 or 0.
    virtual QString numberFromBoolean(const QString &value) const = 0;
    // Null where a value of that type is wanted.
    virtual QString nullLiteral(FieldType) const { return QStringLiteral("NULL"); }
    // A number as an operand of + - * / and of sums, where the native engine would compute whole numbers otherwise.
    virtual QString computed(const QString &number) const { return number; }
    // Texts joined by ||, in parentheses, as a text that compares without regard to case.
    virtual QString concatenated(const QString &texts) const { return texts; }
    // What follows the table of an inner join whose condition is said by a later join.
    virtual QString joinedAnyway() const { return {}; }
    virtual QString limit(int rows) const; // the clause that follows ORDER BY
    // "expr ASC/DESC" with Null first ascending and last descending.
    virtual QString orderTerm(const QString &expression, FieldType type, bool descending) const = 0;
    // A text comparison without regard to case, with a native operator such as "=" or "<", by index where
    // there is one.
    virtual QString compareText(const QString &left, const QString &op, const QString &right) const = 0;
    // GROUP BY and DISTINCT terms of a text.
    virtual QString groupText(const QString &expression) const = 0;
    // The text against a constant pattern; by a range of the index where the pattern begins with letters.
    virtual QString likePattern(const QString &text, const QString &pattern) const = 0;
    // The text against a pattern that is not constant.
    virtual QString likeExpression(const QString &text, const QString &pattern) const = 0;

    // A call of a function of the SQL ("mid", "format", ...) with typed operands, arguments checked by the
    // caller; names are lower-case. Empty when the dialect does not know the function.
    virtual QString function(const QString &name, const QStringList &arguments,
                             const QList<FieldType> &types) const = 0;

    // --- rows and tables ------------------------------------------------------------------------
    // The hidden expression that identifies a row of the table spoken of as `alias` (quoted already).
    virtual QString rowIdentity(const QString &alias) const = 0;
    // "a and b are the same value, Null equal to Null, letter case told apart".
    virtual QString identical(const QString &left, const QString &right, FieldType type) const = 0;
    // A column's declaration in CREATE TABLE, name included.
    virtual QString columnDeclaration(const ColumnInfo &column) const = 0;
    // Declarations of the columns that every table has beside its own; they are not described.
    virtual QStringList hiddenColumns() const { return {}; }
    // The declaration of a whole number that each new row gets by itself, for the engine's own tables.
    virtual QString rowNumberDeclaration() const = 0;
    // What a new table, or new columns of one, need beside their declarations.
    virtual QStringList completeTable(const QString &nativeName, const QList<ColumnInfo> &columns) const;
    // The statement that makes a column of a table take no Null; empty when the table must be made anew for it.
    virtual QString requireColumn(const QString &nativeName, const QString &column) const;

    // --- values ---------------------------------------------------------------------------------
    // A native value as the type's variant: int (Byte, Integer, Long, AutoNumber), double, bool, QDateTime
    // (UTC, standing for a date without zone), QString, QByteArray; Null is an invalid variant.
    virtual QVariant fromNative(const QVariant &value, FieldType type) const;
    virtual QVariant toNative(const QVariant &value, FieldType type) const;

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
    virtual QString createIndex(const QString &schema, const QString &table,
                                const IndexInfo &index) const = 0;
    virtual QString dropIndex(const QString &schema, const QString &table, const IndexInfo &index) const = 0;
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
    // "INSERT INTO table (columns) VALUES (?, ...)".
    QString insertStatement(const QString &nativeTable, const QList<ColumnInfo> &columns) const;
    // The error of a native error: the engine's own text where people meet it, the native text beside it.
    Error error(const QSqlError &error, const QString &sql) const;
    // The engine's error number for a native error.
    virtual int errorNumber(const QSqlError &error) const = 0;
    // The native text of an error, without what the dialect itself wrote around it.
    virtual QString errorText(const QSqlError &error) const = 0;
};

// A statement through Qt's driver, its values bound; its rows can be read once, forwards. Throws Error.
QSqlQuery runQuery(const SqlDialect &dialect, const QSqlDatabase &connection, const QString &sql,
                   const QVariantList &values = {});

} // namespace dao
