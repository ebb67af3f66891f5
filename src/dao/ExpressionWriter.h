// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Operand.h"
#include "dao/ParameterMarks.h"
#include "dao/Scope.h"
#include "dao/Translator.h"

#include <functional>

namespace dao::sql {

// What the writers of one statement share.
struct Context {
    const Dialect &dialect;
    const Catalog &catalog;
    const std::function<QDateTime()> &now;
    ParameterMarks &parameters;
};

// Translates expressions in a scope. Operators are in ExpressionWriter.cpp and Comparisons.cpp, function
// calls in FunctionCalls.cpp.
class ExpressionWriter {
public:
    ExpressionWriter(const Context &context, const Scope &scope);

    Operand write(const Expression &expression);
    QString writeCondition(const Expression &expression);
    const Conversions &conversions() const { return m_convert; }

    // In a SELECT with aggregates or GROUP BY: fields may only stand in aggregates or belong to a term of
    // GROUP BY (native SQL). checkGrouped throws when one written since the last check does not.
    void setAggregatesAllowed(bool allowed) { m_aggregatesAllowed = allowed; }
    void setGroupTerms(const QStringList &terms) { m_groupTerms = terms; }
    void checkGrouped();
    void forgetLooseFields() { m_looseFields.clear(); }

private:
    Operand field(const Expression &expression);
    Operand parameter(int position, bool asGuid);
    Operand negate(const Expression &expression);
    Operand binary(const Expression &expression);
    Operand arithmetic(Operator op, const Operand &left, const Operand &right, QStringView place);
    Operand addition(const Operand &left, const Operand &right, QStringView place);
    Operand junction(const Expression &expression);
    Operand between(const Expression &expression);
    Operand inList(const Expression &expression);
    Operand inSelect(const Expression &expression);
    Operand scalar(const Expression &expression);
    Operand exists(const Expression &expression);
    Operand isNull(const Operand &operand, bool negated);

    // Comparisons.cpp
    QString compare(Operator op, const Operand &left, const Operand &right, QStringView place);
    QString compareWithNumber(Operator op, const Operand &text, const Operand &number, bool textLeft);
    Operand guidOperand(const Operand &operand);
    QString like(const Operand &text, const Operand &pattern);

    // FunctionCalls.cpp
    Operand call(const Expression &expression);
    Operand aggregate(const Expression &expression);
    Operand special(const Expression &expression, bool &known);
    Operand format(const Expression &expression);
    Operand conversion(const Expression &expression, QStringView name);
    Operand choice(const std::vector<std::pair<QString, Operand>> &cases, const Operand *otherwise,
                   QStringView place);
    Operand caseOf(const Expression &expression, bool iif);
    TypeClass commonClass(const std::vector<const Operand *> &operands) const;

    const Context &m_context;
    const Scope &m_scope;
    Conversions m_convert;
    bool m_aggregatesAllowed = false;
    bool m_inAggregate = false;
    QStringList m_groupTerms;
    std::vector<QStringView> m_looseFields; // fields outside aggregates and GROUP BY terms
};

// The type of a list of values that are converted to their common class.
FieldType commonType(const std::vector<const Operand *> &operands, TypeClass common);

} // namespace dao::sql
