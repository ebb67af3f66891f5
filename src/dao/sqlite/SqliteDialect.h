// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/SqlDialect.h"
#include "dao/sqlite/SqliteFile.h"

#include <QHash>

namespace dao {

// SQLite 3.40: one connection, each database attached under its schema name. Text columns collate by JET_TEXT
// and Jet's functions are registered on the connection (SqliteFunctions). The language is in
// SqliteDialect.cpp, files, tables and values are in SqliteStorage.cpp, loading of whole files in SqliteLoading.cpp.
class SqliteDialect final : public SqlDialect {
public:
    QString textLiteral(const QString &text) const override;
    QString dateLiteral(const QDateTime &date) const override;
    QString booleanLiteral(bool value) const override;
    QString conditionFromBoolean(const QString &value) const override;
    QString booleanFromCondition(const QString &condition) const override;
    QString numberFromBoolean(const QString &value) const override;
    QString orderTerm(const QString &expression, FieldType type, bool descending) const override;
    QString compareText(const QString &left, const QString &op, const QString &right) const override;
    QString groupText(const QString &expression) const override;
    QString likePattern(const QString &text, const QString &pattern) const override;
    QString likeExpression(const QString &text, const QString &pattern) const override;
    QString function(const QString &name, const QStringList &arguments,
                     const QList<FieldType> &types) const override;

    QString rowIdentity(const QString &alias) const override;
    QString identical(const QString &left, const QString &right, FieldType type) const override;
    QString columnDeclaration(const ColumnInfo &column) const override;
    QString rowNumberDeclaration() const override;

    QVariant toNative(const QVariant &value, FieldType type) const override;

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
    QString createIndex(const QString &schema, const QString &table, const IndexInfo &index) const override;
    QString dropIndex(const QString &schema, const QString &table, const IndexInfo &index) const override;
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
    mutable QHash<QString, SqliteFile> m_files; // attached and written to, by schema
};

} // namespace dao
