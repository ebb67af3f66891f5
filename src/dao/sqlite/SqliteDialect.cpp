// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteDialect.h"

#include "jetsql/JetFunctions.h"
#include "values/JetValues.h"

namespace dao {
namespace {

const QString collation = QStringLiteral(" COLLATE JET_TEXT");

} // namespace

QString SqliteDialect::textLiteral(const QString &text) const
{
    // SQLite's SQL ends at a zero character, so that no literal can hold one.
    if (!text.contains(QChar(0)))
        return SqlDialect::textLiteral(text);
    return QStringLiteral("CAST(x'%1' AS TEXT)").arg(QString::fromLatin1(text.toUtf8().toHex()));
}

QString SqliteDialect::dateLiteral(const QDateTime &date) const
{
    return u'\'' + clivara::jet::storedDate(date) + u'\'';
}

QString SqliteDialect::booleanLiteral(bool value) const
{
    return value ? QStringLiteral("-1") : QStringLiteral("0");
}

QString SqliteDialect::conditionFromBoolean(const QString &value) const
{
    return u'(' + value + QStringLiteral(" <> 0)");
}

QString SqliteDialect::booleanFromCondition(const QString &condition) const
{
    return QStringLiteral("(-") + condition + u')';
}

QString SqliteDialect::numberFromBoolean(const QString &value) const
{
    return value;
}

QString SqliteDialect::orderTerm(const QString &expression, FieldType type, bool descending) const
{
    // SQLite takes Null as the smallest value, as the language does.
    QString term = isText(type) ? expression + collation : expression;
    if (descending)
        term += QStringLiteral(" DESC");
    return term;
}

QString SqliteDialect::compareText(const QString &left, const QString &op, const QString &right) const
{
    return u'(' + left + u' ' + op + u' ' + right + collation + u')';
}

QString SqliteDialect::groupText(const QString &expression) const
{
    return expression + collation;
}

QString SqliteDialect::likePattern(const QString &text, const QString &pattern) const
{
    const QString prefix = sql::literalPrefix(pattern);
    const QString match =
        QStringLiteral("jet_like(") + textLiteral(pattern) + QStringLiteral(", ") + text + u')';
    if (prefix.isEmpty())
        return match;
    // Texts that begin with the prefix stand together in the collation, up to the highest character there is.
    const QString highest = QString::fromUcs4(U"\U0010FFFF", 1);
    return u'(' + compareText(text, QStringLiteral(">="), textLiteral(prefix)) + QStringLiteral(" AND ")
           + compareText(text, QStringLiteral("<="), textLiteral(prefix + highest)) + QStringLiteral(" AND ")
           + match + u')';
}

QString SqliteDialect::likeExpression(const QString &text, const QString &pattern) const
{
    return QStringLiteral("jet_like(") + pattern + QStringLiteral(", ") + text + u')';
}

QString SqliteDialect::function(const QString &name, const QStringList &arguments,
                                const QList<FieldType> &) const
{
    if (name == u"first" || name == u"last" || sql::findFunction(name) != nullptr)
        return QStringLiteral("jet_") + name + u'(' + arguments.join(QStringLiteral(", ")) + u')';
    return {};
}

QString SqliteDialect::rowIdentity(const QString &alias) const
{
    return alias + QStringLiteral(".rowid");
}

QString SqliteDialect::identical(const QString &left, const QString &right, FieldType) const
{
    return u'(' + left + QStringLiteral(" IS ") + right + QStringLiteral(" COLLATE BINARY)");
}

} // namespace dao
