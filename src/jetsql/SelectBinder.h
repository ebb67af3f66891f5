// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/ExpressionBinder.h"

namespace dao::sql {

// Binds a SELECT, or a UNION of several.
class SelectBinder {
public:
    // `outer`: the scope of the SELECT around this one; null without one.
    SelectBinder(const BindContext &context, const Scope *outer)
        : m_context(context)
        , m_outer(outer)
    {
    }

    // Throws Error: NotGrouped, AggregateHere, OrderConflict, FieldCountDiffers, and as FromBinder.
    BoundSelect bind(const Select &select) const;
    // The same for a SELECT that stands for one value or a list of them; SyntaxError for several columns.
    BoundSelect bindSingleColumn(const Select &select) const;
    // The same with hidden columns that identify the rows of the tables, where the result has such rows.
    BoundSelect bindWithIdentities(const Select &select) const;

private:
    BoundSelect unionOf(const Select &select) const;
    BoundSelect ordered(BoundSelect select, const Select &last) const;

    const BindContext &m_context;
    const Scope *m_outer;
};

} // namespace dao::sql
