// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Storage.h"
#include "dao/postgres/PostgresCommit.h"
#include "dao/postgres/PostgresDialect.h"

#include <functional>

namespace dao {

struct PostgresAddress;

// PostgreSQL 15: one connection to one database of a server, each database of the practice a schema in it. Connecting and
// schemas are in PostgresOpening.cpp, definitions in PostgresTables.cpp, whole tables in PostgresLoading.cpp, statements and
// errors in PostgresStorage.cpp.
class PostgresStorage final : public Storage {
public:
    const Dialect &dialect() const override { return m_dialect; }

    QString driverName() const override;
    void openConnection(QSqlDatabase &connection, const QString &name, const Account &account) const override;
    QString fullName(const QString &name) const override;
    QString sameName(const QString &name) const override;
    QString attach(QSqlDatabase &connection, const QString &name, const QString &proposed,
                   bool readOnly) const override;
    void detach(QSqlDatabase &connection, const QString &schema) const override;
    void createDatabase(QSqlDatabase &connection, const QString &name) const override;
    QStringList tables(QSqlDatabase &connection, const QString &schema) const override;
    TableInfo describe(QSqlDatabase &connection, const QString &schema, const QString &table) const override;
    int execute(QSqlDatabase &connection, const QString &sql, const QVariantList &values) const override;
    qint64 insertRow(QSqlDatabase &connection, const QString &sql, const QVariantList &values,
                     const QString &autoNumber) const override;
    void begin(QSqlDatabase &connection) const override;
    void beginReading(QSqlDatabase &connection) const override;
    void control(QSqlDatabase &connection, const QString &sql) const override;
    bool inTransaction(QSqlDatabase &connection) const override;
    Error goneTransaction() const override;
    qint64 definitionVersion(QSqlDatabase &connection, const QString &schema) const override;
    void setLastAutoNumber(QSqlDatabase &connection, const QString &schema, const QString &table,
                           qint64 number) const override;
    qint64 lastAutoNumber(QSqlDatabase &connection, const QString &schema,
                          const TableInfo &table) const override;
    void beginLoad(QSqlDatabase &connection, const QString &schema) const override;
    void endLoad(QSqlDatabase &connection, const QString &schema) const override;
    std::unique_ptr<ExclusiveUse> useExclusively(const QString &name) const override;
    std::unique_ptr<NativeCursor> openCursor(QSqlDatabase &connection, const QString &sql,
                                             const QVariantList &values) const override;
    std::unique_ptr<NativeCursor> openFirstRows(QSqlDatabase &connection, const QString &sql,
                                                const QVariantList &values, int rows) const override;
    std::unique_ptr<NativeCursor> openStream(QSqlDatabase &connection, const QString &sql) const override;
    QString linkedName(const QString &name, const QString &holder) const override;
    QString nameOfLinked(const QString &linked, const QString &holder) const override;
    std::unique_ptr<NativeInsert> openInsert(QSqlDatabase &connection, const QString &nativeTable,
                                             const QList<ColumnInfo> &columns) const override;
    const IndexInfo *brokenIndex(const Error &error, const TableInfo &table) const override;
    int errorNumber(const QSqlError &error) const override;
    QString errorText(const QSqlError &error) const override;

private:
    // Does `write` in the transaction that is open, or in one of its own, so that its commit can be told from one that
    // was not done.
    void write(QSqlDatabase &connection, const std::function<void()> &write) const;
    void define(const QSqlDatabase &connection) const;
    void renewDefinitions(QSqlDatabase &connection, const PostgresAddress &address) const;

    PostgresDialect m_dialect;
    // A storage serves one connection; its functions change nothing of it but this.
    mutable PostgresCommit m_commit;
    mutable bool m_writing = false; // the open transaction may write
};

} // namespace dao
