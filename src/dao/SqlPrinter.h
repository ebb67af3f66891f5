// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Dialect.h"
#include "jetsql/Bound.h"

namespace dao::sql {

// Writes bound statements as native SQL. Statements and SELECTs are in SqlPrinter.cpp, FROM in JoinPrinter.cpp,
// expressions in ExpressionPrinter.cpp. Throws Error (SyntaxError) for a join that no native engine takes.
class SqlPrinter {
public:
    explicit SqlPrinter(const Dialect &dialect)
        : m_dialect(dialect)
    {
    }

    // "?" stands for the parameters; `uses` gets what each stands for, in their order.
    QString print(const BoundStatement &statement, QList<ParameterUse> &uses) const;

private:
    enum class Names {
        Own,
        OfResult
    }; // of the columns: those of the result are given when SQL around speaks of them

    QString statement(const BoundStatement &statement) const;
    QString insert(const BoundStatement &statement) const;
    QString update(const BoundStatement &statement) const;
    QString remove(const BoundStatement &statement) const;
    QString select(const BoundSelect &select, Names names) const;
    QString block(const BoundBlock &block, Names names, bool comparesRows) const;
    QString firstOfOrder(const BoundBlock &block, Names names) const;
    QString clauses(const BoundBlock &block) const; // FROM to HAVING
    QString rows(const BoundRows &rows) const; // FROM and WHERE
    QString where(const BoundRows &rows) const;
    QString table(const BoundTable &table) const;
    QString output(const Bound &item, bool compares) const;
    QString rowIdentity(const BoundTable &table) const;

    QString from(const std::vector<BoundFromPtr> &list) const;
    QString joined(const BoundFrom &from, bool &rightJoin) const;
    void flattenInner(const BoundFrom &from, QString &sql, QString &conditions, bool &open) const;

    // An expression as a value (a Yes/No value for a condition), and as a native condition.
    QString value(const Bound &node) const;
    QString condition(const Bound &node) const;
    QString plain(const Bound &node) const; // what it is: a condition as one
    QString constant(const Bound &node) const;
    QString call(const Bound &node) const;
    QString cases(const Bound &node) const;
    QString aggregate(const Bound &node) const;
    QString inSelect(const Bound &node) const;
    QString joinedBy(QStringView separator, const Bound &node,
                     QString (SqlPrinter::*part)(const Bound &) const) const;

    const Dialect &m_dialect;
};

} // namespace dao::sql
