// SPDX-License-Identifier: Apache-2.0
#include "dao/ExpressionWriter.h"
#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

QString nativeOperator(Operator op)
{
    switch (op) {
    case Operator::Equal:
        return QStringLiteral("=");
    case Operator::NotEqual:
        return QStringLiteral("<>");
    case Operator::Less:
        return QStringLiteral("<");
    case Operator::LessOrEqual:
        return QStringLiteral("<=");
    case Operator::Greater:
        return QStringLiteral(">");
    default:
        return QStringLiteral(">=");
    }
}

} // namespace

// A constant or parameter that is a GUID in the form in which GUIDs are stored; other texts as they are.
Operand ExpressionWriter::guidOperand(const Operand &operand)
{
    if (operand.type == FieldType::Guid)
        return operand;
    if (operand.parameter >= 0)
        return parameter(operand.parameter, true);
    return operand.isConstant ? constantOperand(FieldType::Guid, guidText(operand.value.toString()))
                              : operand;
}

QString ExpressionWriter::compare(Operator op, const Operand &left, const Operand &right, QStringView place)
{
    const TypeClass a = classOf(left.type);
    const TypeClass b = classOf(right.type);
    const auto native = [&](const Operand &x, const Operand &y) {
        return QString(u'(' + m_convert.sql(x) + u' ' + nativeOperator(op) + u' ' + m_convert.sql(y) + u')');
    };
    if (a == TypeClass::Null || b == TypeClass::Null)
        return m_context.dialect.conditionFromBoolean(QStringLiteral("NULL"));
    if (a == TypeClass::Binary || b == TypeClass::Binary)
        throwTypeMismatch(place);
    if (a == TypeClass::Text && b == TypeClass::Text) {
        const bool guid = left.type == FieldType::Guid || right.type == FieldType::Guid;
        return m_context.dialect.compareText(m_convert.sql(guid ? guidOperand(left) : left),
                                             nativeOperator(op),
                                             m_convert.sql(guid ? guidOperand(right) : right));
    }
    if (a == TypeClass::Boolean && b == TypeClass::Boolean
        && (op == Operator::Equal || op == Operator::NotEqual))
        return native(left, right);
    if (a == TypeClass::Date || b == TypeClass::Date) {
        // Dates compare as stored; a constant becomes a date so that the field's index is used.
        if (a == TypeClass::Text || b == TypeClass::Text) {
            if ((a == TypeClass::Text ? left : right).isConstant)
                return native(m_convert.toDate(left, place), m_convert.toDate(right, place));
            return native(m_convert.toDate(left, place, BadText::IsNull),
                          m_convert.toDate(right, place, BadText::IsNull));
        }
        if (a == b || left.isConstant || right.isConstant)
            return native(m_convert.toDate(left, place), m_convert.toDate(right, place));
        return native(m_convert.toNumber(left, place), m_convert.toNumber(right, place));
    }
    if (a == TypeClass::Text)
        return compareWithNumber(op, left, m_convert.toNumber(right, place), true);
    if (b == TypeClass::Text)
        return compareWithNumber(op, right, m_convert.toNumber(left, place), false);
    return native(m_convert.toNumber(left, place), m_convert.toNumber(right, place));
}

// A text that is no number is not equal to any number, and neither below nor above it.
QString ExpressionWriter::compareWithNumber(Operator op, const Operand &text, const Operand &number,
                                            bool textLeft)
{
    const Operand converted = m_convert.toNumber(text, {}, BadText::IsNull);
    const QString first = m_convert.sql(textLeft ? converted : number);
    const QString second = m_convert.sql(textLeft ? number : converted);
    const QString plain = u'(' + first + u' ' + nativeOperator(op) + u' ' + second + u')';
    if (op != Operator::NotEqual)
        return plain;
    const QString noNumber = text.isConstant ? (converted.type == FieldType::Null
                                                    ? m_convert.sql(number) + QStringLiteral(" IS NOT NULL")
                                                    : QString())
                                             : m_convert.sql(text) + QStringLiteral(" IS NOT NULL AND ")
                                                   + m_convert.sql(converted) + QStringLiteral(" IS NULL");
    return noNumber.isEmpty()
               ? plain
               : QString(u'(' + plain + QStringLiteral(" OR (") + noNumber + QStringLiteral("))"));
}

QString ExpressionWriter::like(const Operand &left, const Operand &right)
{
    const Dialect &dialect = m_context.dialect;
    const Operand text = m_convert.toText(left);
    const Operand pattern = m_convert.toText(right);
    if (text.type == FieldType::Null || pattern.type == FieldType::Null)
        return dialect.conditionFromBoolean(QStringLiteral("NULL"));
    if (!pattern.isConstant)
        return dialect.likeExpression(m_convert.sql(text), m_convert.sql(pattern));
    const QString signs = pattern.value.toString();
    const bool plain =
        std::none_of(signs.begin(), signs.end(), [](QChar c) { return QStringView(u"*?#[").contains(c); });
    if (plain)
        return dialect.compareText(m_convert.sql(text), QStringLiteral("="), m_convert.sql(pattern));
    return dialect.likePattern(m_convert.sql(text), signs);
}

} // namespace dao::sql
