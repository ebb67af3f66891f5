// SPDX-License-Identifier: Apache-2.0
#include "jetsql/ExpressionBinder.h"
#include "jetsql/SqlErrors.h"
#include "values/JetValues.h"

#include <cstring>

namespace dao::sql {
namespace {

bool isName(QStringView name, QStringView other)
{
    return name.compare(other, Qt::CaseInsensitive) == 0;
}

void requireArguments(const Expression &call, size_t least, size_t most)
{
    if (call.arguments.size() < least || call.arguments.size() > most || call.star)
        throwWrongArguments(call.place);
}

// Values of their common class, of which one is chosen: conditions stand before them, see Bound::Kind::Case.
BoundPtr choice(const std::vector<BoundPtr> &conditions, const std::vector<BoundPtr> &values,
                QStringView place)
{
    const TypeClass common = commonClass(values);
    std::vector<BoundPtr> arguments;
    for (size_t i = 0; i < values.size(); ++i) {
        if (i < conditions.size())
            arguments.push_back(conditions[i]);
        arguments.push_back(toClass(values[i], common, place));
    }
    return make(
        {.kind = Bound::Kind::Case, .type = commonType(values, common), .arguments = std::move(arguments)});
}

// Only the patterns of format() whose meaning is known: a wrong text would go unnoticed.
bool isKnownPattern(QStringView signs, TypeClass type)
{
    if (type != TypeClass::Date)
        return std::none_of(signs.begin(), signs.end(),
                            [](QChar c) { return QStringView(u"#,;@<>").contains(c); });
    return std::none_of(signs.begin(), signs.end(),
                        [](QChar c) { return c.isLetter() && !QStringView(u"dmyhns").contains(c.toLower()); })
           && !signs.contains(u"ddd", Qt::CaseInsensitive) && !signs.contains(u"mmm", Qt::CaseInsensitive);
}

} // namespace

// A function that takes its arguments in its own way: by their types, or not all of them.
struct ExpressionBinder::SpecialForm {
    QStringView name; // lower-case
    size_t least; // arguments
    size_t most;
    BoundPtr (ExpressionBinder::*bind)(const Expression &);
};

const ExpressionBinder::SpecialForm *ExpressionBinder::specialForm(QStringView name)
{
    static constexpr size_t any = 200;
    static constexpr SpecialForm forms[] = {
        {u"date", 0, 0, &ExpressionBinder::clock},
        {u"now", 0, 0, &ExpressionBinder::clock},
        {u"time", 0, 0, &ExpressionBinder::clock},
        {u"isnull", 1, 1, &ExpressionBinder::isNull},
        {u"isdate", 1, 1, &ExpressionBinder::isOfType},
        {u"isnumeric", 1, 1, &ExpressionBinder::isOfType},
        {u"nz", 1, 2, &ExpressionBinder::nz},
        {u"iif", 3, 3, &ExpressionBinder::iif},
        {u"switch", 2, any, &ExpressionBinder::switchOf},
        {u"choose", 2, any, &ExpressionBinder::choose},
        {u"format", 1, 2, &ExpressionBinder::format},
        {u"cstr", 1, 1, &ExpressionBinder::cstr},
        {u"cdate", 1, 1, &ExpressionBinder::cdate},
        {u"cvdate", 1, 1, &ExpressionBinder::cdate},
        {u"string", 2, 2, &ExpressionBinder::string},
    };
    const auto found = std::find_if(std::begin(forms), std::end(forms),
                                    [name](const SpecialForm &f) { return isName(name, f.name); });
    return found == std::end(forms) ? nullptr : found;
}

std::vector<BoundPtr> ExpressionBinder::bindAll(const Expression &expression)
{
    std::vector<BoundPtr> values;
    for (const ExpressionPtr &argument : expression.arguments)
        values.push_back(bind(*argument));
    return values;
}

BoundPtr ExpressionBinder::functionCall(const Expression &expression)
{
    if (const Aggregate function = findAggregate(expression.name); function != Aggregate::None)
        return aggregate(expression, function);
    if (const SpecialForm *form = specialForm(expression.name)) {
        requireArguments(expression, form->least, form->most);
        return (this->*form->bind)(expression);
    }
    // instr's place to begin stands before its other arguments.
    const bool fromPlace = isName(expression.name, u"instr") && expression.arguments.size() > 2;
    const QStringView name = fromPlace ? QStringView(u"instrfrom") : expression.name;
    const Function *function = findFunction(name);
    if (function == nullptr || ((function->traits & Internal) != 0 && !fromPlace))
        throwUnknownFunction(expression.place);
    return call(name, expression);
}

BoundPtr ExpressionBinder::call(QStringView name, const Expression &expression)
{
    const Function *function = findFunction(name);
    const char *parameter = function->parameters;
    const size_t all = std::strlen(parameter);
    const char *bar = std::strchr(parameter, '|');
    requireArguments(expression, bar ? size_t(bar - parameter) : all, bar ? all - 1 : all);
    std::vector<BoundPtr> arguments;
    for (const ExpressionPtr &argument : expression.arguments) {
        if (*parameter == '|')
            ++parameter;
        const BoundPtr value = bind(*argument);
        arguments.push_back(*parameter == 't'   ? toText(value, argument->place)
                            : *parameter == 'd' ? toDate(value, argument->place)
                                                : toNumber(value, argument->place));
        ++parameter;
    }
    return sql::call(name, arguments, expression.place);
}

// date(), now() and time()
BoundPtr ExpressionBinder::clock(const Expression &expression)
{
    const QDateTime now = m_context.now();
    const QTime time(now.time().hour(), now.time().minute(), now.time().second());
    return constant(FieldType::Date,
                    clivara::jet::dateTime(isName(expression.name, u"time") ? clivara::jet::zeroDate().date()
                                                                            : now.date(),
                                           isName(expression.name, u"date") ? QTime(0, 0) : time));
}

BoundPtr ExpressionBinder::isNull(const Expression &expression)
{
    return condition(Bound::Kind::IsNull, bindAll(expression));
}

// isdate() and isnumeric()
BoundPtr ExpressionBinder::isOfType(const Expression &expression)
{
    const BoundPtr value = bind(*expression.arguments[0]);
    const TypeClass type = classOf(value->type);
    const bool isDate = isName(expression.name, u"isdate");
    if (type == TypeClass::Text)
        return sql::call(isDate ? u"isdatetext" : u"isnumerictext", {value}, expression.place);
    const bool fits =
        isDate ? type == TypeClass::Date : type == TypeClass::Number || type == TypeClass::Boolean;
    return fits ? condition(Bound::Kind::IsNull, {value}, true) : constant(FieldType::Boolean, false);
}

BoundPtr ExpressionBinder::nz(const Expression &expression)
{
    std::vector<BoundPtr> values = bindAll(expression);
    if (values.size() < 2)
        values.push_back(classOf(values[0]->type) == TypeClass::Number
                             ? constant(FieldType::Long, 0LL)
                             : constant(FieldType::Text, QStringLiteral("")));
    if (values[0]->isConstant())
        return values[0]->type == FieldType::Null ? values[1] : values[0];
    const TypeClass common = commonClass(values);
    const FieldType type = commonType(values, common);
    for (BoundPtr &value : values)
        value = toClass(value, common, expression.place);
    return make({.kind = Bound::Kind::Coalesce, .type = type, .arguments = std::move(values)});
}

BoundPtr ExpressionBinder::iif(const Expression &expression)
{
    return choice({bindCondition(*expression.arguments[0])},
                  {bind(*expression.arguments[1]), bind(*expression.arguments[2])}, expression.place);
}

BoundPtr ExpressionBinder::switchOf(const Expression &expression)
{
    if (expression.arguments.size() % 2 != 0)
        throwWrongArguments(expression.place);
    std::vector<BoundPtr> conditions;
    std::vector<BoundPtr> values;
    for (size_t i = 0; i < expression.arguments.size(); i += 2) {
        conditions.push_back(bindCondition(*expression.arguments[i]));
        values.push_back(bind(*expression.arguments[i + 1]));
    }
    return choice(conditions, values, expression.place);
}

BoundPtr ExpressionBinder::choose(const Expression &expression)
{
    std::vector<BoundPtr> values = bindAll(expression);
    const BoundPtr index = sql::call(u"clng", {toNumber(values.front(), expression.place)}, expression.place);
    values.erase(values.begin());
    std::vector<BoundPtr> conditions;
    for (size_t i = 1; i <= values.size(); ++i)
        conditions.push_back(comparison(Bound::Kind::Compare, Operator::Equal, index,
                                        constant(FieldType::Long, qlonglong(i))));
    return choice(conditions, values, expression.place);
}

// format(value[, pattern]): of Null an empty text.
BoundPtr ExpressionBinder::format(const Expression &expression)
{
    const std::vector<BoundPtr> arguments = bindAll(expression);
    const QStringView place = expression.place;
    const BoundPtr &value = arguments[0];
    BoundPtr text;
    if (arguments.size() == 1 || value->type == FieldType::Null) {
        text = toText(value, place);
    } else {
        const BoundPtr pattern = toText(arguments[1], place);
        const TypeClass type = classOf(value->type);
        if (pattern->isConstant() && !isKnownPattern(pattern->value.toString(), type))
            throwUnsupported(place);
        if (type == TypeClass::Date || type == TypeClass::Text)
            text =
                sql::call(type == TypeClass::Date ? u"formatdate" : u"formattext", {value, pattern}, place);
        else
            text = sql::call(u"formatnumber", {toNumber(value, place), pattern}, place);
    }
    return neverNull(text);
}

BoundPtr ExpressionBinder::cstr(const Expression &expression)
{
    return toText(bind(*expression.arguments[0]), expression.place);
}

BoundPtr ExpressionBinder::cdate(const Expression &expression)
{
    return toDate(bind(*expression.arguments[0]), expression.place);
}

// string(n, character), the character as a text or as its code
BoundPtr ExpressionBinder::string(const Expression &expression)
{
    const BoundPtr count = toNumber(bind(*expression.arguments[0]), expression.place);
    BoundPtr character = bind(*expression.arguments[1]);
    if (classOf(character->type) == TypeClass::Number)
        character = sql::call(u"chr", {character}, expression.place);
    return sql::call(u"string", {count, toText(character, expression.place)}, expression.place);
}

BoundPtr ExpressionBinder::aggregate(const Expression &expression, Aggregate function)
{
    if (!m_aggregatesAllowed || m_inAggregate)
        throwAggregateHere(expression.place);
    const auto result = [function](FieldType type, int size, std::vector<BoundPtr> arguments) {
        return make({.kind = Bound::Kind::Aggregate,
                     .type = type,
                     .size = size,
                     .aggregate = function,
                     .arguments = std::move(arguments)});
    };
    if (expression.star) {
        if (function != Aggregate::Count)
            throwSyntaxError(expression.place);
        return result(FieldType::Long, 0, {});
    }
    if (expression.arguments.size() != 1)
        throwWrongArguments(expression.place);
    m_inAggregate = true;
    const BoundPtr value = bind(*expression.arguments[0]);
    m_inAggregate = false;
    switch (function) {
    case Aggregate::Count:
        return result(FieldType::Long, 0, {value});
    case Aggregate::Sum:
    case Aggregate::Avg:
        return result(FieldType::Double, 0, {toNumber(value, expression.place)});
    case Aggregate::Min:
    case Aggregate::Max:
        if (value->type == FieldType::Boolean) // true is the lower one
            return result(FieldType::Integer, 0, {toNumber(value, expression.place)});
        return result(value->type == FieldType::AutoNumber ? FieldType::Long : value->type, value->size,
                      {value});
    default:
        return result(value->type, value->size, {value});
    }
}

} // namespace dao::sql
