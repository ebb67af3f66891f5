// SPDX-License-Identifier: Apache-2.0
#include "dao/ExpressionWriter.h"

#include "dao/SelectWriter.h"
#include "jetsql/SqlErrors.h"

namespace dao::sql {

ExpressionWriter::ExpressionWriter(const Context &context, const Scope &scope)
    : m_context(context)
    , m_scope(scope)
    , m_convert(context.dialect)
{
}

Operand ExpressionWriter::write(const Expression &expression)
{
    const size_t loose = m_looseFields.size();
    Operand operand;
    switch (expression.kind) {
    case Expression::Kind::Constant:
        return constantOperand(expression.constant.type, expression.constant.value);
    case Expression::Kind::Field:
        operand = field(expression);
        break;
    case Expression::Kind::Negate:
        operand = negate(expression);
        break;
    case Expression::Kind::Not:
        operand = conditionOperand(QStringLiteral("(NOT ") + writeCondition(*expression.arguments[0]) + u')');
        break;
    case Expression::Kind::Binary:
        operand = binary(expression);
        break;
    case Expression::Kind::Between:
        operand = between(expression);
        break;
    case Expression::Kind::In:
        operand = inList(expression);
        break;
    case Expression::Kind::InSelect:
        operand = inSelect(expression);
        break;
    case Expression::Kind::IsNull:
        operand = isNull(write(*expression.arguments[0]), expression.negated);
        break;
    case Expression::Kind::Exists:
        operand = exists(expression);
        break;
    case Expression::Kind::Scalar:
        operand = scalar(expression);
        break;
    case Expression::Kind::Call:
        operand = call(expression);
        break;
    }
    if (m_looseFields.size() > loose && m_groupTerms.contains(operand.sql))
        m_looseFields.resize(loose);
    return operand;
}

QString ExpressionWriter::writeCondition(const Expression &expression)
{
    return m_convert.toCondition(write(expression), expression.place);
}

void ExpressionWriter::checkGrouped()
{
    if (!m_looseFields.empty())
        throwNotGrouped(m_looseFields.front());
}

Operand ExpressionWriter::field(const Expression &expression)
{
    Scope::Found found = m_scope.find(expression.qualifier, expression.name);
    const int given = expression.qualifier.isEmpty() ? m_context.parameters.find(expression.name) : -1;
    if (given >= 0) {
        if (found.entry != nullptr)
            throwFieldAndParameter(expression.place);
        return parameter(given, false);
    }
    if (found.entry == nullptr && expression.qualifier.isEmpty()) {
        // [table.field] in one pair of brackets
        const qsizetype point = expression.name.indexOf(u'.');
        if (point > 0)
            found = m_scope.find(expression.name.first(point), expression.name.mid(point + 1));
        for (const auto &[word, value] :
             {std::pair(u"yes", true), std::pair(u"no", false), std::pair(u"off", false)}) {
            if (found.entry == nullptr
                && expression.place.compare(QStringView(word), Qt::CaseInsensitive) == 0)
                return constantOperand(FieldType::Boolean, value);
        }
    }
    if (found.entry == nullptr)
        throwUnknownField(expression.place);
    const ColumnInfo &column = found.entry->table->columns[found.column];
    Operand operand;
    operand.sql.reserve(found.entry->quotedAlias.size() + column.name.size() + 3);
    operand.sql += found.entry->quotedAlias;
    operand.sql += u'.';
    operand.sql += m_context.dialect.identifier(column.name);
    operand.type = column.type;
    operand.size = column.size;
    operand.table = found.table;
    operand.column = found.column;
    if (found.table >= 0 && !m_inAggregate)
        m_looseFields.push_back(expression.place);
    return operand;
}

Operand ExpressionWriter::parameter(int position, bool asGuid)
{
    const FieldType type = m_context.parameters.type(position);
    if (type == FieldType::Null) {
        m_context.parameters.mark({position, asGuid}); // it is used
        return constantOperand(type, {});
    }
    Operand operand =
        sqlOperand(m_context.dialect.parameter(type, m_context.parameters.mark({position, asGuid})), type);
    operand.parameter = position;
    return operand;
}

Operand ExpressionWriter::negate(const Expression &expression)
{
    const Operand number = m_convert.toNumber(write(*expression.arguments[0]), expression.place);
    if (number.isConstant)
        return m_convert.call(u"negate", {number}, expression.place);
    return sqlOperand(QStringLiteral("(-") + m_context.dialect.computed(number.sql) + u')',
                      FieldType::Double);
}

Operand ExpressionWriter::binary(const Expression &expression)
{
    if (expression.op == Operator::And || expression.op == Operator::Or)
        return junction(expression);
    const Expression &leftExpression = *expression.arguments[0];
    const Expression &rightExpression = *expression.arguments[1];
    const Operand left = write(leftExpression);
    const Operand right = write(rightExpression);
    switch (expression.op) {
    case Operator::Xor:
        return conditionOperand(u'(' + m_convert.toCondition(left, leftExpression.place)
                                + QStringLiteral(" <> ") + m_convert.toCondition(right, rightExpression.place)
                                + u')');
    case Operator::Like: {
        const QString condition = like(left, right);
        return conditionOperand(expression.negated ? QStringLiteral("(NOT ") + condition + u')' : condition);
    }
    case Operator::Concatenate: {
        QString text;
        QString constant;
        for (const Operand *operand : {&left, &right}) {
            const Operand part = m_convert.toText(*operand);
            if (part.isConstant && left.isConstant && right.isConstant) {
                constant += part.value.toString();
                continue;
            }
            if (!text.isEmpty())
                text += QStringLiteral(" || ");
            if (part.isConstant)
                text += m_context.dialect.textLiteral(part.value.toString());
            else
                text += QStringLiteral("COALESCE(") + part.sql + QStringLiteral(", '')");
        }
        if (text.isEmpty())
            return constantOperand(FieldType::Text, constant.isNull() ? QStringLiteral("") : constant);
        return sqlOperand(m_context.dialect.concatenated(u'(' + text + u')'), FieldType::Text);
    }
    case Operator::Add:
        return addition(left, right, expression.place);
    case Operator::Subtract:
    case Operator::Multiply:
    case Operator::Divide:
    case Operator::IntegerDivide:
    case Operator::Modulo:
    case Operator::Power:
        return arithmetic(expression.op, left, right, expression.place);
    default:
        return conditionOperand(compare(expression.op, left, right, expression.place));
    }
}

Operand ExpressionWriter::addition(const Operand &left, const Operand &right, QStringView place)
{
    const bool text = classOf(left.type) == TypeClass::Text && classOf(right.type) == TypeClass::Text;
    if (!text)
        return arithmetic(Operator::Add, left, right, place);
    if (left.isConstant && right.isConstant)
        return constantOperand(FieldType::Text, QString(left.value.toString() + right.value.toString()));
    return sqlOperand(m_context.dialect.concatenated(u'(' + m_convert.sql(left) + QStringLiteral(" || ")
                                                     + m_convert.sql(right) + u')'),
                      FieldType::Text);
}

Operand ExpressionWriter::arithmetic(Operator op, const Operand &left, const Operand &right,
                                     QStringView place)
{
    // Any operation with Null is Null.
    if (left.type == FieldType::Null || right.type == FieldType::Null)
        return constantOperand(FieldType::Null, {});
    const bool leftDate = classOf(left.type) == TypeClass::Date;
    const bool rightDate = classOf(right.type) == TypeClass::Date;
    const Operand a = m_convert.toNumber(left, place);
    const Operand b = m_convert.toNumber(right, place);
    Operand result;
    const bool constant = a.isConstant && b.isConstant;
    const auto native = [&](const QString &sign) {
        const Dialect &dialect = m_context.dialect;
        return sqlOperand(u'(' + dialect.computed(m_convert.sql(a)) + sign
                              + dialect.computed(m_convert.sql(b)) + u')',
                          FieldType::Double);
    };
    switch (op) {
    case Operator::Add:
        result = constant ? m_convert.call(u"add", {a, b}, place) : native(QStringLiteral(" + "));
        break;
    case Operator::Subtract:
        result = constant ? m_convert.call(u"subtract", {a, b}, place) : native(QStringLiteral(" - "));
        break;
    case Operator::Multiply:
        return constant ? m_convert.call(u"multiply", {a, b}, place) : native(QStringLiteral(" * "));
    case Operator::Divide:
        return m_convert.call(u"divide", {a, b}, place);
    case Operator::IntegerDivide:
        return m_convert.call(u"integerdivide", {a, b}, place);
    case Operator::Modulo:
        return m_convert.call(u"modulo", {a, b}, place);
    default:
        return m_convert.call(u"power", {a, b}, place);
    }
    // A date and a number of days is a date; the days between two dates are a number.
    if (leftDate != rightDate && (op == Operator::Add || leftDate))
        return m_convert.toDate(result, place);
    return result;
}

Operand ExpressionWriter::junction(const Expression &expression)
{
    const bool isAnd = expression.op == Operator::And;
    QString sql(u'(');
    bool numberBefore = false;
    for (const ExpressionPtr &argument : expression.arguments) {
        const Operand operand = write(*argument);
        // AND of two numbers works on their bits, which is another thing than both being true.
        const bool number = classOf(operand.type) == TypeClass::Number;
        if (isAnd && number && numberBefore)
            throwUnsupported(expression.place);
        numberBefore = numberBefore || number;
        if (sql.size() > 1)
            sql += isAnd ? QStringLiteral(" AND ") : QStringLiteral(" OR ");
        sql += m_convert.toCondition(operand, argument->place);
    }
    sql += u')';
    return conditionOperand(sql);
}

Operand ExpressionWriter::between(const Expression &expression)
{
    const Operand value = write(*expression.arguments[0]);
    const Operand low = write(*expression.arguments[1]);
    const Operand high = write(*expression.arguments[2]);
    const QString sql = u'(' + compare(Operator::GreaterOrEqual, value, low, expression.place)
                        + QStringLiteral(" AND ")
                        + compare(Operator::LessOrEqual, value, high, expression.place) + u')';
    return conditionOperand(expression.negated ? QStringLiteral("(NOT ") + sql + u')' : sql);
}

Operand ExpressionWriter::inList(const Expression &expression)
{
    const Operand value = write(*expression.arguments[0]);
    QString sql(u'(');
    for (size_t i = 1; i < expression.arguments.size(); ++i) {
        if (i > 1)
            sql += QStringLiteral(" OR ");
        sql += compare(Operator::Equal, value, write(*expression.arguments[i]), expression.place);
    }
    sql += u')';
    return conditionOperand(expression.negated ? QStringLiteral("(NOT ") + sql + u')' : sql);
}

Operand ExpressionWriter::isNull(const Operand &operand, bool negated)
{
    const QString sql = m_convert.sql(operand);
    return conditionOperand(u'(' + sql
                            + (negated ? QStringLiteral(" IS NOT NULL)") : QStringLiteral(" IS NULL)")));
}

Operand ExpressionWriter::inSelect(const Expression &expression)
{
    Operand value = write(*expression.arguments[0]);
    SelectWriter::Options options;
    options.singleColumn = true;
    SelectResult inner = SelectWriter(m_context, &m_scope, options).write(*expression.select);
    const TypeClass left = classOf(value.type);
    const TypeClass right = classOf(inner.columns.front().type);
    if (left != right && left != TypeClass::Null) {
        // As in a comparison: as dates when one is a date, else as numbers.
        options.convertTo = right == TypeClass::Null                              ? left
                            : left == TypeClass::Date || right == TypeClass::Date ? TypeClass::Date
                                                                                  : TypeClass::Number;
        value = m_convert.toClass(value, *options.convertTo, expression.place);
        inner = SelectWriter(m_context, &m_scope, options).write(*expression.select);
    }
    QString sql = m_convert.sql(value);
    if (classOf(value.type) == TypeClass::Text)
        sql = m_context.dialect.groupText(sql);
    return conditionOperand(u'(' + sql
                            + (expression.negated ? QStringLiteral(" NOT IN (") : QStringLiteral(" IN ("))
                            + inner.sql + QStringLiteral("))"));
}

Operand ExpressionWriter::scalar(const Expression &expression)
{
    SelectWriter::Options options;
    options.singleColumn = true;
    const SelectResult inner = SelectWriter(m_context, &m_scope, options).write(*expression.select);
    Operand operand = sqlOperand(u'(' + inner.sql + u')', inner.columns.front().type);
    operand.size = inner.columns.front().size;
    return operand;
}

Operand ExpressionWriter::exists(const Expression &expression)
{
    const SelectResult inner = SelectWriter(m_context, &m_scope, {}).write(*expression.select);
    return conditionOperand(QStringLiteral("EXISTS (") + inner.sql + u')');
}

} // namespace dao::sql
