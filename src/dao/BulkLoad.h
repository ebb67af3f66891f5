// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"

namespace dao {

class NativeCursor;

// Fills a database that nobody else has open and that is thrown away when anything fails: until finish() nothing
// waits for the disk. Definitions are given as structures, so that names may have any characters. Transactions
// are the caller's. For hosts that bring whole tables; the chart never uses it.
class BulkLoad {
public:
    explicit BulkLoad(Database &database); // outside transactions
    BulkLoad(const BulkLoad &) = delete;
    BulkLoad &operator=(const BulkLoad &) = delete;

    // TableExists also when an index has that name natively.
    void createTable(const QString &name, const QList<ColumnInfo> &columns, const QList<IndexInfo> &indexes);
    void dropTable(const QString &name); // ObjectNotFound
    // TableExists when there is one of that name, or a table that has it natively. Rows that a unique index
    // does not allow are DuplicateKey.
    void createIndex(const QString &table, const IndexInfo &index);
    void dropIndex(const QString &table, const QString &index); // ItemNotFound
    // New rows are numbered from the next number on, or after the highest row if that is more. The table has
    // an autonumber field.
    void setLastAutoNumber(const QString &table, qint64 number);
    // Tables can be linked into the database from now on even by who may not change its definitions.
    void prepareLinks();
    // From now on the database is used as any other. What was loaded may still have to reach the disk: that
    // is for the host, which knows when it needs the files.
    void finish(); // outside transactions

private:
    const TableInfo &describe(const QString &table) const;

    Database &m_database;
};

// The number after which an own table's autonumber field goes on; 0 when there is none.
qint64 lastAutoNumber(Database &database, const QString &table);

// Reads fields of a table as they are stored, forward once, in the order in which the database keeps the rows.
// Nothing else is read through its workspace as long as it lives. A table of a server that takes longer than a
// statement may is read in a transaction of Workspace::BeginReading.
class BulkReader {
public:
    BulkReader(Database &database, const QString &table, const QStringList &fields);
    ~BulkReader();
    bool next(); // false after the last row
    // A field of the row by its position in `fields`, as Field::Value() gives it.
    QVariant value(int field) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace dao
