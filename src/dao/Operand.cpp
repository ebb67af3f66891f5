// SPDX-License-Identifier: Apache-2.0
#include "dao/Operand.h"

#include "jetsql/JetFunctions.h"
#include "jetsql/SqlErrors.h"
#include "values/JetValues.h"

#include <cmath>

namespace dao::sql {

Operand constantOperand(FieldType type, const QVariant &value)
{
    Operand operand;
    operand.isConstant = true;
    operand.type = value.isValid() ? type : FieldType::Null;
    operand.value = value;
    return operand;
}

Operand sqlOperand(const QString &sql, FieldType type)
{
    Operand operand;
    operand.sql = sql;
    operand.type = type;
    return operand;
}

Operand conditionOperand(const QString &sql)
{
    Operand operand = sqlOperand(sql, FieldType::Boolean);
    operand.condition = true;
    return operand;
}

QString Conversions::sql(const Operand &operand) const
{
    if (operand.condition)
        return m_dialect.booleanFromCondition(operand.sql);
    if (!operand.isConstant)
        return operand.sql;
    switch (operand.value.typeId()) {
    case QMetaType::UnknownType:
        return QStringLiteral("NULL");
    case QMetaType::Bool:
        return m_dialect.booleanLiteral(operand.value.toBool());
    case QMetaType::LongLong: {
        const qlonglong number = operand.value.toLongLong();
        return number < 0 ? u'(' + QString::number(number) + u')' : QString::number(number);
    }
    case QMetaType::Double: {
        const double number = operand.value.toDouble();
        return std::signbit(number) ? QStringLiteral("(-") + m_dialect.numberLiteral(-number) + u')'
                                    : m_dialect.numberLiteral(number);
    }
    case QMetaType::QDateTime:
        return m_dialect.dateLiteral(operand.value.toDateTime());
    default:
        return m_dialect.textLiteral(operand.value.toString());
    }
}

Operand Conversions::call(QStringView name, const std::vector<Operand> &arguments, QStringView place) const
{
    const Function *function = findFunction(name);
    if (std::all_of(arguments.begin(), arguments.end(), [](const Operand &a) { return a.isConstant; })) {
        std::vector<QVariant> values;
        for (const Operand &argument : arguments)
            values.push_back(argument.value);
        try {
            return constantOperand(function->result, callFunction(*function, values));
        } catch (const FunctionError &error) {
            throwError(error.number, error.text, place);
        }
    }
    QStringList texts;
    QList<FieldType> types;
    for (const Operand &argument : arguments) {
        texts.append(sql(argument));
        types.append(argument.type);
    }
    const QString native = m_dialect.function(function->name.toString(), texts, types);
    if (native.isEmpty())
        throwUnsupported(place);
    return sqlOperand(native, function->result);
}

Operand Conversions::toNumber(const Operand &operand, QStringView place, BadText bad) const
{
    switch (classOf(operand.type)) {
    case TypeClass::Null:
    case TypeClass::Number:
        return operand;
    case TypeClass::Boolean:
        if (operand.isConstant)
            return constantOperand(FieldType::Long, qlonglong(operand.value.toBool() ? -1 : 0));
        return sqlOperand(m_dialect.numberFromBoolean(sql(operand)), FieldType::Integer);
    case TypeClass::Date:
        return call(u"serial", {operand}, place);
    case TypeClass::Text:
        return call(bad == BadText::IsNull ? u"numberornull" : u"number", {operand}, place);
    case TypeClass::Binary:
        break;
    }
    throwTypeMismatch(place);
}

Operand Conversions::toText(const Operand &operand) const
{
    switch (classOf(operand.type)) {
    case TypeClass::Boolean:
        return call(u"numbertext", {toNumber(operand, {})}, {});
    case TypeClass::Number:
        return call(u"numbertext", {operand}, {});
    case TypeClass::Date:
        return call(u"datetext", {operand}, {});
    case TypeClass::Null:
    case TypeClass::Text:
        return operand;
    case TypeClass::Binary:
        break;
    }
    throwTypeMismatch(operand.sql);
}

Operand Conversions::toDate(const Operand &operand, QStringView place, BadText bad) const
{
    switch (classOf(operand.type)) {
    case TypeClass::Null:
    case TypeClass::Date:
        return operand;
    case TypeClass::Boolean:
    case TypeClass::Number:
        return call(u"datefromserial", {toNumber(operand, place)}, place);
    case TypeClass::Text:
        return call(bad == BadText::IsNull ? u"dateornull" : u"datefromtext", {operand}, place);
    case TypeClass::Binary:
        break;
    }
    throwTypeMismatch(place);
}

QString Conversions::toCondition(const Operand &operand, QStringView place) const
{
    if (operand.condition)
        return operand.sql;
    switch (classOf(operand.type)) {
    case TypeClass::Null:
    case TypeClass::Boolean:
        return m_dialect.conditionFromBoolean(sql(operand));
    default: {
        const Operand number = toNumber(operand, place);
        return u'(' + sql(number) + QStringLiteral(" <> 0)");
    }
    }
}

Operand Conversions::toClass(const Operand &operand, TypeClass wanted, QStringView place) const
{
    if (classOf(operand.type) == wanted && !operand.condition)
        return operand;
    switch (wanted) {
    case TypeClass::Boolean:
        if (operand.condition)
            return sqlOperand(sql(operand), FieldType::Boolean);
        return operand.type == FieldType::Null
                   ? operand
                   : sqlOperand(m_dialect.booleanFromCondition(toCondition(operand, place)),
                                FieldType::Boolean);
    case TypeClass::Number:
        return toNumber(operand, place, BadText::IsNull);
    case TypeClass::Date:
        return toDate(operand, place, BadText::IsNull);
    case TypeClass::Text:
        return toText(operand);
    case TypeClass::Null:
        return operand;
    case TypeClass::Binary:
        break;
    }
    if (operand.type == FieldType::Null)
        return operand;
    throwTypeMismatch(place);
}

Operand Conversions::assignedNumber(const Operand &operand, FieldType type, QStringView place) const
{
    const Operand number = classOf(operand.type) == TypeClass::Text
                               ? call(u"assignednumber", {operand}, place)
                               : toNumber(operand, place);
    if (number.type == type || number.type == FieldType::Null)
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

Operand Conversions::assigned(const Operand &operand, const ColumnInfo &column, QStringView place) const
{
    if (operand.type == FieldType::Null && column.type != FieldType::Boolean)
        return sqlOperand(m_dialect.nullLiteral(column.type), FieldType::Null);
    switch (classOf(column.type)) {
    case TypeClass::Boolean: {
        // Never Null: what is not known to be true is No.
        if (operand.isConstant) {
            if (operand.type == FieldType::Null)
                return constantOperand(FieldType::Boolean, false);
            if (operand.type == FieldType::Boolean)
                return operand;
            return constantOperand(FieldType::Boolean, toNumber(operand, place).value.toDouble() != 0);
        }
        const QString condition = toCondition(operand, place);
        return sqlOperand(QStringLiteral("(CASE WHEN ") + condition + QStringLiteral(" THEN ")
                              + m_dialect.booleanLiteral(true) + QStringLiteral(" ELSE ")
                              + m_dialect.booleanLiteral(false) + QStringLiteral(" END)"),
                          FieldType::Boolean);
    }
    case TypeClass::Number:
        return assignedNumber(operand, column.type, place);
    case TypeClass::Date:
        return classOf(operand.type) == TypeClass::Text ? call(u"assigneddate", {operand}, place)
                                                        : toDate(operand, place);
    case TypeClass::Text: {
        if (operand.type == FieldType::Null)
            return operand;
        const Operand text = toText(operand);
        if (column.type == FieldType::Guid)
            return operand.type == FieldType::Guid ? text : call(u"assignguid", {text}, place);
        if (column.size == 0 || (text.size > 0 && text.size <= column.size))
            return text;
        return call(u"assigntext", {text, constantOperand(FieldType::Long, qlonglong(column.size))}, place);
    }
    case TypeClass::Binary:
    case TypeClass::Null:
        break;
    }
    if (operand.type != FieldType::Null && operand.type != FieldType::Binary)
        throwTypeMismatch(place);
    return operand;
}

} // namespace dao::sql
