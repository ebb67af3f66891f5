// SPDX-License-Identifier: Apache-2.0
#include "jetsql/ExpressionBinder.h"

#include "jetsql/SelectBinder.h"
#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

BoundPtr negatedIf(bool negated, BoundPtr condition)
{
    return negated ? sql::condition(Bound::Kind::Not, {std::move(condition)}) : condition;
}

QStringView functionOf(Operator op)
{
    switch (op) {
    case Operator::Add:
        return u"add";
    case Operator::Subtract:
        return u"subtract";
    case Operator::Multiply:
        return u"multiply";
    case Operator::Divide:
        return u"divide";
    case Operator::IntegerDivide:
        return u"integerdivide";
    case Operator::Modulo:
        return u"modulo";
    default:
        return u"power";
    }
}

// Texts joined; constants at once.
BoundPtr concatenated(const BoundPtr &left, const BoundPtr &right)
{
    if (left->isConstant() && right->isConstant())
        return constant(FieldType::Text, QString(left->value.toString() + right->value.toString()));
    return make({.kind = Bound::Kind::Concatenate, .type = FieldType::Text, .arguments = {left, right}});
}

// The text against the pattern of LIKE; without its signs it is a comparison.
BoundPtr like(const BoundPtr &text, const BoundPtr &pattern)
{
    if (text->type == FieldType::Null || pattern->type == FieldType::Null)
        return nullOf(FieldType::Boolean);
    if (pattern->isConstant() && literalPrefix(pattern->value.toString()) == pattern->value.toString())
        return comparison(Bound::Kind::CompareText, Operator::Equal, text, pattern);
    return condition(Bound::Kind::Like, {text, pattern});
}

} // namespace

BoundPtr ExpressionBinder::bind(const Expression &expression)
{
    switch (expression.kind) {
    case Expression::Kind::Constant:
        return constant(expression.constant.type, expression.constant.value);
    case Expression::Kind::Field:
        return field(expression);
    case Expression::Kind::Negate:
        return sql::call(u"negate", {toNumber(bind(*expression.arguments[0]), expression.place)},
                         expression.place);
    case Expression::Kind::Not:
        return condition(Bound::Kind::Not, {bindCondition(*expression.arguments[0])});
    case Expression::Kind::Binary:
        return binary(expression);
    case Expression::Kind::Between:
        return between(expression);
    case Expression::Kind::In:
        return inList(expression);
    case Expression::Kind::InSelect:
        return inSelect(expression);
    case Expression::Kind::IsNull:
        return condition(Bound::Kind::IsNull, {bind(*expression.arguments[0])}, expression.negated);
    case Expression::Kind::Exists:
    case Expression::Kind::Scalar:
        return ofSelect(expression);
    case Expression::Kind::Call:
        return functionCall(expression);
    }
    return {};
}

BoundPtr ExpressionBinder::bindCondition(const Expression &expression)
{
    return toCondition(bind(expression), expression.place);
}

BoundPtr ExpressionBinder::field(const Expression &expression)
{
    Scope::Found found = m_scope.find(expression.qualifier, expression.name);
    if (expression.qualifier.isEmpty()) {
        if (const int given = m_context.parameters.find(expression.name); given >= 0) {
            if (found.table != nullptr)
                throwFieldAndParameter(expression.place);
            return parameter({given, false});
        }
        // [table.field] in one pair of brackets
        const qsizetype point = expression.name.indexOf(u'.');
        if (found.table == nullptr && point > 0)
            found = m_scope.find(expression.name.first(point), expression.name.mid(point + 1));
        for (const auto &[word, value] :
             {std::pair(u"yes", true), std::pair(u"no", false), std::pair(u"off", false)}) {
            if (found.table == nullptr
                && expression.place.compare(QStringView(word), Qt::CaseInsensitive) == 0)
                return constant(FieldType::Boolean, value);
        }
    }
    if (found.table == nullptr)
        throwUnknownField(expression.place);
    return fieldOf(found.table, found.column, expression.place);
}

BoundPtr ExpressionBinder::parameter(const ParameterUse &use)
{
    const FieldType type = m_context.parameters.use(use.parameter);
    if (type == FieldType::Null)
        return constant(type, {});
    return make({.kind = Bound::Kind::Parameter, .type = type, .parameter = use});
}

BoundPtr ExpressionBinder::binary(const Expression &expression)
{
    if (expression.op == Operator::And || expression.op == Operator::Or)
        return junction(expression);
    const QStringView place = expression.place;
    const BoundPtr left = bind(*expression.arguments[0]);
    const BoundPtr right = bind(*expression.arguments[1]);
    switch (expression.op) {
    case Operator::Xor:
        return condition(Bound::Kind::Xor, {toCondition(left, expression.arguments[0]->place),
                                            toCondition(right, expression.arguments[1]->place)});
    case Operator::Like:
        return negatedIf(expression.negated, like(toText(left, place), toText(right, place)));
    case Operator::Concatenate:
        return concatenated(neverNull(toText(left, place)), neverNull(toText(right, place)));
    case Operator::Add:
        if (classOf(left->type) == TypeClass::Text && classOf(right->type) == TypeClass::Text)
            return concatenated(left, right);
        [[fallthrough]];
    case Operator::Subtract:
    case Operator::Multiply:
    case Operator::Divide:
    case Operator::IntegerDivide:
    case Operator::Modulo:
    case Operator::Power:
        return arithmetic(expression.op, left, right, place);
    default:
        return compare(expression.op, left, right, place);
    }
}

BoundPtr ExpressionBinder::arithmetic(Operator op, const BoundPtr &left, const BoundPtr &right,
                                      QStringView place)
{
    // Any operation with Null is Null.
    if (left->type == FieldType::Null || right->type == FieldType::Null)
        return constant(FieldType::Null, {});
    const bool leftDate = classOf(left->type) == TypeClass::Date;
    const bool rightDate = classOf(right->type) == TypeClass::Date;
    const BoundPtr a = toNumber(left, place);
    const BoundPtr b = toNumber(right, place);
    const BoundPtr result = sql::call(functionOf(op), {a, b}, place);
    // A date and a number of days is a date; the days between two dates are a number.
    const bool isDate =
        leftDate != rightDate && (op == Operator::Add || (op == Operator::Subtract && leftDate));
    return isDate ? toDate(result, place) : result;
}

BoundPtr ExpressionBinder::junction(const Expression &expression)
{
    const bool isAnd = expression.op == Operator::And;
    std::vector<BoundPtr> conditions;
    bool numberBefore = false;
    for (const ExpressionPtr &argument : expression.arguments) {
        const BoundPtr value = bind(*argument);
        // AND of two numbers works on their bits, which is another thing than both being true.
        const bool number = classOf(value->type) == TypeClass::Number;
        if (isAnd && number && numberBefore)
            throwUnsupported(expression.place);
        numberBefore = numberBefore || number;
        conditions.push_back(toCondition(value, argument->place));
    }
    return condition(isAnd ? Bound::Kind::And : Bound::Kind::Or, std::move(conditions));
}

BoundPtr ExpressionBinder::between(const Expression &expression)
{
    const BoundPtr value = bind(*expression.arguments[0]);
    const BoundPtr low = bind(*expression.arguments[1]);
    const BoundPtr high = bind(*expression.arguments[2]);
    return negatedIf(
        expression.negated,
        condition(Bound::Kind::And, {compare(Operator::GreaterOrEqual, value, low, expression.place),
                                     compare(Operator::LessOrEqual, value, high, expression.place)}));
}

BoundPtr ExpressionBinder::inList(const Expression &expression)
{
    const BoundPtr value = bind(*expression.arguments[0]);
    std::vector<BoundPtr> choices;
    for (size_t i = 1; i < expression.arguments.size(); ++i)
        choices.push_back(compare(Operator::Equal, value, bind(*expression.arguments[i]), expression.place));
    return negatedIf(expression.negated, condition(Bound::Kind::Or, std::move(choices)));
}

BoundPtr ExpressionBinder::inSelect(const Expression &expression)
{
    BoundPtr value = bind(*expression.arguments[0]);
    auto select =
        std::make_shared<BoundSelect>(SelectBinder(m_context, &m_scope).bindSingleColumn(*expression.select));
    const TypeClass left = classOf(value->type);
    const TypeClass right = classOf(select->columns.front().type);
    if (left != right && left != TypeClass::Null) {
        // As in a comparison: as dates when one is a date, else as numbers.
        const TypeClass common = right == TypeClass::Null                              ? left
                                 : left == TypeClass::Date || right == TypeClass::Date ? TypeClass::Date
                                                                                       : TypeClass::Number;
        value = toClass(value, common, expression.place);
        for (BoundBlock &block : select->blocks) {
            BoundPtr &item = block.items.front();
            item = toClass(item, common, item->place.isEmpty() ? expression.place : item->place);
            if (item->type == FieldType::Null)
                item = nullOf(typeOf(common));
        }
    }
    return make({.kind = Bound::Kind::InSelect,
                 .type = FieldType::Boolean,
                 .negated = expression.negated,
                 .arguments = {std::move(value)},
                 .select = std::move(select)});
}

BoundPtr ExpressionBinder::ofSelect(const Expression &expression)
{
    const SelectBinder binder(m_context, &m_scope);
    if (expression.kind == Expression::Kind::Exists)
        return make({.kind = Bound::Kind::Exists,
                     .type = FieldType::Boolean,
                     .select = std::make_shared<const BoundSelect>(binder.bind(*expression.select))});
    auto select = std::make_shared<const BoundSelect>(binder.bindSingleColumn(*expression.select));
    const ResultColumn &column = select->columns.front();
    return make({.kind = Bound::Kind::Scalar, .type = column.type, .size = column.size, .select = select});
}

} // namespace dao::sql
