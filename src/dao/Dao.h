// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Query.h"
#include "dao/native/StorageKind.h"
#include "jetsql/Catalog.h"
#include "jetsql/Error.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>

// The DAO object model. Members keep DAO's names. All databases opened in one workspace share one
// native connection, so that a transaction of the workspace spans them and a table of one can be linked into
// another. One thread at a time. Every member that touches the database throws dao::Error.
namespace dao {

class Connection; // of a native engine
class Database;
class QueryDef;
class Recordset;
struct Account;
class Session; // the native connection of a workspace, shared by its objects
struct TableInfo;

enum class RecordsetType { Table, Dynaset, Snapshot };
// What is going to be read of a query: most often a row among the first few (a server then sends and finds no more
// than these at first), or all of them.
enum class RowsWanted { All, First };
enum class EditMode { None, InProgress, Add };

// One field of a recordset's current row (or of its edit buffer).
class Field {
public:
    QString Name() const;
    FieldType Type() const;
    int Size() const;
    QString SourceTable() const;
    QString SourceField() const;

    // The value in the edit buffer while editing, else in the current row; an invalid variant for Null. int,
    // double, bool, QDateTime, QString or QByteArray by the field's type. NoCurrentRecord without a row.
    QVariant Value() const;
    // Only between AddNew or Edit and Update (else UpdateWithoutEdit). Converts as the engine does: an empty
    // text is Null in a number or date field, numbers round half to even, a Yes/No field takes no Null; too
    // large a number is Overflow or ConversionError, too long a text FieldTooSmall.
    void setValue(const QVariant &value);

    bool isNull() const { return !Value().isValid(); }
    QString text() const { return Value().toString(); } // Null is empty
    double number() const { return Value().toDouble(); } // Null is 0
    QDateTime date() const { return Value().toDateTime(); } // Null is invalid

private:
    friend class Recordset;
    Field(Recordset &recordset, int column)
        : m_recordset(&recordset)
        , m_column(column)
    {
    }
    Recordset *m_recordset;
    int m_column;
};

// Rows of a table or a query. Rows are read when they are first asked for. Updatable rows know the row of the
// table that they stand for.
class Recordset {
public:
    ~Recordset();
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;

    QString Name() const; // its source: the SQL or the table's name, as given (at most 256 characters)
    RecordsetType Type() const;
    bool Updatable() const;

    bool Bof() const;
    bool Eof() const; // DAO's EOF, a name that C's headers take
    // Rows visited so far (0 only when there are none); all of them after MoveLast and for a table.
    int RecordCount() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext(); // NoCurrentRecord when already past the end
    void MovePrevious();

    // By name, "table.field", or a position from 0; ItemNotFound otherwise. The first of equal names.
    Field Fields(const QString &name);
    Field Fields(int position);
    int FieldCount() const;

    // Starts a new row in the edit buffer. ReadOnly when the rows cannot be updated.
    void AddNew();
    // Reads the current row again into the edit buffer. RecordDeleted when it is gone.
    void Edit();
    // Writes the fields that were set. RecordDeleted or RecordChanged when the row is gone or was changed
    // since Edit, DuplicateKey, FieldRequired, Locked; after an error the buffer is still there and nothing
    // is written. After adding, the current row is the one before AddNew; MoveLast or Bookmark do not find
    // the new row.
    void Update();
    void CancelUpdate();
    void Delete();
    EditMode editMode() const;
    bool isInTransaction() const; // of its workspace
    // After an Update of a new row: the value of its autonumber field, 0 when it has none.
    qint64 LastAutoNumber() const;

    // Table recordsets: the index that Seek uses and the rows are ordered by.
    QString Index() const;
    void setIndex(const QString &name); // NotAnIndex when there is none of that name
    // Finds the first row for which "index values <op> keys" holds, with < and <= the last one; op is one of
    // = < <= > >=. Fewer keys than the
    // index has fields compare the leading ones. NoMatch tells; without a match there is no current row.
    void Seek(const QString &op, const QVariant &key1, const QVariant &key2 = {}, const QVariant &key3 = {});
    bool NoMatch() const;

    void Close();

private:
    friend class Database;
    friend class Field;
    struct Private;
    explicit Recordset(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

// A table of a database, its own or linked. A linked one has Connect ";DATABASE=" & path and the name of the
// table there. Changes of an appended definition take effect with RefreshLink.
class TableDef {
public:
    QString Name() const;
    QString Connect() const; // empty for the database's own table
    void setConnect(const QString &connect);
    QString SourceTableName() const;
    void setSourceTableName(const QString &name);
    void
    RefreshLink(); // CannotFindFile, ObjectNotFound when the target is not there; the link stays as it was
    QList<ColumnInfo> Fields() const;
    QList<IndexInfo> Indexes() const;

private:
    friend class Database;
    friend class TableDefs;
    struct Private;
    std::shared_ptr<Private> d;
};

class TableDefs {
public:
    int Count() const;
    bool contains(const QString &name) const; // without regard to case
    TableDef operator[](const QString &name) const; // ItemNotFound
    TableDef operator[](int position) const;
    void Append(const TableDef &table); // TableExists
    void Delete(const QString &name); // of a linked table: only the link
    // Makes queries of a linked table fail until it is linked anew or released: its link leads elsewhere and
    // could not be changed. The stored link stays as it is.
    void Withhold(const QString &name);
    // Ends that: the stored link is right, since another program has changed it.
    void Release(const QString &name);
    void Refresh();

private:
    friend class Database;
    explicit TableDefs(Database &database)
        : m_database(&database)
    {
    }
    Database *m_database;
};

class Database {
public:
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    QString Name() const; // the full path of its file, as it was opened
    // A SELECT, or a table's name. RecordsetType::Table needs a table. With parameters:
    // OpenRecordset({"select * from Archivio where cod_paz = [patient]", {{"patient", code}}}).
    std::unique_ptr<Recordset> OpenRecordset(const QString &source,
                                             RecordsetType type = RecordsetType::Dynaset,
                                             RowsWanted wanted = RowsWanted::All);
    std::unique_ptr<Recordset> OpenRecordset(const Query &query, RecordsetType type = RecordsetType::Dynaset,
                                             RowsWanted wanted = RowsWanted::All);
    // An action query or a definition. All or nothing.
    void Execute(const QString &sql);
    void Execute(const Query &query);
    // A query that is run several times with other values. It must not outlive the database.
    QueryDef CreateQueryDef(const QString &sql);
    int RecordsAffected() const; // of the last Execute
    class TableDefs TableDefs();
    TableDef CreateTableDef(const QString &name);
    void Close();

    StorageKind kind() const;
    // What is wrong with the file, a line each and at most so many; empty when it is whole, and for a database of a
    // server, which watches over its own pages.
    QStringList damage(Thoroughness thoroughness, int most) const;

    // The native connection and this database's schema name there, for bulk loading and measuring by hosts.
    // The chart never uses it.
    Connection &nativeConnection() const;
    QString nativeSchema() const;
    // The native SQL of a SELECT, as OpenRecordset would run it; for measuring and for error reports.
    QString nativeSql(const QString &sql) const;
    const Catalog &catalog() const;

private:
    friend class Workspace;
    friend class TableDef;
    friend class TableDefs;
    friend class Recordset;
    friend class BulkInsert;
    friend class BulkLoad;
    friend class BulkReader;
    friend qint64 lastAutoNumber(Database &database, const QString &table);
    struct Private;
    explicit Database(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

// A Jet SQL text whose parameters get their values one by one.
class QueryDef {
public:
    QString SQL() const { return m_query.sql; }
    // The value of the parameter of that name, without regard to case; Null until it is set. See Parameter.
    QVariant &Parameters(const QString &name);
    std::unique_ptr<Recordset> OpenRecordset(RecordsetType type = RecordsetType::Dynaset,
                                             RowsWanted wanted = RowsWanted::All) const;
    void Execute() const; // Database::RecordsAffected tells how many rows

private:
    friend class Database;
    QueryDef(Database &database, const QString &sql)
        : m_database(&database)
        , m_query{sql, {}}
    {
    }
    Database *m_database;
    Query m_query;
};

// Transactions nest. What is open when the workspace goes away is rolled back.
class Workspace {
public:
    ~Workspace();
    std::shared_ptr<Database> OpenDatabase(const QString &name, bool readOnly = false);
    // A new, empty database; TableExists when there is something of that name.
    std::shared_ptr<Database> CreateDatabase(const QString &name);
    // A transaction that only reads, and sees one state of all databases however long it takes; after a database
    // was opened, outside transactions.
    void BeginReading();
    void BeginTrans(); // takes the write lock of the workspace's databases; Locked
    void CommitTrans(); // a commit that fails is rolled back, then the error passes on
    void Rollback();

private:
    friend class DBEngine;
    explicit Workspace(std::shared_ptr<Session> session);
    std::shared_ptr<Session> m_session;
};

class DBEngine {
public:
    DBEngine();
    ~DBEngine();

    QString SystemDB() const { return m_systemDb; }
    void setSystemDB(const QString &path) { m_systemDb = path; }
    // The account with which the databases of a server are opened.
    QString DefaultUser() const;
    void setDefaultUser(const QString &user);
    void setDefaultPassword(const QString &password); // write-only, as in DAO

    // Where date() and now() of the SQL come from; the system's clock when it is not set.
    void setNow(std::function<QDateTime()> now);

    Workspace &DefaultWorkspace();
    std::unique_ptr<Workspace> CreateWorkspace();
    // In the default workspace.
    std::shared_ptr<Database> OpenDatabase(const QString &name, bool readOnly = false);

private:
    QString m_systemDb;
    std::shared_ptr<Account> m_account; // shared with the workspaces
    std::shared_ptr<std::function<QDateTime()>> m_now; // shared with the workspaces
    std::unique_ptr<Workspace> m_default;
};

// A transaction as an object: begins in the constructor or throws; rolls back quietly unless committed.
class Transaction {
public:
    explicit Transaction(Workspace &workspace);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    void commit();

private:
    Workspace &m_workspace;
    bool m_open = true;
};

// Fills one table fast, inside the caller's transaction: one prepared native INSERT, values converted as
// Field does. Rows are not read back.
class BulkInsert {
public:
    BulkInsert(Database &database, const QString &table, const QStringList &fields);
    ~BulkInsert();
    // One per field; a null or invalid variant is Null. After an error the row is not there, and the next one
    // can be added.
    void add(const QVariantList &values);
    // Many rows, in their order, as fast as the native engine takes them. A row that cannot be written is told to
    // `refused` by its position and is not there; what that throws passes on.
    void addRows(const QList<QVariantList> &rows,
                 const std::function<void(qsizetype row, const Error &)> &refused);
    // The unique index that a DuplicateKey error of add() speaks of; empty when it cannot be told.
    IndexInfo brokenIndex(const Error &error) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace dao
