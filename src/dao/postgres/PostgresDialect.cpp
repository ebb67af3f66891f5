// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresDialect.h"

#include "jetsql/JetFunctions.h"
#include "values/JetValues.h"

namespace dao {
namespace {

const QString textType = QStringLiteral("::citext");

} // namespace

QString PostgresDialect::textLiteral(const QString &text) const
{
    if (text.contains(QChar(0)))
        throw Error(InvalidArgument,
                    QStringLiteral("Il testo contiene un carattere nullo, che il server non accetta"));
    return SqlDialect::textLiteral(text) + textType;
}

QString PostgresDialect::dateLiteral(const QDateTime &date) const
{
    return u'\'' + clivara::jet::storedDate(date) + QStringLiteral("'::timestamp");
}

QString PostgresDialect::numberLiteral(double value) const
{
    // A whole number is compared with fields of whole numbers through their indexes.
    if (value == double(qint32(value)))
        return QString::number(qint32(value));
    return u'\'' + QString::number(value, 'g', QLocale::FloatingPointShortest) + QStringLiteral("'::float8");
}

QString PostgresDialect::booleanLiteral(bool value) const
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString PostgresDialect::conditionFromBoolean(const QString &value) const
{
    return value == u"NULL" ? QStringLiteral("NULL::boolean") : value;
}

QString PostgresDialect::booleanFromCondition(const QString &condition) const
{
    return condition;
}

QString PostgresDialect::numberFromBoolean(const QString &value) const
{
    return QStringLiteral("(-((") + value + QStringLiteral(")::int))");
}

QString PostgresDialect::nullLiteral(FieldType type) const
{
    switch (sql::classOf(type)) {
    case sql::TypeClass::Boolean:
        return QStringLiteral("NULL::boolean");
    case sql::TypeClass::Number:
        return type == FieldType::Double || type == FieldType::Single || type == FieldType::Currency
                   ? QStringLiteral("NULL::float8")
                   : QStringLiteral("NULL::smallint"); // becomes any whole number
    case sql::TypeClass::Date:
        return QStringLiteral("NULL::timestamp");
    case sql::TypeClass::Text:
        return QStringLiteral("NULL") + textType;
    default:
        return QStringLiteral("NULL");
    }
}

QString PostgresDialect::computed(const QString &number) const
{
    return u'(' + number + QStringLiteral(")::float8");
}

QString PostgresDialect::concatenated(const QString &texts) const
{
    return u'(' + texts + textType + u')';
}

QString PostgresDialect::joinedAnyway() const
{
    return QStringLiteral(" ON true");
}

QString PostgresDialect::orderTerm(const QString &expression, FieldType type, bool descending) const
{
    // True is -1 and comes before false, the other way round than on the server.
    const bool down = descending != (type == FieldType::Boolean);
    return expression + (down ? QStringLiteral(" DESC") : QString())
           + (descending ? QStringLiteral(" NULLS LAST") : QStringLiteral(" NULLS FIRST"));
}

QString PostgresDialect::compareText(const QString &left, const QString &op, const QString &right) const
{
    // A value bound later has no type of its own.
    return u'(' + left + u' ' + op + u' ' + right + (right == u"?" ? textType : QString()) + u')';
}

QString PostgresDialect::groupText(const QString &expression) const
{
    return expression;
}

QString PostgresDialect::likePattern(const QString &text, const QString &pattern) const
{
    const QString prefix = sql::literalPrefix(pattern);
    const QString match = likeExpression(text, textLiteral(pattern));
    if (prefix.isEmpty())
        return match;
    // Texts that begin with the prefix stand together in the collation, up to its highest character.
    return u'(' + compareText(text, QStringLiteral(">="), textLiteral(prefix)) + QStringLiteral(" AND ")
           + compareText(text, QStringLiteral("<="), textLiteral(prefix + QChar(0xFFFF)))
           + QStringLiteral(" AND ") + match + u')';
}

QString PostgresDialect::likeExpression(const QString &text, const QString &pattern) const
{
    return QStringLiteral("jet.like(") + pattern + QStringLiteral(", ") + text + u')';
}

QString PostgresDialect::function(const QString &name, const QStringList &arguments,
                                  const QList<FieldType> &) const
{
    if (name == u"first" || name == u"last" || sql::findFunction(name) != nullptr)
        return QStringLiteral("jet.\"") + name + QStringLiteral("\"(") + arguments.join(QStringLiteral(", "))
               + u')';
    return {};
}

QString PostgresDialect::rowIdentity(const QString &alias) const
{
    return alias + QStringLiteral(".engine_row");
}

QString PostgresDialect::identical(const QString &left, const QString &right, FieldType type) const
{
    return u'(' + left + (isText(type) ? QStringLiteral("::text") : QString())
           + QStringLiteral(" IS NOT DISTINCT FROM ") + right + u')';
}

} // namespace dao
