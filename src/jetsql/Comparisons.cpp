// SPDX-License-Identifier: Apache-2.0
#include "jetsql/ExpressionBinder.h"
#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

using Kind = Bound::Kind;

// A text that is no number is not equal to any number, and neither below nor above it.
BoundPtr compareWithNumber(Operator op, const BoundPtr &text, const BoundPtr &number, bool textLeft)
{
    const BoundPtr converted = toNumber(text, {}, BadText::IsNull);
    const BoundPtr plain =
        comparison(Kind::Compare, op, textLeft ? converted : number, textLeft ? number : converted);
    if (op != Operator::NotEqual || (converted->isConstant() && converted->type != FieldType::Null))
        return plain;
    const BoundPtr noNumber = text->isConstant()
                                  ? condition(Kind::IsNull, {number}, true)
                                  : condition(Kind::And, {condition(Kind::IsNull, {text}, true),
                                                          condition(Kind::IsNull, {converted})});
    return condition(Kind::Or, {plain, noNumber});
}

} // namespace

BoundPtr ExpressionBinder::compare(Operator op, const BoundPtr &left, const BoundPtr &right,
                                   QStringView place)
{
    const TypeClass a = classOf(left->type);
    const TypeClass b = classOf(right->type);
    if (a == TypeClass::Null || b == TypeClass::Null)
        return nullOf(FieldType::Boolean);
    if (a == TypeClass::Binary || b == TypeClass::Binary)
        throwTypeMismatch(place);
    if (a == TypeClass::Text && b == TypeClass::Text) {
        const bool guid = left->type == FieldType::Guid || right->type == FieldType::Guid;
        return comparison(Kind::CompareText, op, guid ? asGuid(left) : left, guid ? asGuid(right) : right);
    }
    if (a == TypeClass::Boolean && b == TypeClass::Boolean
        && (op == Operator::Equal || op == Operator::NotEqual))
        return comparison(Kind::Compare, op, left, right);
    if (a == TypeClass::Date || b == TypeClass::Date) {
        // Dates compare as stored; a constant or parameter becomes a date so that the field's index is used.
        const auto isFixed = [](const BoundPtr &n) { return n->isConstant() || n->kind == Kind::Parameter; };
        if (a == TypeClass::Text || b == TypeClass::Text) {
            const bool constantText = (a == TypeClass::Text ? left : right)->isConstant();
            const BadText bad = constantText ? BadText::IsError : BadText::IsNull;
            return comparison(Kind::Compare, op, toDate(left, place, bad), toDate(right, place, bad));
        }
        if (a == b || isFixed(left) || isFixed(right))
            return comparison(Kind::Compare, op, toDate(left, place), toDate(right, place));
        return comparison(Kind::Compare, op, toNumber(left, place), toNumber(right, place));
    }
    if (a == TypeClass::Text)
        return compareWithNumber(op, left, toNumber(right, place), true);
    if (b == TypeClass::Text)
        return compareWithNumber(op, right, toNumber(left, place), false);
    return comparison(Kind::Compare, op, toNumber(left, place), toNumber(right, place));
}

// A constant or parameter that is a GUID in the form in which GUIDs are stored; other texts as they are.
BoundPtr ExpressionBinder::asGuid(const BoundPtr &text)
{
    if (text->type == FieldType::Guid)
        return text;
    if (text->kind == Kind::Parameter)
        return parameter({text->parameter.parameter, true});
    return text->isConstant() ? constant(FieldType::Guid, guidText(text->value.toString())) : text;
}

} // namespace dao::sql
