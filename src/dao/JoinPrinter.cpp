// SPDX-License-Identifier: Apache-2.0
#include "dao/SqlPrinter.h"
#include "jetsql/SqlErrors.h"

// Joins in a form that every native engine takes: no join in parentheses.
namespace dao::sql {
namespace {

bool onlyInner(const BoundFrom &from)
{
    return !from.isJoin()
           || (from.join == JoinKind::Inner && onlyInner(*from.left) && onlyInner(*from.right));
}

QString joinText(JoinKind kind)
{
    switch (kind) {
    case JoinKind::Left:
        return QStringLiteral(" LEFT JOIN ");
    case JoinKind::Right:
        return QStringLiteral(" RIGHT JOIN ");
    default:
        return QStringLiteral(" INNER JOIN ");
    }
}

JoinKind mirrored(JoinKind kind)
{
    return kind == JoinKind::Left ? JoinKind::Right : kind == JoinKind::Right ? JoinKind::Left : kind;
}

} // namespace

QString SqlPrinter::from(const std::vector<BoundFromPtr> &list) const
{
    QString sql;
    bool hasRightJoin = false;
    for (const BoundFromPtr &from : list) {
        bool rightJoin = false;
        const QString text = joined(*from, rightJoin);
        if (!rightJoin) {
            sql += sql.isEmpty() ? text : QStringLiteral(", ") + text;
            continue;
        }
        // A native engine may read "a, b RIGHT JOIN c" as "(a, b) RIGHT JOIN c": such a join goes first.
        if (hasRightJoin)
            throwUnsupported(from->place);
        hasRightJoin = true;
        sql = sql.isEmpty() ? text : text + QStringLiteral(", ") + sql;
    }
    return sql;
}

QString SqlPrinter::joined(const BoundFrom &from, bool &rightJoin) const
{
    if (!from.isJoin())
        return table(*from.table);
    const BoundFrom *left = from.left.get();
    const BoundFrom *right = from.right.get();
    JoinKind kind = from.join;
    if ((right->isJoin() && !left->isJoin())
        || (kind == JoinKind::Right && !right->isJoin() && !left->isJoin())) {
        std::swap(left, right);
        kind = mirrored(kind);
    }
    QString sql = joined(*left, rightJoin);
    QString conditions = condition(*from.on);
    if (right->isJoin()) {
        // Two joins joined: parentheses can go when the right one is inner.
        if (kind != JoinKind::Inner || !onlyInner(*right))
            throwUnsupported(from.place);
        bool open = false;
        flattenInner(*right, sql, conditions, open);
        return sql + QStringLiteral(" ON ") + conditions;
    }
    rightJoin = rightJoin || kind == JoinKind::Right;
    return sql + joinText(kind) + table(*right->table) + QStringLiteral(" ON ") + conditions;
}

// Appends the tables of an inner join one by one; only the last gets conditions, those of all of them.
void SqlPrinter::flattenInner(const BoundFrom &from, QString &sql, QString &conditions, bool &open) const
{
    for (const BoundFrom *side : {from.left.get(), from.right.get()}) {
        if (side->isJoin()) {
            flattenInner(*side, sql, conditions, open);
            continue;
        }
        if (open)
            sql += m_dialect.joinedAnyway(); // the table before
        sql += QStringLiteral(" INNER JOIN ") + table(*side->table);
        open = true;
    }
    conditions = u'(' + conditions + QStringLiteral(" AND ") + condition(*from.on) + u')';
}

} // namespace dao::sql
