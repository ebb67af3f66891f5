// SPDX-License-Identifier: Apache-2.0
#include "dao/ExpressionWriter.h"
#include "jetsql/JetFunctions.h"
#include "jetsql/SqlErrors.h"
#include "values/JetValues.h"

#include <cstring>

namespace dao::sql {
namespace {

bool isOneOf(QStringView name, std::initializer_list<QStringView> names)
{
    return std::any_of(names.begin(), names.end(),
                       [name](QStringView n) { return name.compare(n, Qt::CaseInsensitive) == 0; });
}

bool isAggregate(QStringView name)
{
    return isOneOf(name, {u"count", u"sum", u"avg", u"min", u"max", u"first", u"last"});
}

void requireArguments(const Expression &call, size_t least, size_t most)
{
    if (call.arguments.size() < least || call.arguments.size() > most || call.star)
        throwWrongArguments(call.place);
}

} // namespace

FieldType commonType(const std::vector<const Operand *> &operands, TypeClass common)
{
    FieldType type = FieldType::Null;
    for (const Operand *operand : operands) {
        if (operand->type == FieldType::Null)
            continue;
        if (type == FieldType::Null)
            type = operand->type;
        else if (type != operand->type)
            type = common == TypeClass::Number ? FieldType::Double
                   : common == TypeClass::Text ? FieldType::Memo
                                               : type;
    }
    if (classOf(type) == common)
        return type;
    return common == TypeClass::Number ? FieldType::Double
           : common == TypeClass::Text ? FieldType::Text
                                       : type;
}

TypeClass ExpressionWriter::commonClass(const std::vector<const Operand *> &operands) const
{
    TypeClass common = TypeClass::Null;
    for (const Operand *operand : operands) {
        const TypeClass type = classOf(operand->type);
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

Operand ExpressionWriter::call(const Expression &expression)
{
    if (isAggregate(expression.name))
        return aggregate(expression);
    bool known = true;
    const Operand result = special(expression, known);
    if (known)
        return result;

    QStringView name = expression.name;
    if (isOneOf(name, {u"instr"}) && expression.arguments.size() > 2)
        name = u"instrfrom";
    const Function *function = findFunction(name);
    if (function == nullptr || (!function->ofTheLanguage && name != u"instrfrom"))
        throwUnknownFunction(expression.place);
    const size_t all = std::strlen(function->parameters);
    const char *bar = std::strchr(function->parameters, '|');
    requireArguments(expression, bar ? size_t(bar - function->parameters) : all, bar ? all - 1 : all);

    std::vector<Operand> arguments;
    const char *parameter = function->parameters;
    for (const ExpressionPtr &argument : expression.arguments) {
        if (*parameter == '|')
            ++parameter;
        const Operand operand = write(*argument);
        arguments.push_back(*parameter == 't'   ? m_convert.toText(operand)
                            : *parameter == 'd' ? m_convert.toDate(operand, argument->place)
                                                : m_convert.toNumber(operand, argument->place));
        ++parameter;
    }
    Operand value = m_convert.call(name, arguments, expression.place);
    // These keep the kind of number they get.
    if (isOneOf(name, {u"abs", u"int", u"fix", u"round"}) && !value.isConstant
        && isNumeric(arguments[0].type))
        value.type = arguments[0].type;
    return value;
}

Operand ExpressionWriter::special(const Expression &expression, bool &known)
{
    const QStringView name = expression.name;
    const auto argument = [&](size_t i) { return write(*expression.arguments[i]); };
    if (isOneOf(name, {u"date", u"now", u"time"})) {
        requireArguments(expression, 0, 0);
        const QDateTime now = m_context.now();
        const QTime time(now.time().hour(), now.time().minute(), now.time().second());
        const bool day = !isOneOf(name, {u"time"});
        return constantOperand(FieldType::Date,
                               clivara::jet::dateTime(day ? now.date() : clivara::jet::zeroDate().date(),
                                                      isOneOf(name, {u"date"}) ? QTime(0, 0) : time));
    }
    if (isOneOf(name, {u"isnull"})) {
        requireArguments(expression, 1, 1);
        return isNull(argument(0), false);
    }
    if (isOneOf(name, {u"isdate", u"isnumeric"})) {
        requireArguments(expression, 1, 1);
        const Operand operand = argument(0);
        const bool wantsDate = isOneOf(name, {u"isdate"});
        const TypeClass type = classOf(operand.type);
        if (type == TypeClass::Text)
            return m_convert.call(wantsDate ? u"isdatetext" : u"isnumerictext", {operand}, expression.place);
        const bool fits =
            wantsDate ? type == TypeClass::Date : type == TypeClass::Number || type == TypeClass::Boolean;
        return fits ? isNull(operand, true) : constantOperand(FieldType::Boolean, false);
    }
    if (isOneOf(name, {u"nz"})) {
        requireArguments(expression, 1, 2);
        const Operand value = argument(0);
        const Operand otherwise = expression.arguments.size() > 1 ? argument(1)
                                  : classOf(value.type) == TypeClass::Number
                                      ? constantOperand(FieldType::Long, qlonglong(0))
                                      : constantOperand(FieldType::Text, QStringLiteral(""));
        if (value.isConstant)
            return value.type == FieldType::Null ? otherwise : value;
        const std::vector<const Operand *> both = {&value, &otherwise};
        const TypeClass common = commonClass(both);
        return sqlOperand(QStringLiteral("COALESCE(")
                              + m_convert.sql(m_convert.toClass(value, common, expression.place))
                              + QStringLiteral(", ")
                              + m_convert.sql(m_convert.toClass(otherwise, common, expression.place)) + u')',
                          commonType(both, common));
    }
    if (isOneOf(name, {u"iif", u"switch", u"choose"}))
        return caseOf(expression, isOneOf(name, {u"iif"}));
    if (isOneOf(name, {u"format"}))
        return format(expression);
    if (isOneOf(name, {u"cstr", u"cdate", u"cvdate", u"string"}))
        return conversion(expression, name);
    known = false;
    return {};
}

Operand ExpressionWriter::conversion(const Expression &expression, QStringView name)
{
    if (isOneOf(name, {u"cstr"})) {
        requireArguments(expression, 1, 1);
        return m_convert.toText(write(*expression.arguments[0]));
    }
    if (isOneOf(name, {u"cdate", u"cvdate"})) {
        requireArguments(expression, 1, 1);
        return m_convert.toDate(write(*expression.arguments[0]), expression.place);
    }
    // string(n, character), the character as a text or as its code
    requireArguments(expression, 2, 2);
    const Operand count = m_convert.toNumber(write(*expression.arguments[0]), expression.place);
    Operand character = write(*expression.arguments[1]);
    if (classOf(character.type) == TypeClass::Number)
        character = m_convert.call(u"chr", {character}, expression.place);
    return m_convert.call(u"string", {count, m_convert.toText(character)}, expression.place);
}

// format(value[, pattern]): of Null an empty text.
Operand ExpressionWriter::format(const Expression &expression)
{
    requireArguments(expression, 1, 2);
    const Operand value = write(*expression.arguments[0]);
    Operand text = m_convert.toText(value);
    if (expression.arguments.size() == 2 && value.type != FieldType::Null) {
        const Operand pattern = m_convert.toText(write(*expression.arguments[1]));
        const TypeClass type = classOf(value.type);
        if (pattern.isConstant) {
            const QString signs = pattern.value.toString();
            // Only the patterns whose meaning is known: a wrong text would go unnoticed.
            const QStringView letters = type == TypeClass::Date ? QStringView(u"dmyhns") : QStringView();
            for (const QChar c : signs) {
                const bool foreign = type == TypeClass::Date ? c.isLetter() && !letters.contains(c.toLower())
                                                             : QStringView(u"#,;@<>").contains(c);
                if (foreign)
                    throwUnsupported(expression.place);
            }
            if (type == TypeClass::Date
                && (signs.contains(u"ddd", Qt::CaseInsensitive)
                    || signs.contains(u"mmm", Qt::CaseInsensitive)))
                throwUnsupported(expression.place);
        }
        if (type == TypeClass::Date)
            text = m_convert.call(u"formatdate", {value, pattern}, expression.place);
        else if (type == TypeClass::Text)
            text = m_convert.call(u"formattext", {value, pattern}, expression.place);
        else
            text = m_convert.call(u"formatnumber", {m_convert.toNumber(value, expression.place), pattern},
                                  expression.place);
    }
    if (text.isConstant)
        return text.type == FieldType::Null ? constantOperand(FieldType::Text, QStringLiteral("")) : text;
    return sqlOperand(QStringLiteral("COALESCE(") + text.sql + QStringLiteral(", '')"), FieldType::Text);
}

Operand ExpressionWriter::caseOf(const Expression &expression, bool iif)
{
    const auto &arguments = expression.arguments;
    std::vector<std::pair<QString, Operand>> cases;
    if (iif) {
        requireArguments(expression, 3, 3);
        const QString condition = writeCondition(*arguments[0]);
        cases.emplace_back(condition, write(*arguments[1]));
        const Operand otherwise = write(*arguments[2]);
        return choice(cases, &otherwise, expression.place);
    }
    if (isOneOf(expression.name, {u"switch"})) {
        requireArguments(expression, 2, 200);
        if (arguments.size() % 2 != 0)
            throwWrongArguments(expression.place);
        for (size_t i = 0; i < arguments.size(); i += 2) {
            const QString condition = writeCondition(*arguments[i]);
            cases.emplace_back(condition, write(*arguments[i + 1]));
        }
        return choice(cases, nullptr, expression.place);
    }
    requireArguments(expression, 2, 200);
    const Operand number = m_convert.toNumber(write(*arguments[0]), expression.place);
    const QString index = m_convert.sql(m_convert.call(u"clng", {number}, expression.place));
    for (size_t i = 1; i < arguments.size(); ++i)
        cases.emplace_back(u'(' + index + QStringLiteral(" = ") + QString::number(i) + u')',
                           write(*arguments[i]));
    return choice(cases, nullptr, expression.place);
}

Operand ExpressionWriter::choice(const std::vector<std::pair<QString, Operand>> &cases,
                                 const Operand *otherwise, QStringView place)
{
    std::vector<const Operand *> values;
    for (const auto &[condition, value] : cases)
        values.push_back(&value);
    if (otherwise != nullptr)
        values.push_back(otherwise);
    const TypeClass common = commonClass(values);
    QString sql = QStringLiteral("(CASE");
    for (const auto &[condition, value] : cases)
        sql += QStringLiteral(" WHEN ") + condition + QStringLiteral(" THEN ")
               + m_convert.sql(m_convert.toClass(value, common, place));
    if (otherwise != nullptr)
        sql += QStringLiteral(" ELSE ") + m_convert.sql(m_convert.toClass(*otherwise, common, place));
    return sqlOperand(sql + QStringLiteral(" END)"), commonType(values, common));
}

Operand ExpressionWriter::aggregate(const Expression &expression)
{
    if (!m_aggregatesAllowed || m_inAggregate)
        throwAggregateHere(expression.place);
    if (expression.star) {
        if (!isOneOf(expression.name, {u"count"}))
            throwSyntaxError(expression.place);
        return sqlOperand(QStringLiteral("COUNT(*)"), FieldType::Long);
    }
    if (expression.arguments.size() != 1)
        throwWrongArguments(expression.place);
    m_inAggregate = true;
    Operand value = write(*expression.arguments[0]);
    m_inAggregate = false;
    const QString name = expression.name.toString().toUpper();
    FieldType type = value.type;
    if (name == u"COUNT") {
        type = FieldType::Long;
    } else if (name == u"SUM" || name == u"AVG") {
        value = m_convert.toNumber(value, expression.place);
        value = sqlOperand(m_context.dialect.computed(m_convert.sql(value)), FieldType::Double);
        type = FieldType::Double;
    } else if (name == u"FIRST" || name == u"LAST") {
        Operand result = sqlOperand(
            m_context.dialect.function(name.toLower(), {m_convert.sql(value)}, {value.type}), value.type);
        if (result.sql.isEmpty())
            throwUnsupported(expression.place);
        result.size = value.size;
        return result;
    } else if (type == FieldType::Boolean) {
        // As numbers: true is the lower one.
        value = m_convert.toNumber(value, expression.place);
        type = FieldType::Integer;
    }
    QString sql = m_convert.sql(value);
    if (isText(value.type) && name != u"COUNT")
        sql = m_context.dialect.groupText(sql);
    Operand result =
        sqlOperand(name + u'(' + sql + u')', type == FieldType::AutoNumber ? FieldType::Long : type);
    result.size = name == u"COUNT" ? 0 : value.size;
    return result;
}

} // namespace dao::sql
