// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Catalog.h"

#include <QStringView>
#include <QVariant>
#include <memory>
#include <vector>

// Statements as parsed. Names and places are views into the SQL that was parsed.
namespace dao {

enum class StatementKind {
    Select,
    Insert,
    Update,
    Delete,
    CreateTable,
    CreateIndex,
    AddColumn,
    DropColumn,
    DropTable,
    DropIndex
};

// What a definition statement asks for; the database carries it out.
struct Definition {
    QString table;
    QList<ColumnInfo> columns; // CREATE TABLE, ADD COLUMN; DROP COLUMN: names only
    QList<IndexInfo> indexes; // CREATE TABLE's constraints, CREATE INDEX, DROP INDEX: name only
};

} // namespace dao

namespace dao::sql {

struct Select;

struct Constant {
    FieldType type = FieldType::Null;
    QVariant value; // qlonglong, double, QString, QDateTime or bool by the type; invalid for Null
};

enum class Operator {
    Add,
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
    Power,
    Concatenate,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Like,
    And,
    Or,
    Xor
};

struct Expression {
    enum class Kind {
        Constant,
        Field, // qualifier, name
        Negate,
        Not,
        Binary, // And and Or: two or more arguments, the others two
        Between, // value, low, high
        In, // value, choices...
        InSelect, // value; select
        IsNull,
        Exists, // select
        Scalar, // select
        Call, // name, arguments; star for count(*)
    };

    Kind kind = Kind::Constant;
    Operator op = Operator::Add;
    bool negated = false; // NOT LIKE, NOT IN, NOT BETWEEN, IS NOT NULL
    bool star = false;
    Constant constant;
    QStringView qualifier;
    QStringView name;
    std::vector<std::unique_ptr<Expression>> arguments;
    std::unique_ptr<Select> select;
    int depth = 1; // levels of expressions from here down
    QStringView place; // the part of the SQL that this expression is
};
using ExpressionPtr = std::unique_ptr<Expression>;

enum class JoinKind { Inner, Left, Right };

// A table, a derived table or a join of two of them.
struct From {
    // A table or derived table.
    QStringView table;
    QStringView alias; // empty when there is none
    std::unique_ptr<Select> derived;
    // A join.
    JoinKind join = JoinKind::Inner;
    std::unique_ptr<From> left;
    std::unique_ptr<From> right;
    ExpressionPtr on;

    bool isJoin() const { return left != nullptr; }
};
using FromPtr = std::unique_ptr<From>;

struct SelectItem {
    bool star = false;
    QStringView starTable; // of "table.*"; empty for "*"
    ExpressionPtr expression;
    QStringView alias;
};

struct OrderItem {
    ExpressionPtr expression;
    bool descending = false;
};

struct Select {
    bool distinct = false;
    int top = -1;
    std::vector<SelectItem> items;
    std::vector<FromPtr> from;
    ExpressionPtr where;
    std::vector<ExpressionPtr> groupBy;
    ExpressionPtr having;
    std::vector<OrderItem> orderBy; // of the last SELECT of a UNION: of the whole
    std::unique_ptr<Select> next; // the following SELECT of a UNION
    bool unionAll = false;
    QStringView place;
};

struct Assignment {
    QStringView qualifier;
    QStringView field;
    ExpressionPtr value;
};

struct Statement {
    StatementKind kind = StatementKind::Select;
    std::unique_ptr<Select> select; // SELECT; INSERT ... SELECT
    QStringView table; // INSERT: the table; DELETE: the table before ".*", empty without one
    std::vector<QStringView> fields; // INSERT; empty: all
    std::vector<ExpressionPtr> values; // INSERT ... VALUES
    std::vector<FromPtr> from; // UPDATE, DELETE
    std::vector<Assignment> assignments;
    ExpressionPtr where;
    Definition definition;
};

} // namespace dao::sql
