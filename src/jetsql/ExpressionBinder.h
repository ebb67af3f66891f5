// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Conversions.h"
#include "jetsql/Scope.h"

#include <QDateTime>
#include <functional>

namespace dao::sql {

// What the binders of one statement share.
struct BindContext {
    const Catalog &catalog;
    const std::function<QDateTime()> &now;
    GivenParameters &parameters;
};

// Binds expressions in a scope. Operators are in ExpressionBinder.cpp and Comparisons.cpp, function calls in
// FunctionCalls.cpp. Throws Error: TooFewParameters for a name that is neither a field nor a parameter,
// AmbiguousField for one that may be several, TypeMismatch, UndefinedFunction, SyntaxError.
class ExpressionBinder {
public:
    ExpressionBinder(const BindContext &context, const Scope &scope)
        : m_context(context)
        , m_scope(scope)
    {
    }

    BoundPtr bind(const Expression &expression);
    BoundPtr bindCondition(const Expression &expression);
    // In HAVING, the items and ORDER BY of a SELECT with aggregates or GROUP BY.
    void setAggregatesAllowed(bool allowed) { m_aggregatesAllowed = allowed; }

private:
    BoundPtr field(const Expression &expression);
    BoundPtr parameter(const ParameterUse &use);
    BoundPtr binary(const Expression &expression);
    BoundPtr arithmetic(Operator op, const BoundPtr &left, const BoundPtr &right, QStringView place);
    BoundPtr junction(const Expression &expression);
    BoundPtr between(const Expression &expression);
    BoundPtr inList(const Expression &expression);
    BoundPtr inSelect(const Expression &expression);
    BoundPtr ofSelect(const Expression &expression); // EXISTS and a SELECT as a value

    // Comparisons.cpp
    BoundPtr compare(Operator op, const BoundPtr &left, const BoundPtr &right, QStringView place);
    BoundPtr asGuid(const BoundPtr &text);

    // FunctionCalls.cpp: a function of the table, an aggregate, or one that takes its arguments in its own way.
    BoundPtr functionCall(const Expression &expression);
    BoundPtr aggregate(const Expression &expression, Aggregate aggregate);
    std::vector<BoundPtr> bindAll(const Expression &expression);
    struct SpecialForm;
    static const SpecialForm *specialForm(QStringView name);
    BoundPtr clock(const Expression &expression);
    BoundPtr isNull(const Expression &expression);
    BoundPtr isOfType(const Expression &expression);
    BoundPtr nz(const Expression &expression);
    BoundPtr iif(const Expression &expression);
    BoundPtr switchOf(const Expression &expression);
    BoundPtr choose(const Expression &expression);
    BoundPtr format(const Expression &expression);
    BoundPtr cstr(const Expression &expression);
    BoundPtr cdate(const Expression &expression);
    BoundPtr string(const Expression &expression);
    BoundPtr call(QStringView function, const Expression &expression);

    const BindContext &m_context;
    const Scope &m_scope;
    bool m_aggregatesAllowed = false;
    bool m_inAggregate = false;
};

} // namespace dao::sql
