// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/ExpressionBinder.h"

namespace dao::sql {

// The FROM clause: registers its tables in a scope, in the order in which they are written, and then binds the
// conditions of its joins, which may speak of all of them.
class FromBinder {
public:
    FromBinder(const BindContext &context, Scope &scope)
        : m_context(context)
        , m_scope(scope)
    {
    }

    // Throws Error: ObjectNotFound, SyntaxError for two tables of one name, and as ExpressionBinder.
    std::vector<BoundFromPtr> bind(const std::vector<FromPtr> &list, ExpressionBinder &expressions);

private:
    BoundFromPtr tables(const From &from);
    static void bindJoins(const From &from, BoundFrom &bound, ExpressionBinder &expressions);

    const BindContext &m_context;
    Scope &m_scope;
};

} // namespace dao::sql
