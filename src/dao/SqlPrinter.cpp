// SPDX-License-Identifier: Apache-2.0
#include "dao/SqlPrinter.h"

#include "dao/ParameterMarks.h"

namespace dao::sql {

QString SqlPrinter::print(const BoundStatement &bound, QList<ParameterUse> &uses) const
{
    QString sql = statement(bound);
    uses = resolveParameterMarks(sql);
    return sql;
}

QString SqlPrinter::statement(const BoundStatement &statement) const
{
    switch (statement.kind) {
    case StatementKind::Select:
        return select(statement.select, Names::Own);
    case StatementKind::Insert:
        return insert(statement);
    case StatementKind::Update:
        return update(statement);
    case StatementKind::Delete:
        return remove(statement);
    default:
        return {}; // a definition
    }
}

QString SqlPrinter::insert(const BoundStatement &statement) const
{
    QStringList columns;
    QStringList values;
    for (qsizetype i = 0; i < statement.columns.size(); ++i) {
        columns.append(m_dialect.identifier(statement.target->columns[statement.columns[i]].name));
        values.append(value(*statement.values[size_t(i)]));
    }
    const QString list = values.join(QStringLiteral(", "));
    return QStringLiteral("INSERT INTO ") + statement.target->nativeName + QStringLiteral(" (")
           + columns.join(QStringLiteral(", ")) + QStringLiteral(") ")
           + (statement.rows.from.empty() ? QStringLiteral("VALUES (") + list + u')'
                                          : QStringLiteral("SELECT ") + list + rows(statement.rows));
}

QString SqlPrinter::update(const BoundStatement &statement) const
{
    const bool isOneTable = statement.rows.tables.size() == 1;
    const QString written = m_dialect.identifier(QStringLiteral("written"));
    const QString joined = m_dialect.identifier(QStringLiteral("joined"));
    const QString row = m_dialect.identifier(QStringLiteral("row"));
    QStringList selected = {rowIdentity(*statement.written) + QStringLiteral(" AS ") + row};
    QStringList sets;
    for (qsizetype i = 0; i < statement.columns.size(); ++i) {
        const QString name = m_dialect.identifier(QStringLiteral("value%1").arg(i));
        const QString sql = value(*statement.values[size_t(i)]);
        selected.append(sql + QStringLiteral(" AS ") + name);
        sets.append(m_dialect.identifier(statement.target->columns[statement.columns[i]].name)
                    + QStringLiteral(" = ") + (isOneTable ? sql : joined + u'.' + name));
    }
    const QString set = QStringLiteral(" SET ") + sets.join(QStringLiteral(", "));
    if (isOneTable)
        return QStringLiteral("UPDATE ") + table(*statement.written) + set + where(statement.rows);
    // Over a join: the joined rows say which row of the table gets which values.
    return QStringLiteral("UPDATE ") + statement.target->nativeName + QStringLiteral(" AS ") + written + set
           + QStringLiteral(" FROM (SELECT ") + selected.join(QStringLiteral(", ")) + rows(statement.rows)
           + QStringLiteral(") AS ") + joined + QStringLiteral(" WHERE ") + m_dialect.rowIdentity(written)
           + QStringLiteral(" = ") + joined + u'.' + row;
}

QString SqlPrinter::remove(const BoundStatement &statement) const
{
    if (statement.rows.tables.size() == 1)
        return QStringLiteral("DELETE") + rows(statement.rows);
    const QString deleted = m_dialect.identifier(QStringLiteral("deleted"));
    return QStringLiteral("DELETE FROM ") + statement.target->nativeName + QStringLiteral(" AS ") + deleted
           + QStringLiteral(" WHERE ") + m_dialect.rowIdentity(deleted) + QStringLiteral(" IN (SELECT ")
           + rowIdentity(*statement.written) + rows(statement.rows) + u')';
}

QString SqlPrinter::select(const BoundSelect &select, Names names) const
{
    if (select.blocks.size() == 1)
        return block(select.blocks.front(), names, false);
    QString sql;
    for (const BoundBlock &part : select.blocks) {
        if (!sql.isEmpty())
            sql += part.unionAll ? QStringLiteral(" UNION ALL ") : QStringLiteral(" UNION ");
        const QString text = block(part, sql.isEmpty() ? Names::OfResult : Names::Own, select.comparesRows);
        sql +=
            part.top < 0 ? text : QStringLiteral("SELECT * FROM (") + text + QStringLiteral(") AS \"part\"");
    }
    return sql;
}

QString SqlPrinter::block(const BoundBlock &block, Names names, bool comparesRows) const
{
    if (block.top >= 0 && !block.orderBy.empty())
        return firstOfOrder(block, names);
    QString sql;
    sql.reserve(1024);
    sql += block.distinct ? QStringLiteral("SELECT DISTINCT ") : QStringLiteral("SELECT ");
    for (size_t i = 0; i < block.items.size(); ++i) {
        if (i > 0)
            sql += QStringLiteral(", ");
        sql += output(*block.items[i], block.distinct || comparesRows);
        if (names == Names::OfResult)
            sql += QStringLiteral(" AS ") + m_dialect.identifier(block.columns[qsizetype(i)].name);
    }
    for (const BoundTable *table : block.identities)
        sql += QStringLiteral(", ") + rowIdentity(*table);
    sql += clauses(block);
    QStringList terms;
    for (const BoundOrder &order : block.orderBy)
        terms.append(m_dialect.orderTerm(value(*order.value), order.value->type, order.descending));
    if (!terms.isEmpty())
        sql += QStringLiteral(" ORDER BY ") + terms.join(QStringLiteral(", "));
    if (block.top >= 0)
        sql += u' ' + m_dialect.limit(block.top);
    return sql;
}

// TOP n takes the rows that are equal to the n-th in the order as well: rows are ranked, not counted.
QString SqlPrinter::firstOfOrder(const BoundBlock &block, Names names) const
{
    QStringList inner;
    QStringList outer;
    const auto add = [&](const QString &sql, const QString &name) {
        inner.append(sql + QStringLiteral(" AS ") + m_dialect.identifier(name));
        outer.append(m_dialect.identifier(name));
    };
    for (size_t i = 0; i < block.items.size(); ++i)
        add(output(*block.items[i], block.distinct),
            names == Names::OfResult ? block.columns[qsizetype(i)].name : QStringLiteral("value%1").arg(i));
    for (const BoundTable *table : block.identities)
        add(rowIdentity(*table), QStringLiteral("row%1").arg(inner.size()));
    QStringList terms;
    for (const BoundOrder &order : block.orderBy) {
        const QString name = m_dialect.identifier(QStringLiteral("order%1").arg(terms.size()));
        inner.append(value(*order.value) + QStringLiteral(" AS ") + name);
        terms.append(m_dialect.orderTerm(name, order.value->type, order.descending));
    }
    const QString rank = m_dialect.identifier(QStringLiteral("place in order"));
    return QStringLiteral("SELECT ") + outer.join(QStringLiteral(", "))
           + QStringLiteral(" FROM (SELECT *, RANK() OVER (ORDER BY ") + terms.join(QStringLiteral(", "))
           + QStringLiteral(") AS ") + rank + QStringLiteral(" FROM (SELECT ")
           + (block.distinct ? QStringLiteral("DISTINCT ") : QString()) + inner.join(QStringLiteral(", "))
           + clauses(block) + QStringLiteral(") AS \"rows\") AS \"ranked\" WHERE ") + rank
           + QStringLiteral(" <= ") + QString::number(block.top) + QStringLiteral(" ORDER BY ") + rank;
}

QString SqlPrinter::clauses(const BoundBlock &block) const
{
    QString sql = rows(block.rows);
    QStringList groups;
    for (const BoundPtr &term : block.groupBy)
        groups.append(output(*term, true));
    if (!groups.isEmpty())
        sql += QStringLiteral(" GROUP BY ") + groups.join(QStringLiteral(", "));
    if (block.having)
        sql += QStringLiteral(" HAVING ") + condition(*block.having);
    return sql;
}

QString SqlPrinter::rows(const BoundRows &rows) const
{
    return (rows.from.empty() ? QString() : QStringLiteral(" FROM ") + from(rows.from)) + where(rows);
}

QString SqlPrinter::where(const BoundRows &rows) const
{
    return rows.where ? QStringLiteral(" WHERE ") + condition(*rows.where) : QString();
}

QString SqlPrinter::table(const BoundTable &table) const
{
    const QString name = m_dialect.identifier(table.alias);
    if (table.derived)
        return u'(' + select(*table.derived, Names::OfResult) + QStringLiteral(") AS ") + name;
    return table.info->nativeName + QStringLiteral(" AS ") + name;
}

QString SqlPrinter::rowIdentity(const BoundTable &table) const
{
    return m_dialect.rowIdentity(m_dialect.identifier(table.alias));
}

} // namespace dao::sql
