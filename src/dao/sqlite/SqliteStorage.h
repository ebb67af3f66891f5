// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Storage.h"
#include "dao/sqlite/SqliteDialect.h"
#include "dao/sqlite/SqliteFile.h"

#include <QHash>

namespace dao {

// Files of SQLite 3.40: one connection, each database attached under its schema name. Loading of whole files is in
// SqliteLoading.cpp.
class SqliteStorage final : public Storage {
public:
    const Dialect &dialect() const override { return m_dialect; }

    QString driverName() const override;
    void openConnection(QSqlDatabase &connection, const QString &name, const Account &account) const override;
    QString fullName(const QString &name) const override;
    QString sameName(const QString &name) const override;
    QString attach(QSqlDatabase &connection, const QString &name, const QString &proposed,
                   bool readOnly) const override;
    void detach(QSqlDatabase &connection, const QString &schema) const override;
    void requireInPlace() const override;
    void createDatabase(QSqlDatabase &connection, const QString &name) const override;
    QStringList tables(QSqlDatabase &connection, const QString &schema) const override;
    TableInfo describe(QSqlDatabase &connection, const QString &schema, const QString &table) const override;
    qint64 insertRow(QSqlDatabase &connection, const QString &sql, const QVariantList &values,
                     const QString &autoNumber) const override;
    void begin(QSqlDatabase &connection) const override;
    bool inTransaction(QSqlDatabase &connection) const override;
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
    std::unique_ptr<NativeInsert> openInsert(QSqlDatabase &connection, const QString &nativeTable,
                                             const QList<ColumnInfo> &columns) const override;
    const IndexInfo *brokenIndex(const Error &error, const TableInfo &table) const override;
    int errorNumber(const QSqlError &error) const override;
    QString errorText(const QSqlError &error) const override;
    QString linkedName(const QString &name, const QString &holder) const override;
    QString nameOfLinked(const QString &linked, const QString &holder) const override;

private:
    SqliteDialect m_dialect;
    mutable QHash<QString, SqliteFile> m_files; // attached and written to, by schema
};

} // namespace dao
