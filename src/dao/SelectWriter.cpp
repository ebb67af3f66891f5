// SPDX-License-Identifier: Apache-2.0
#include "dao/SelectWriter.h"

#include "dao/FromWriter.h"
#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

bool hasAggregate(const Expression &expression)
{
    if (expression.kind == Expression::Kind::Call) {
        for (const QStringView name : {u"count", u"sum", u"avg", u"min", u"max", u"first", u"last"}) {
            if (expression.name.compare(name, Qt::CaseInsensitive) == 0)
                return true;
        }
    }
    return std::any_of(expression.arguments.begin(), expression.arguments.end(),
                       [](const ExpressionPtr &argument) { return hasAggregate(*argument); });
}

bool isGrouped(const Select &select)
{
    return !select.groupBy.empty() || select.having
           || std::any_of(select.items.begin(), select.items.end(), [](const SelectItem &item) {
                  return item.expression && hasAggregate(*item.expression);
              });
}

FieldType typeOf(TypeClass wanted)
{
    switch (wanted) {
    case TypeClass::Boolean:
        return FieldType::Boolean;
    case TypeClass::Number:
        return FieldType::Double;
    case TypeClass::Date:
        return FieldType::Date;
    case TypeClass::Text:
        return FieldType::Text;
    default:
        return FieldType::Null;
    }
}

// Without regard to case, for names of ASCII; others only spread less well.
quint32 nameHash(const QString &name)
{
    quint32 hash = 2166136261U;
    for (const QChar c : name) {
        const char16_t u = c.unicode();
        hash = (hash ^ (u >= u'A' && u <= u'Z' ? u + 32U : u < 0x80 ? u : 0x80U)) * 16777619U;
    }
    return hash;
}

} // namespace

SelectResult SelectWriter::write(const Select &select)
{
    SelectResult result = select.next ? writeUnion(select) : writeBlock(select);
    if (m_options.singleColumn && result.columns.size() != 1)
        throwSyntaxError(select.place);
    return result;
}

SelectResult SelectWriter::writeUnion(const Select &select)
{
    SelectResult result;
    QString sql;
    const Select *last = &select;
    bool distinct = false; // UNION without ALL compares rows
    for (const Select *block = select.next.get(); block != nullptr; block = block->next.get())
        distinct = distinct || !block->unionAll;
    for (const Select *block = &select; block != nullptr; block = block->next.get()) {
        last = block;
        Options options = m_options;
        options.identities = false;
        options.singleColumn = false;
        options.named = block == &select;
        options.inUnion = true;
        options.groupTexts = distinct;
        SelectWriter writer(m_context, m_outer, options);
        SelectResult part = writer.writeBlock(*block);
        if (block->top >= 0)
            part.sql = QStringLiteral("SELECT * FROM (") + part.sql + QStringLiteral(") AS \"part\"");
        if (block == &select) {
            result.columns = part.columns;
            sql = part.sql;
            continue;
        }
        if (part.columns.size() != result.columns.size())
            throwFieldCount(block->place);
        for (qsizetype i = 0; i < part.columns.size(); ++i) {
            ResultColumn &column = result.columns[i];
            const TypeClass first = classOf(column.type);
            const TypeClass second = classOf(part.columns[i].type);
            if (first != second && first != TypeClass::Null && second != TypeClass::Null)
                throwTypeMismatch(block->place);
            if (first == TypeClass::Null)
                column.type = part.columns[i].type;
            else if (column.type != part.columns[i].type && first == TypeClass::Number)
                column.type = FieldType::Double;
            column.size = column.size == 0 || part.columns[i].size == 0
                              ? 0
                              : std::max(column.size, part.columns[i].size);
        }
        sql += block->unionAll ? QStringLiteral(" UNION ALL ") : QStringLiteral(" UNION ");
        sql += part.sql;
    }
    for (ResultColumn &column : result.columns) {
        column.source = column.sourceColumn = -1;
        column.qualifiedName.clear();
    }
    // The last block's ORDER BY orders the whole; its names are those of the first block.
    if (!last->orderBy.empty()) {
        auto table = std::make_unique<TableInfo>();
        for (const ResultColumn &column : std::as_const(result.columns))
            table->columns.append({column.name, column.type, column.size, false});
        Scope scope(m_context.dialect);
        scope.addDerived(std::move(table), u"union");
        ExpressionWriter expressions(m_context, scope);
        for (int i = 0; i < result.columns.size(); ++i)
            addField(scope, 0, i);
        const QStringList terms = orderTerms(*last, scope, expressions, false);
        if (!terms.isEmpty()) {
            sql = QStringLiteral("SELECT * FROM (") + sql + QStringLiteral(") AS ")
                  + scope.tables()[0].quotedAlias + QStringLiteral(" ORDER BY ")
                  + terms.join(QStringLiteral(", "));
        }
    }
    result.sql = sql;
    return result;
}

SelectResult SelectWriter::writeBlock(const Select &select)
{
    Scope scope(m_context.dialect, m_outer);
    FromWriter from(m_context, scope);
    from.addTables(select.from);
    ExpressionWriter expressions(m_context, scope);
    const bool grouped = isGrouped(select);

    QString rest;
    if (!select.from.empty())
        rest += QStringLiteral(" FROM ") + from.write(select.from, expressions);
    if (select.where)
        rest += QStringLiteral(" WHERE ") + expressions.writeCondition(*select.where);
    QStringList groupTerms;
    QStringList groupTexts;
    for (const ExpressionPtr &term : select.groupBy) {
        const Operand operand = expressions.write(*term);
        if (operand.isConstant)
            continue;
        const QString sql = expressions.conversions().sql(operand);
        groupTerms.append(operand.sql);
        groupTexts.append(isText(operand.type) ? m_context.dialect.groupText(sql) : sql);
    }
    if (!groupTexts.isEmpty())
        rest += QStringLiteral(" GROUP BY ") + groupTexts.join(QStringLiteral(", "));
    expressions.forgetLooseFields();
    expressions.setGroupTerms(groupTerms);
    expressions.setAggregatesAllowed(grouped);
    if (select.having) {
        rest += QStringLiteral(" HAVING ") + expressions.writeCondition(*select.having);
        expressions.checkGrouped();
    }
    writeItems(select, scope, expressions);
    if (grouped)
        expressions.checkGrouped();
    nameFields(scope);

    SelectResult result;
    QStringList identities;
    const bool rows = m_options.identities && !grouped && !select.distinct;
    QList<int> sourceOf;
    for (const ScopeTable &table : scope.tables()) {
        sourceOf.append(table.derived ? -1 : int(result.sources.size()));
        if (table.derived)
            continue;
        RowSource source{table.table, table.alias, -1};
        if (rows) {
            source.identityColumn = int(m_outputs.size() + size_t(identities.size()));
            identities.append(m_context.dialect.rowIdentity(table.quotedAlias));
        }
        result.sources.append(source);
    }
    result.columns.reserve(qsizetype(m_outputs.size()));
    for (Output &output : m_outputs) {
        if (output.operand.table >= 0) {
            output.column.source = sourceOf[output.operand.table];
            output.column.sourceColumn = output.column.source >= 0 ? output.operand.column : -1;
        }
        result.columns.append(output.column);
    }

    // The ORDER BY of a UNION's last block is the whole UNION's.
    const bool ordered = !select.orderBy.empty() && !m_options.inUnion;
    const QStringList order = ordered ? orderTerms(select, scope, expressions, grouped) : QStringList();
    if (select.top >= 0 && !order.isEmpty()) {
        result.sql = topOfOrder(select, identities, rest);
        return result;
    }
    result.sql.reserve(1024);
    result.sql += select.distinct ? QStringLiteral("SELECT DISTINCT ") : QStringLiteral("SELECT ");
    result.sql += outputList(identities, m_options.named, select.distinct || m_options.groupTexts);
    result.sql += rest;
    if (!order.isEmpty())
        result.sql += QStringLiteral(" ORDER BY ") + order.join(QStringLiteral(", "));
    if (select.top >= 0)
        result.sql += u' ' + m_context.dialect.limit(select.top);
    return result;
}

void SelectWriter::writeItems(const Select &select, const Scope &scope, ExpressionWriter &expressions)
{
    const bool grouped = isGrouped(select);
    for (const SelectItem &item : select.items) {
        if (item.star) {
            if (grouped || scope.tables().empty())
                throwSyntaxError(select.place);
            const int only = item.starTable.isEmpty() ? -1 : scope.tableIndex(item.starTable);
            if (!item.starTable.isEmpty() && only < 0)
                throwUnknownTable(item.starTable);
            for (int table = 0; table < int(scope.tables().size()); ++table) {
                if (only >= 0 && table != only)
                    continue;
                for (int column = 0; column < scope.tables()[size_t(table)].table->columns.size(); ++column)
                    addField(scope, table, column);
            }
            continue;
        }
        Output output;
        output.operand = expressions.write(*item.expression);
        if (m_options.convertTo)
            output.operand = expressions.conversions().toClass(output.operand, *m_options.convertTo,
                                                               item.expression->place);
        output.alias = item.alias;
        output.sql = m_options.convertTo && output.operand.type == FieldType::Null
                         ? m_context.dialect.nullLiteral(typeOf(*m_options.convertTo))
                         : expressions.conversions().sql(output.operand);
        output.column.type = output.operand.type;
        output.column.size = output.operand.size;
        m_outputs.push_back(std::move(output));
    }
}

void SelectWriter::addField(const Scope &scope, int table, int column)
{
    const ScopeTable &entry = scope.tables()[size_t(table)];
    const ColumnInfo &info = entry.table->columns[column];
    Output output;
    output.sql.reserve(entry.quotedAlias.size() + info.name.size() + 3);
    output.sql += entry.quotedAlias;
    output.sql += u'.';
    output.sql += m_context.dialect.identifier(info.name);
    output.operand.sql = output.sql;
    output.operand.type = output.column.type = info.type;
    output.operand.size = output.column.size = info.size;
    output.operand.table = table;
    output.operand.column = column;
    m_outputs.push_back(std::move(output));
}

// Fields have their own name or alias; those of equal name from several tables are told apart by the table.
void SelectWriter::nameFields(const Scope &scope)
{
    std::vector<std::pair<quint32, size_t>> hashes;
    hashes.reserve(m_outputs.size());
    for (size_t i = 0; i < m_outputs.size(); ++i) {
        Output &output = m_outputs[i];
        const Operand &operand = output.operand;
        if (operand.table >= 0) {
            const ScopeTable &table = scope.tables()[size_t(operand.table)];
            const QString &field = table.table->columns[operand.column].name;
            output.column.qualifiedName.reserve(table.alias.size() + field.size() + 1);
            output.column.qualifiedName += table.alias;
            output.column.qualifiedName += u'.';
            output.column.qualifiedName += field;
            output.column.name = field;
        }
        if (!output.alias.isEmpty())
            output.column.name = output.alias.toString();
        else if (operand.table < 0)
            output.column.name = QStringLiteral("Expr%1").arg(1000 + i);
        hashes.emplace_back(nameHash(output.column.name), i);
    }
    std::sort(hashes.begin(), hashes.end());
    std::vector<bool> repeated(m_outputs.size());
    for (size_t i = 0; i < hashes.size(); ++i) {
        for (size_t j = i + 1; j < hashes.size() && hashes[j].first == hashes[i].first; ++j) {
            const Output &a = m_outputs[hashes[i].second];
            const Output &b = m_outputs[hashes[j].second];
            if (a.operand.table != b.operand.table
                && a.column.name.compare(b.column.name, Qt::CaseInsensitive) == 0)
                repeated[hashes[i].second] = repeated[hashes[j].second] = true;
        }
    }
    for (size_t i = 0; i < m_outputs.size(); ++i) {
        if (repeated[i] && m_outputs[i].alias.isEmpty() && !m_outputs[i].column.qualifiedName.isEmpty())
            m_outputs[i].column.name = m_outputs[i].column.qualifiedName;
    }
}

Operand SelectWriter::orderOperand(const Expression &expression, const Scope &scope,
                                   ExpressionWriter &expressions, bool grouped)
{
    if (expression.kind == Expression::Kind::Constant && expression.constant.type == FieldType::Long) {
        const qlonglong position = expression.constant.value.toLongLong();
        if (position < 1 || position > qlonglong(m_outputs.size()))
            throwSyntaxError(expression.place);
        return m_outputs[size_t(position - 1)].operand;
    }
    if (expression.kind == Expression::Kind::Field && expression.qualifier.isEmpty()) {
        const auto named = std::find_if(m_outputs.begin(), m_outputs.end(), [&](const Output &output) {
            return !output.alias.isEmpty() && output.alias.compare(expression.name, Qt::CaseInsensitive) == 0;
        });
        if (named != m_outputs.end() && (grouped || scope.find({}, expression.name).entry == nullptr))
            return named->operand;
    }
    const Operand operand = expressions.write(expression);
    if (grouped)
        expressions.checkGrouped();
    return operand;
}

QStringList SelectWriter::orderTerms(const Select &select, const Scope &scope, ExpressionWriter &expressions,
                                     bool grouped)
{
    QStringList terms;
    for (const OrderItem &item : select.orderBy) {
        const Operand operand = orderOperand(*item.expression, scope, expressions, grouped);
        if (operand.isConstant)
            continue;
        const QString sql = expressions.conversions().sql(operand);
        if (select.distinct && std::none_of(m_outputs.begin(), m_outputs.end(), [&](const Output &o) {
                return o.sql == sql;
            }))
            throwOrderConflict(item.expression->place);
        m_order.push_back({sql, operand.type, item.descending});
        terms.append(m_context.dialect.orderTerm(sql, operand.type, item.descending));
    }
    return terms;
}

QString SelectWriter::outputList(const QStringList &identities, bool named, bool grouped) const
{
    QString list;
    for (const Output &output : m_outputs) {
        if (!list.isEmpty())
            list += QStringLiteral(", ");
        list += grouped && isText(output.column.type) ? m_context.dialect.groupText(output.sql) : output.sql;
        if (named) {
            list += QStringLiteral(" AS ");
            list += m_context.dialect.identifier(output.column.name);
        }
    }
    for (const QString &identity : identities) {
        list += QStringLiteral(", ");
        list += identity;
    }
    return list;
}

// TOP n takes the rows that are equal to the n-th in the order as well: rows are ranked, not counted.
QString SelectWriter::topOfOrder(const Select &select, const QStringList &identities, const QString &rest)
{
    const Dialect &dialect = m_context.dialect;
    QStringList inner;
    QStringList outer;
    for (const Output &output : m_outputs) {
        const QString name = dialect.identifier(
            m_options.named ? output.column.name : QStringLiteral("value%1").arg(inner.size()));
        inner.append(
            (select.distinct && isText(output.column.type) ? dialect.groupText(output.sql) : output.sql)
            + QStringLiteral(" AS ") + name);
        outer.append(name);
    }
    for (const QString &identity : identities) {
        const QString name = dialect.identifier(QStringLiteral("row%1").arg(inner.size()));
        inner.append(identity + QStringLiteral(" AS ") + name);
        outer.append(name);
    }
    QStringList terms;
    for (size_t i = 0; i < m_order.size(); ++i) {
        const QString name = dialect.identifier(QStringLiteral("order%1").arg(i));
        inner.append(m_order[i].sql + QStringLiteral(" AS ") + name);
        terms.append(dialect.orderTerm(name, m_order[i].type, m_order[i].descending));
    }
    const QString rank = dialect.identifier(QStringLiteral("place in order"));
    return QStringLiteral("SELECT ") + outer.join(QStringLiteral(", "))
           + QStringLiteral(" FROM (SELECT *, RANK() OVER (ORDER BY ") + terms.join(QStringLiteral(", "))
           + QStringLiteral(") AS ") + rank + QStringLiteral(" FROM (SELECT ")
           + (select.distinct ? QStringLiteral("DISTINCT ") : QString()) + inner.join(QStringLiteral(", "))
           + rest + QStringLiteral(") AS \"rows\") AS \"ranked\" WHERE ") + rank + QStringLiteral(" <= ")
           + QString::number(select.top) + QStringLiteral(" ORDER BY ") + rank;
}

} // namespace dao::sql
