// SPDX-License-Identifier: Apache-2.0
#include "dao/FromWriter.h"

#include "dao/SelectWriter.h"
#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

bool onlyInner(const From &from)
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

void FromWriter::addTables(const std::vector<FromPtr> &list)
{
    for (const FromPtr &from : list)
        addTables(*from);
}

void FromWriter::addTables(const From &from)
{
    if (from.isJoin()) {
        addTables(*from.left);
        addTables(*from.right);
        return;
    }
    Entry entry{m_scope.tables().size(), {}};
    if (from.derived) {
        SelectWriter::Options options;
        options.named = true;
        SelectResult inner = SelectWriter(m_context, nullptr, options).write(*from.derived);
        auto table = std::make_unique<TableInfo>();
        table->name = from.alias.toString();
        for (const ResultColumn &column : std::as_const(inner.columns))
            table->columns.append({column.name, column.type, column.size, false});
        entry.derivedSql = inner.sql;
        m_scope.addDerived(std::move(table), from.alias.isEmpty() ? QStringView(u"%$##@_Alias") : from.alias);
    } else {
        const TableInfo *table = m_context.catalog.table(from.table);
        if (table == nullptr)
            throwUnknownTable(from.table);
        m_scope.add(table, from.alias);
    }
    m_entries.emplace(&from, std::move(entry));
}

QString FromWriter::tableText(const From &from) const
{
    const Entry &entry = m_entries.at(&from);
    const ScopeTable &table = m_scope.tables()[entry.position];
    if (from.derived)
        return u'(' + entry.derivedSql + QStringLiteral(") AS ") + table.quotedAlias;
    return table.table->nativeName + QStringLiteral(" AS ") + table.quotedAlias;
}

QString FromWriter::write(const std::vector<FromPtr> &list, ExpressionWriter &expressions)
{
    QString sql;
    bool rightJoin = false;
    for (const FromPtr &from : list) {
        m_rightJoin = false;
        const QString text = write(*from, expressions);
        if (!m_rightJoin) {
            sql += sql.isEmpty() ? text : QStringLiteral(", ") + text;
            continue;
        }
        // A native engine may read "a, b RIGHT JOIN c" as "(a, b) RIGHT JOIN c": such a join goes first.
        if (rightJoin)
            throwUnsupported(from->right->table);
        rightJoin = true;
        sql = sql.isEmpty() ? text : text + QStringLiteral(", ") + sql;
    }
    return sql;
}

QString FromWriter::write(const From &from, ExpressionWriter &expressions)
{
    if (!from.isJoin())
        return tableText(from);
    const From *left = from.left.get();
    const From *right = from.right.get();
    JoinKind kind = from.join;
    if ((right->isJoin() && !left->isJoin())
        || (kind == JoinKind::Right && !right->isJoin() && !left->isJoin())) {
        std::swap(left, right);
        kind = mirrored(kind);
    }
    QString sql = write(*left, expressions);
    QString conditions = expressions.writeCondition(*from.on);
    if (right->isJoin()) {
        // Two joins joined: parentheses can go when the right one is inner.
        if (kind != JoinKind::Inner || !onlyInner(*right))
            throwUnsupported(from.on->place);
        bool open = false;
        flattenInner(*right, sql, conditions, expressions, open);
        return sql + QStringLiteral(" ON ") + conditions;
    }
    m_rightJoin = m_rightJoin || kind == JoinKind::Right;
    sql += joinText(kind);
    sql += tableText(*right);
    sql += QStringLiteral(" ON ");
    sql += conditions;
    return sql;
}

// Appends the tables of an inner join one by one; only the last gets conditions, those of all of them.
void FromWriter::flattenInner(const From &from, QString &sql, QString &conditions,
                              ExpressionWriter &expressions, bool &open)
{
    for (const From *side : {from.left.get(), from.right.get()}) {
        if (side->isJoin()) {
            flattenInner(*side, sql, conditions, expressions, open);
        } else {
            // All but the last one.
            if (open)
                sql += m_context.dialect.joinedAnyway();
            sql += QStringLiteral(" INNER JOIN ") + tableText(*side);
            open = true;
        }
    }
    conditions = u'(' + conditions + QStringLiteral(" AND ") + expressions.writeCondition(*from.on) + u')';
}

} // namespace dao::sql
