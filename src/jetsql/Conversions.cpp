// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Conversions.h"

#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

bool isNull(const BoundPtr &node)
{
    return node->type == FieldType::Null;
}

BoundPtr assignedNumber(const BoundPtr &node, FieldType type, QStringView place)
{
    const BoundPtr number = classOf(node->type) == TypeClass::Text ? call(u"assignednumber", {node}, place)
                                                                   : toNumber(node, place);
    if (number->type == type || isNull(number))
        return number;
    switch (type) {
    case FieldType::Byte:
        return call(u"cbyte", {number}, place);
    case FieldType::Integer:
        return call(u"cint", {number}, place);
    case FieldType::Long:
    case FieldType::AutoNumber:
        return call(u"clng", {number}, place);
    case FieldType::Currency:
        return call(u"ccur", {number}, place);
    case FieldType::Single:
        return call(u"csng", {number}, place);
    default:
        return call(u"cdbl", {number}, place);
    }
}

BoundPtr assignedText(const BoundPtr &node, const ColumnInfo &column, QStringView place)
{
    const BoundPtr text = toText(node, place);
    if (column.type == FieldType::Guid)
        return node->type == FieldType::Guid ? text : call(u"assignguid", {text}, place);
    if (column.size == 0 || (text->size > 0 && text->size <= column.size))
        return text;
    return call(u"assigntext", {text, constant(FieldType::Long, qlonglong(column.size))}, place);
}

// Never Null: what is not known to be true is No.
BoundPtr assignedBoolean(const BoundPtr &node, QStringView place)
{
    if (!node->isConstant())
        return sql::node(Bound::Kind::Case, FieldType::Boolean,
                         {toCondition(node, place), constant(FieldType::Boolean, true),
                          constant(FieldType::Boolean, false)});
    if (node->type == FieldType::Boolean)
        return node;
    return constant(FieldType::Boolean, !isNull(node) && toNumber(node, place)->value.toDouble() != 0);
}

} // namespace

BoundPtr constant(FieldType type, const QVariant &value)
{
    Bound constant;
    constant.type = value.isValid() ? type : FieldType::Null;
    constant.value = value;
    return std::make_shared<const Bound>(std::move(constant));
}

BoundPtr nullOf(FieldType type)
{
    Bound null;
    null.nullOf = type;
    return std::make_shared<const Bound>(std::move(null));
}

BoundPtr fieldOf(const BoundTable *table, int column, QStringView place)
{
    Bound field;
    field.kind = Bound::Kind::Field;
    field.type = table->info->columns[column].type;
    field.size = table->info->columns[column].size;
    field.table = table;
    field.column = column;
    field.place = place;
    return std::make_shared<const Bound>(std::move(field));
}

BoundPtr node(Bound::Kind kind, FieldType type, std::vector<BoundPtr> arguments)
{
    Bound node;
    node.kind = kind;
    node.type = type;
    node.arguments = std::move(arguments);
    return std::make_shared<const Bound>(std::move(node));
}

BoundPtr condition(Bound::Kind kind, std::vector<BoundPtr> arguments, bool negated)
{
    Bound condition;
    condition.kind = kind;
    condition.type = FieldType::Boolean;
    condition.arguments = std::move(arguments);
    condition.negated = negated;
    return std::make_shared<const Bound>(std::move(condition));
}

BoundPtr comparison(Bound::Kind kind, Operator op, BoundPtr left, BoundPtr right)
{
    Bound comparison;
    comparison.kind = kind;
    comparison.type = FieldType::Boolean;
    comparison.op = op;
    comparison.arguments = {std::move(left), std::move(right)};
    return std::make_shared<const Bound>(std::move(comparison));
}

BoundPtr withType(const BoundPtr &node, FieldType type)
{
    Bound copy = *node;
    copy.type = type;
    return std::make_shared<const Bound>(std::move(copy));
}

BoundPtr call(QStringView name, const std::vector<BoundPtr> &arguments, QStringView place)
{
    const Function *function = findFunction(name);
    if (std::all_of(arguments.begin(), arguments.end(), [](const BoundPtr &a) { return a->isConstant(); })) {
        std::vector<QVariant> values;
        for (const BoundPtr &argument : arguments)
            values.push_back(argument->value);
        try {
            return constant(function->result, callFunction(*function, values));
        } catch (const FunctionError &error) {
            throwError(error.number, error.text, place);
        }
    }
    Bound call;
    call.kind = Bound::Kind::Call;
    call.type = function->result;
    call.function = function;
    call.arguments = arguments;
    return std::make_shared<const Bound>(std::move(call));
}

BoundPtr toNumber(const BoundPtr &node, QStringView place, BadText bad)
{
    switch (classOf(node->type)) {
    case TypeClass::Null:
    case TypeClass::Number:
        return node;
    case TypeClass::Boolean:
        if (node->isConstant())
            return constant(FieldType::Long, qlonglong(node->value.toBool() ? -1 : 0));
        return sql::node(Bound::Kind::NumberOfBoolean, FieldType::Integer, {node});
    case TypeClass::Date:
        return call(u"serial", {node}, place);
    case TypeClass::Text:
        return call(bad == BadText::IsNull ? u"numberornull" : u"number", {node}, place);
    case TypeClass::Binary:
        break;
    }
    throwTypeMismatch(place);
}

BoundPtr toText(const BoundPtr &node, QStringView place)
{
    switch (classOf(node->type)) {
    case TypeClass::Boolean:
    case TypeClass::Number:
        return call(u"numbertext", {toNumber(node, place)}, place);
    case TypeClass::Date:
        return call(u"datetext", {node}, place);
    case TypeClass::Null:
    case TypeClass::Text:
        return node;
    case TypeClass::Binary:
        break;
    }
    throwTypeMismatch(place);
}

BoundPtr neverNull(const BoundPtr &text)
{
    const BoundPtr empty = constant(FieldType::Text, QStringLiteral(""));
    if (text->isConstant())
        return text->type == FieldType::Null ? empty : text;
    return node(Bound::Kind::Coalesce, FieldType::Text, {text, empty});
}

BoundPtr toDate(const BoundPtr &node, QStringView place, BadText bad)
{
    switch (classOf(node->type)) {
    case TypeClass::Null:
    case TypeClass::Date:
        return node;
    case TypeClass::Boolean:
    case TypeClass::Number:
        return call(u"datefromserial", {toNumber(node, place)}, place);
    case TypeClass::Text:
        return call(bad == BadText::IsNull ? u"dateornull" : u"datefromtext", {node}, place);
    case TypeClass::Binary:
        break;
    }
    throwTypeMismatch(place);
}

BoundPtr toCondition(const BoundPtr &node, QStringView place)
{
    const TypeClass type = classOf(node->type);
    if (type == TypeClass::Boolean || type == TypeClass::Null)
        return node;
    return comparison(Bound::Kind::Compare, Operator::NotEqual, toNumber(node, place),
                      constant(FieldType::Long, 0LL));
}

BoundPtr toClass(const BoundPtr &node, TypeClass wanted, QStringView place)
{
    if (isNull(node) || classOf(node->type) == wanted)
        return node;
    switch (wanted) {
    case TypeClass::Boolean:
        return toCondition(node, place);
    case TypeClass::Number:
        return toNumber(node, place, BadText::IsNull);
    case TypeClass::Date:
        return toDate(node, place, BadText::IsNull);
    case TypeClass::Text:
        return toText(node, place);
    case TypeClass::Null:
        return node;
    case TypeClass::Binary:
        break;
    }
    throwTypeMismatch(place);
}

BoundPtr assigned(const BoundPtr &node, const ColumnInfo &column, QStringView place)
{
    const TypeClass type = classOf(column.type);
    if (type == TypeClass::Boolean)
        return assignedBoolean(node, place);
    if (isNull(node))
        return nullOf(column.type);
    switch (type) {
    case TypeClass::Number:
        return assignedNumber(node, column.type, place);
    case TypeClass::Date:
        return classOf(node->type) == TypeClass::Text ? call(u"assigneddate", {node}, place)
                                                      : toDate(node, place);
    case TypeClass::Text:
        return assignedText(node, column, place);
    default:
        break;
    }
    if (node->type != FieldType::Binary)
        throwTypeMismatch(place);
    return node;
}

TypeClass commonClass(const std::vector<BoundPtr> &values)
{
    TypeClass common = TypeClass::Null;
    for (const BoundPtr &value : values) {
        const TypeClass type = classOf(value->type);
        if (type == TypeClass::Null || type == common)
            continue;
        if (common == TypeClass::Null)
            common = type;
        else if ((common == TypeClass::Number && type == TypeClass::Boolean)
                 || (common == TypeClass::Boolean && type == TypeClass::Number))
            common = TypeClass::Number;
        else
            common = TypeClass::Text;
    }
    return common;
}

FieldType commonType(const std::vector<BoundPtr> &values, TypeClass common)
{
    FieldType type = FieldType::Null;
    for (const BoundPtr &value : values) {
        if (isNull(value) || value->type == type)
            continue;
        if (type == FieldType::Null)
            type = value->type;
        else if (common == TypeClass::Number)
            type = FieldType::Double;
        else if (common == TypeClass::Text)
            type = FieldType::Memo;
    }
    return classOf(type) == common ? type : typeOf(common);
}

FieldType typeOf(TypeClass wanted)
{
    switch (wanted) {
    case TypeClass::Boolean:
        return FieldType::Boolean;
    case TypeClass::Number:
        return FieldType::Double;
    case TypeClass::Date:
        return FieldType::Date;
    case TypeClass::Text:
        return FieldType::Text;
    case TypeClass::Null:
    case TypeClass::Binary:
        break;
    }
    return FieldType::Null;
}

} // namespace dao::sql
