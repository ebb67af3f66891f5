// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Dialect.h"

namespace dao {

// The SQL of PostgreSQL 15. Texts are of the type citext in a database whose own collation is ICU's root, so
// that every comparison, index, group and order takes them without regard to case; the language's functions
// are the server's own (PostgresDefinitions).
class PostgresDialect final : public Dialect {
public:
    QString textLiteral(const QString &text) const override;
    QString dateLiteral(const QDateTime &date) const override;
    QString numberLiteral(double value) const override;
    QString booleanLiteral(bool value) const override;
    QString conditionFromBoolean(const QString &value) const override;
    QString booleanFromCondition(const QString &condition) const override;
    QString numberFromBoolean(const QString &value) const override;
    QString parameter(FieldType type, const QString &place) const override;
    QString nullLiteral(FieldType type) const override;
    QString computed(const QString &number) const override;
    QString concatenated(const QString &texts) const override;
    QString joinedAnyway() const override;
    QString orderTerm(const QString &expression, FieldType type, bool descending) const override;
    QString compareText(const QString &left, const QString &op, const QString &right) const override;
    QString groupText(const QString &expression) const override;
    QString likePattern(const QString &text, const QString &pattern) const override;
    QString likeExpression(const QString &text, const QString &pattern) const override;
    QString functionName(const QString &name) const override;

    QString rowIdentity(const QString &alias) const override;
    QString identical(const QString &left, const QString &right, FieldType type) const override;
    QString columnDeclaration(const ColumnInfo &column) const override;
    QStringList hiddenColumns() const override;
    QString rowNumberDeclaration() const override;
    QStringList completeTable(const QString &nativeName, const QList<ColumnInfo> &columns) const override;
    QString requireColumn(const QString &nativeName, const QString &column) const override;
    QString createIndex(const QString &schema, const QString &table, const IndexInfo &index) const override;
    QString dropIndex(const QString &schema, const QString &table, const IndexInfo &index) const override;

    // The column that a declared type stands for: what columnDeclaration() writes, read back.
    static ColumnInfo declaredColumn(const QString &name, const QString &type, bool isNumbered,
                                     bool required);
    // The name of an index on the server; one that would be cut there ends with a sum of itself instead.
    static QString indexName(const QString &table, const IndexInfo &index);
};

} // namespace dao
