// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/SqlDialect.h"
#include "dao/postgres/PostgresCommit.h"

#include <functional>

namespace dao {

struct PostgresAddress;

// PostgreSQL 15: one connection to one database of a server, each database of the practice a schema in it. Texts
// are of the type citext in a database whose own collation is ICU's root, so that every comparison, index, group
// and order takes them without regard to case; the language's functions are the server's own (PostgresFunctions).
// The language is in PostgresDialect.cpp, connecting and schemas in PostgresOpening.cpp, definitions in
// PostgresTables.cpp, whole tables in PostgresLoading.cpp, statements, values and errors in PostgresStorage.cpp.
class PostgresDialect final : public SqlDialect {
public:
    QString textLiteral(const QString &text) const override;
    QString dateLiteral(const QDateTime &date) const override;
    QString numberLiteral(double value) const override;
    QString booleanLiteral(bool value) const override;
    QString conditionFromBoolean(const QString &value) const override;
    QString booleanFromCondition(const QString &condition) const override;
    QString numberFromBoolean(const QString &value) const override;
    QString nullLiteral(FieldType type) const override;
    QString computed(const QString &number) const override;
    QString concatenated(const QString &texts) const override;
    QString joinedAnyway() const override;
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
    QStringList hiddenColumns() const override;
    QString rowNumberDeclaration() const override;
    QStringList completeTable(const QString &nativeName, const QList<ColumnInfo> &columns) const override;
    QString requireColumn(const QString &nativeName, const QString &column) const override;

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
    QString createIndex(const QString &schema, const QString &table, const IndexInfo &index) const override;
    QString dropIndex(const QString &schema, const QString &table, const IndexInfo &index) const override;
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

    // A dialect serves one connection; its functions change nothing of the dialect's but this.
    mutable PostgresCommit m_commit;
    mutable bool m_writing = false; // the open transaction may write
};

} // namespace dao
