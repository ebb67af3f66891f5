// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Dialect.h"

namespace dao {

// The SQL of SQLite 3.40. Text columns collate by JET_TEXT, and Jet's functions are registered on the
// connection (SqliteFunctions).
class SqliteDialect final : public Dialect {
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
    QString functionName(const QString &name) const override;

    QString rowIdentity(const QString &alias) const override;
    QString identical(const QString &left, const QString &right, FieldType type) const override;
    QString columnDeclaration(const ColumnInfo &column) const override;
    QString rowNumberDeclaration() const override;

    QString createIndex(const QString &schema, const QString &table, const IndexInfo &index) const override;
    QString dropIndex(const QString &schema, const QString &table, const IndexInfo &index) const override;

    QVariant toNative(const QVariant &value, FieldType type) const override;

    // The column that a declared type stands for: what columnDeclaration() writes, read back.
    static ColumnInfo declaredColumn(const QString &name, const QString &declaredType, bool required);
};

} // namespace dao
