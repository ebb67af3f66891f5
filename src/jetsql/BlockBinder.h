// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/ExpressionBinder.h"

namespace dao::sql {

// Binds one SELECT, clause by clause: FROM, WHERE, GROUP BY and HAVING, the items, ORDER BY.
class BlockBinder {
public:
    // `outer`: the scope of the SELECT around this one; null without one.
    BlockBinder(const BindContext &context, const Scope *outer);

    // Throws as SelectBinder. ORDER BY is left out for a block of a UNION, where it is the whole UNION's.
    BoundBlock bind(const Select &select, bool inUnion);
    // SELECT * of a derived table, ordered by what stands at the end of `last`.
    BoundBlock bindOrdered(std::shared_ptr<const BoundSelect> derived, const Select &last);
    // The tables of FROM that are tables of the database.
    QList<RowSource> sources() const;

private:
    void groups(const Select &select);
    void items(const Select &select);
    void star(const Select &select, QStringView tableName);
    // Fields have their own name or alias; those of equal name from several tables are told apart by the table.
    void nameColumns();
    void tellApart();
    void order(const Select &select);
    BoundPtr orderValue(const Expression &expression);
    // Throws unless the value is one for each group: fields stand in aggregates or belong to a term of GROUP BY.
    void requireGrouped(const Bound &value, QStringView place) const;

    const BindContext &m_context;
    Scope m_scope;
    ExpressionBinder m_expressions;
    std::vector<QStringView> m_aliases; // of the items, as given
    BoundBlock m_block;
};

} // namespace dao::sql
