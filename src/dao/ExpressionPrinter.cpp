// SPDX-License-Identifier: Apache-2.0
#include "dao/ParameterMarks.h"
#include "dao/SqlPrinter.h"

#include <cmath>

namespace dao::sql {
namespace {

using Kind = Bound::Kind;

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

QString enclosed(const QString &sql)
{
    return u'(' + sql + u')';
}

} // namespace

QString SqlPrinter::value(const Bound &node) const
{
    return node.isCondition() ? m_dialect.booleanFromCondition(plain(node)) : plain(node);
}

QString SqlPrinter::condition(const Bound &node) const
{
    if (node.isCondition())
        return plain(node);
    return node.isConstant() && node.type == FieldType::Null ? m_dialect.nullLiteral(FieldType::Boolean)
                                                             : m_dialect.conditionFromBoolean(value(node));
}

QString SqlPrinter::joinedBy(QStringView separator, const Bound &node,
                             QString (SqlPrinter::*part)(const Bound &) const) const
{
    QString sql(u'(');
    for (const BoundPtr &argument : node.arguments) {
        if (sql.size() > 1)
            sql += separator;
        sql += (this->*part)(*argument);
    }
    return sql += u')';
}

QString SqlPrinter::plain(const Bound &node) const
{
    const auto argument = [&node](size_t i) -> const Bound & { return *node.arguments[i]; };
    switch (node.kind) {
    case Kind::Constant:
        return constant(node);
    case Kind::Field:
        return m_dialect.identifier(node.table->alias) + u'.'
               + m_dialect.identifier(node.table->info->columns[node.column].name);
    case Kind::Parameter:
        return m_dialect.parameter(node.type, parameterMark(node.parameter));
    case Kind::Call:
        return call(node);
    case Kind::NumberOfBoolean:
        return m_dialect.numberFromBoolean(value(argument(0)));
    case Kind::Concatenate:
        return m_dialect.concatenated(joinedBy(u" || ", node, &SqlPrinter::value));
    case Kind::Coalesce:
        return QStringLiteral("COALESCE") + joinedBy(u", ", node, &SqlPrinter::value);
    case Kind::Case:
        return cases(node);
    case Kind::Aggregate:
        return aggregate(node);
    case Kind::Scalar:
        return enclosed(select(*node.select, Names::Own));
    case Kind::Compare:
        return enclosed(value(argument(0)) + u' ' + nativeOperator(node.op) + u' ' + value(argument(1)));
    case Kind::CompareText:
        return m_dialect.compareText(value(argument(0)), nativeOperator(node.op), value(argument(1)));
    case Kind::Like:
        return argument(1).isConstant()
                   ? m_dialect.likePattern(value(argument(0)), argument(1).value.toString())
                   : m_dialect.likeExpression(value(argument(0)), value(argument(1)));
    case Kind::And:
        return joinedBy(u" AND ", node, &SqlPrinter::condition);
    case Kind::Or:
        return joinedBy(u" OR ", node, &SqlPrinter::condition);
    case Kind::Xor:
        return joinedBy(u" <> ", node, &SqlPrinter::condition);
    case Kind::Not:
        return enclosed(QStringLiteral("NOT ") + condition(argument(0)));
    case Kind::IsNull:
        return enclosed(value(argument(0))
                        + (node.negated ? QStringLiteral(" IS NOT NULL") : QStringLiteral(" IS NULL")));
    case Kind::InSelect:
        return inSelect(node);
    case Kind::Exists:
        return QStringLiteral("EXISTS ") + enclosed(select(*node.select, Names::Own));
    }
    return {};
}

QString SqlPrinter::constant(const Bound &node) const
{
    switch (node.value.typeId()) {
    case QMetaType::UnknownType:
        return m_dialect.nullLiteral(node.nullOf);
    case QMetaType::Bool:
        return m_dialect.booleanLiteral(node.value.toBool());
    case QMetaType::LongLong: {
        const qlonglong number = node.value.toLongLong();
        return number < 0 ? enclosed(QString::number(number)) : QString::number(number);
    }
    case QMetaType::Double: {
        const double number = node.value.toDouble();
        return std::signbit(number) ? enclosed(u'-' + m_dialect.numberLiteral(-number))
                                    : m_dialect.numberLiteral(number);
    }
    case QMetaType::QDateTime:
        return m_dialect.dateLiteral(node.value.toDateTime());
    default:
        return m_dialect.textLiteral(node.value.toString());
    }
}

QString SqlPrinter::call(const Bound &node) const
{
    if (const QStringView sign = node.function->sign; !sign.isEmpty()) {
        const QString last = sign.toString() + u' ' + m_dialect.computed(value(*node.arguments.back()));
        return enclosed(node.arguments.size() == 1
                            ? last
                            : m_dialect.computed(value(*node.arguments.front())) + u' ' + last);
    }
    return m_dialect.functionName(node.function->name.toString()) + joinedBy(u", ", node, &SqlPrinter::value);
}

QString SqlPrinter::cases(const Bound &node) const
{
    QString sql = QStringLiteral("(CASE");
    size_t i = 0;
    for (; i + 1 < node.arguments.size(); i += 2)
        sql += QStringLiteral(" WHEN ") + condition(*node.arguments[i]) + QStringLiteral(" THEN ")
               + value(*node.arguments[i + 1]);
    if (i < node.arguments.size())
        sql += QStringLiteral(" ELSE ") + value(*node.arguments[i]);
    return sql + QStringLiteral(" END)");
}

QString SqlPrinter::aggregate(const Bound &node) const
{
    const QString name = nameOf(node.aggregate);
    if (node.arguments.empty())
        return name + QStringLiteral("(*)");
    const Bound &argument = *node.arguments.front();
    const QString sql = value(argument);
    switch (node.aggregate) {
    case Aggregate::First:
    case Aggregate::Last:
        return m_dialect.functionName(name) + enclosed(sql);
    case Aggregate::Sum:
    case Aggregate::Avg:
        return name + enclosed(m_dialect.computed(sql));
    case Aggregate::Count:
        return name + enclosed(sql);
    default:
        return name + enclosed(output(argument, true));
    }
}

QString SqlPrinter::inSelect(const Bound &node) const
{
    return enclosed(output(*node.arguments.front(), true)
                    + (node.negated ? QStringLiteral(" NOT IN ") : QStringLiteral(" IN "))
                    + enclosed(select(*node.select, Names::Own)));
}

// A value as one of a row; texts that differ in case only count as equal where rows are compared.
QString SqlPrinter::output(const Bound &item, bool compares) const
{
    const QString sql = value(item);
    return compares && isText(item.type) ? m_dialect.groupText(sql) : sql;
}

} // namespace dao::sql
