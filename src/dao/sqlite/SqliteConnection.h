// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Connection.h"
#include "dao/sqlite/SqliteHandle.h"
#include "dao/sqlite/SqliteStatement.h"

namespace dao {

// A connection of SQLite that has no database but those that are attached to it.
class SqliteConnection final : public Connection {
public:
    SqliteConnection();

    sqlite3 *handle() const { return m_handle.get(); }

    std::unique_ptr<NativeCursor> select(const QString &sql, const QVariantList &values) override;
    int execute(const QString &sql, const QVariantList &values) override;
    qint64 insertRow(const QString &sql, const QVariantList &values, const QString &autoNumber) override;
    std::unique_ptr<NativeInsert> openInsert(const QString &nativeTable,
                                             const QList<ColumnInfo> &columns) override;
    void begin() override;
    void commit() override;
    void control(const QString &sql) override;
    bool inTransaction() const override;
    Error goneTransaction() const override;

private:
    SqliteHandle m_handle;
    SqliteStatements m_statements;
};

} // namespace dao
