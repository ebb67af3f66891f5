// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/NativeCursor.h"
#include "dao/native/NativeInsert.h"
#include "jetsql/Catalog.h"
#include "jetsql/Error.h"

#include <QList>
#include <QString>
#include <QVariantList>
#include <memory>

namespace dao {

// The one connection of a native engine: what runs. Values take the place of the marks '?' in a statement, in
// their order, as the dialect's toNative() makes them. Everything throws Error.
class Connection {
public:
    virtual ~Connection() = default;

    // A statement that reads; its rows are stepped through with the cursor.
    virtual std::unique_ptr<NativeCursor> select(const QString &sql, const QVariantList &values = {}) = 0;
    // The same rows, of which most often no more than `rows` are read. By default select(), for engines that
    // find a row when it is stepped to.
    virtual std::unique_ptr<NativeCursor> selectFirst(int /*rows*/, const QString &sql,
                                                      const QVariantList &values)
    {
        return select(sql, values);
    }
    // The same for more rows than are to be kept in memory; nothing else is done on the connection as long as
    // the cursor is there. By default select().
    virtual std::unique_ptr<NativeCursor> stream(const QString &sql) { return select(sql); }

    // A statement that writes, inside a transaction or outside, wholly or not at all; the rows affected.
    virtual int execute(const QString &sql, const QVariantList &values = {}) = 0;
    // INSERT of one row; the number that it got in the autonumber column, 0 when there is none (empty name).
    virtual qint64 insertRow(const QString &sql, const QVariantList &values, const QString &autoNumber) = 0;
    // Adds rows to a table, of which these columns are given values.
    virtual std::unique_ptr<NativeInsert> openInsert(const QString &nativeTable,
                                                     const QList<ColumnInfo> &columns) = 0;

    // Begins a transaction that may write and that no other one writes beside: Locked.
    virtual void begin() = 0;
    // Begins a transaction that reads one state of all databases, however long it takes. By default begin().
    virtual void beginReading() { begin(); }
    virtual void commit() = 0;
    // ROLLBACK and savepoints.
    virtual void control(const QString &sql) = 0;
    // False also when the native engine gave a transaction up by itself (disk full, for example).
    virtual bool inTransaction() const = 0;
    // The error of what stands in a transaction that the native engine has given up by itself.
    virtual Error goneTransaction() const = 0;
};

} // namespace dao
