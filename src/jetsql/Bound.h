// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Ast.h"
#include "jetsql/JetFunctions.h"
#include "jetsql/Parameters.h"

// Statements as bound: names are fields and parameters, every expression has a type, what is used as another type is
// converted, and what can be computed is a constant. Nothing is native yet. The trees point into the catalog and into
// the SQL that was parsed, and hold as long as both.
namespace dao {

// One field of a SELECT's result.
struct ResultColumn {
    QString name; // the field's name; "table.field" when a join brings the same name more than once
    QString qualifiedName; // always "table.field" (the alias when there is one); empty for a computed field
    FieldType type = FieldType::Unknown;
    int size = 0;
    int source = -1; // index of its table among the row sources, -1 for a computed field
    int sourceColumn = -1; // index into that table's columns
};

// One table of a SELECT's FROM clause.
struct RowSource {
    const TableInfo *table = nullptr;
    QString alias; // the name under which the SQL speaks of it
    // Position in the native result of the hidden column that identifies this table's row; -1 when the rows
    // of the result do not stand for rows of the table (GROUP BY, DISTINCT, UNION).
    int identityColumn = -1;
};

} // namespace dao

namespace dao::sql {

struct Bound;
struct BoundSelect;
using BoundPtr = std::shared_ptr<const Bound>;

// A table of a FROM clause under the name by which fields refer to it.
struct BoundTable {
    std::shared_ptr<const TableInfo> info;
    QString alias;
    std::shared_ptr<const BoundSelect> derived; // null for a table of the database
};
using BoundTablePtr = std::shared_ptr<const BoundTable>;

// An expression. Parts that are used twice are shared.
struct Bound {
    enum class Kind {
        Constant, // a Null may be one of a type (nullOf)
        Field, // of a table in FROM, here or in a SELECT around
        Parameter,
        Call, // function, arguments of its parameters' types
        NumberOfBoolean, // -1 or 0
        Concatenate, // two texts or more
        Coalesce,
        Case, // condition, value, condition, value..., and the value otherwise if their number is odd
        Aggregate, // of one argument; count of none: of rows
        Scalar, // select
        // Conditions
        Compare, // two values of a class that is not text
        CompareText, // two texts, without regard to case
        Like, // text, pattern
        And, // of one condition or more
        Or,
        Xor,
        Not,
        IsNull,
        InSelect, // value; select
        Exists, // select
    };

    Kind kind = Kind::Constant;
    FieldType type = FieldType::Null;
    int size = 0; // of a Text field
    QVariant value = {}; // of a constant, as in Constant
    FieldType nullOf = FieldType::Null;
    const BoundTable *table = nullptr;
    int column = -1;
    ParameterUse parameter = {};
    const Function *function = nullptr;
    Aggregate aggregate = Aggregate::None;
    Operator op = Operator::Add;
    bool negated = false; // IS NOT NULL, NOT IN
    std::vector<BoundPtr> arguments = {};
    std::shared_ptr<const BoundSelect> select = {};
    QStringView place = {}; // of a field or item, for errors

    bool isConstant() const { return kind == Kind::Constant; }
    bool isCondition() const { return kind >= Kind::Compare; }
};

// Whether two expressions of one SELECT always have the same value.
bool same(const Bound &a, const Bound &b);

// A table or a join of two.
struct BoundFrom {
    const BoundTable *table = nullptr;
    JoinKind join = JoinKind::Inner;
    std::unique_ptr<BoundFrom> left;
    std::unique_ptr<BoundFrom> right;
    BoundPtr on;
    QStringView place;

    bool isJoin() const { return left != nullptr; }
};
using BoundFromPtr = std::unique_ptr<BoundFrom>;

// What SELECT, UPDATE and DELETE have in common.
struct BoundRows {
    std::vector<BoundTablePtr> tables; // in the order in which they are written
    std::vector<BoundFromPtr> from;
    BoundPtr where; // null without one
};

struct BoundOrder {
    BoundPtr value;
    bool descending = false;
};

// One SELECT, alone or of a UNION.
struct BoundBlock {
    BoundRows rows;
    bool grouped = false; // a row stands for a group of rows
    bool distinct = false;
    int top = -1;
    std::vector<BoundPtr> items;
    QList<ResultColumn> columns; // of the items
    std::vector<BoundPtr> groupBy;
    BoundPtr having;
    std::vector<BoundOrder> orderBy;
    std::vector<const BoundTable *> identities; // tables whose rows hidden columns behind the items identify
    bool unionAll = false; // of a UNION's block but the first
};

// A SELECT or a UNION of several.
struct BoundSelect {
    std::vector<BoundBlock> blocks;
    bool comparesRows = false; // a UNION without ALL
    QList<ResultColumn> columns;
    QList<RowSource> sources;
};

struct BoundStatement {
    StatementKind kind = StatementKind::Select;
    BoundSelect select; // SELECT
    const TableInfo *target = nullptr; // INSERT, UPDATE, DELETE: the table written
    QList<int> columns; // INSERT, UPDATE: its columns that are written
    std::vector<BoundPtr> values; // one for each
    BoundRows rows; // INSERT ... SELECT, UPDATE, DELETE
    const BoundTable *written = nullptr; // UPDATE, DELETE: the target among the rows' tables
    Definition definition;
};

} // namespace dao::sql
