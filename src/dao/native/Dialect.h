// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Catalog.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace dao {

// How a native engine writes SQL: text only, no connection. Functions that write SQL get operands that are
// native SQL already, parenthesised where needed.
class Dialect {
public:
    virtual ~Dialect() = default;

    // --- text of the language -------------------------------------------------------------------
    virtual QString identifier(const QString &name) const; // "name", inner quotes doubled
    QString qualified(const QString &schema, const QString &name) const; // "schema"."name"
    virtual QString textLiteral(const QString &text) const; // 'text', quotes doubled
    virtual QString dateLiteral(const QDateTime &date) const = 0; // compares with stored dates by their index
    virtual QString numberLiteral(double value) const; // not negative
    virtual QString booleanLiteral(bool value) const = 0; // as a stored value
    // The value of a parameter of that type, bound at `place`.
    virtual QString parameter(FieldType, const QString &place) const { return place; }
    // A Yes/No value as a condition, and a condition (true, false or Null) as a Yes/No value.
    virtual QString conditionFromBoolean(const QString &value) const = 0;
    virtual QString booleanFromCondition(const QString &condition) const = 0;
    // A Yes/No value as a number: -1 or 0.
    virtual QString numberFromBoolean(const QString &value) const = 0;
    // Null where a value of that type is wanted.
    virtual QString nullLiteral(FieldType) const { return QStringLiteral("NULL"); }
    // A number as an operand of + - * / and of sums, where the native engine would compute whole numbers
    // otherwise.
    virtual QString computed(const QString &number) const { return number; }
    // Texts joined by ||, in parentheses, as a text that compares without regard to case.
    virtual QString concatenated(const QString &texts) const { return texts; }
    // What follows the table of an inner join whose condition is said by a later join.
    virtual QString joinedAnyway() const { return {}; }
    virtual QString limit(int rows) const; // the clause that follows ORDER BY
    // "expr ASC/DESC" with Null first ascending and last descending.
    virtual QString orderTerm(const QString &expression, FieldType type, bool descending) const = 0;
    // A text comparison without regard to case, with a native operator such as "=" or "<", by index where
    // there is one.
    virtual QString compareText(const QString &left, const QString &op, const QString &right) const = 0;
    // GROUP BY and DISTINCT terms of a text.
    virtual QString groupText(const QString &expression) const = 0;
    // The text against a constant pattern; by a range of the index where the pattern begins with letters.
    virtual QString likePattern(const QString &text, const QString &pattern) const = 0;
    // The text against a pattern that is not constant.
    virtual QString likeExpression(const QString &text, const QString &pattern) const = 0;

    // The native name of a function of the SQL ("mid", "format", ...), of a conversion or of first() and last(); each
    // takes its arguments as JetFunctions describes them. Names are lower-case.
    virtual QString functionName(const QString &name) const = 0;

    // --- rows and tables ------------------------------------------------------------------------
    // The hidden expression that identifies a row of the table spoken of as `alias` (quoted already).
    virtual QString rowIdentity(const QString &alias) const = 0;
    // "a and b are the same value, Null equal to Null, letter case told apart".
    virtual QString identical(const QString &left, const QString &right, FieldType type) const = 0;
    // A column's declaration in CREATE TABLE, name included.
    virtual QString columnDeclaration(const ColumnInfo &column) const = 0;
    // Declarations of the columns that every table has beside its own; they are not described.
    virtual QStringList hiddenColumns() const { return {}; }
    // The declaration of a whole number that each new row gets by itself, for the engine's own tables.
    virtual QString rowNumberDeclaration() const = 0;
    // What a new table, or new columns of one, need beside their declarations.
    virtual QStringList completeTable(const QString &nativeName, const QList<ColumnInfo> &columns) const;
    // The statement that makes a column of a table take no Null; empty when the table must be made anew for
    // it.
    virtual QString requireColumn(const QString &nativeName, const QString &column) const;

    // The statements that make and remove an index of a table.
    virtual QString createIndex(const QString &schema, const QString &table,
                                const IndexInfo &index) const = 0;
    virtual QString dropIndex(const QString &schema, const QString &table, const IndexInfo &index) const = 0;
    // "INSERT INTO table (columns) VALUES (?, ...)".
    QString insertStatement(const QString &nativeTable, const QList<ColumnInfo> &columns) const;

    // --- values ---------------------------------------------------------------------------------
    // A native value as the type's variant: int (Byte, Integer, Long, AutoNumber), double, bool, QDateTime
    // (UTC, standing for a date without zone), QString, QByteArray; Null is an invalid variant.
    virtual QVariant fromNative(const QVariant &value, FieldType type) const;
    virtual QVariant toNative(const QVariant &value, FieldType type) const;
};

} // namespace dao
