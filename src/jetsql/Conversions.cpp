// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Conversions.h"

#include "jetsql/SqlErrors.h"

#include <QHash>

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
    static const QHash<FieldType, QStringView> functions{
        {FieldType::Byte, u"cbyte"},      {FieldType::Integer, u"cint"},  {FieldType::Long, u"clng"},
        {FieldType::AutoNumber, u"clng"}, {FieldType::Currency, u"ccur"}, {FieldType::Single, u"csng"}};
    return call(functions.value(type, u"cdbl"), {number}, place);
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
        return make({.kind = Bound::Kind::Case,
                     .type = FieldType::Boolean,
                     .arguments = {toCondition(node, place), constant(FieldType::Boolean, true),
                                   constant(FieldType::Boolean, false)}});
    if (node->type == FieldType::Boolean)
        return node;
    return constant(FieldType::Boolean, !isNull(node) && toNumber(node, place)->value.toDouble() != 0);
}

} // namespace

BoundPtr make(Bound node)
{
    return std::make_shared<const Bound>(std::move(node));
}

BoundPtr constant(FieldType type, const QVariant &value)
{
    return make({.type = value.isValid() ? type : FieldType::Null, .value = value});
}

BoundPtr nullOf(FieldType type)
{
    return make({.nullOf = type});
}

BoundPtr fieldOf(const BoundTable *table, int column, QStringView place)
{
    const ColumnInfo &info = table->info->columns[column];
    return make({.kind = Bound::Kind::Field,
                 .type = info.type,
                 .size = info.size,
                 .table = table,
                 .column = column,
                 .place = place});
}

BoundPtr condition(Bound::Kind kind, std::vector<BoundPtr> arguments, bool negated)
{
    return make(
        {.kind = kind, .type = FieldType::Boolean, .negated = negated, .arguments = std::move(arguments)});
}

BoundPtr comparison(Bound::Kind kind, Operator op, BoundPtr left, BoundPtr right)
{
    return make({.kind = kind,
                 .type = FieldType::Boolean,
                 .op = op,
                 .arguments = {std::move(left), std::move(right)}});
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
    const bool keepsNumber = (function->traits & KeepsNumber) != 0 && isNumeric(arguments.front()->type);
    return make({.kind = Bound::Kind::Call,
                 .type = keepsNumber ? arguments.front()->type : function->result,
                 .function = function,
                 .arguments = arguments});
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
        return make({.kind = Bound::Kind::NumberOfBoolean, .type = FieldType::Integer, .arguments = {node}});
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
    return make({.kind = Bound::Kind::Coalesce, .type = FieldType::Text, .arguments = {text, empty}});
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
