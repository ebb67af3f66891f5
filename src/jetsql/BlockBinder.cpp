// SPDX-License-Identifier: Apache-2.0
#include "jetsql/BlockBinder.h"

#include "jetsql/FromBinder.h"
#include "jetsql/SqlErrors.h"

#include <QHash>

namespace dao::sql {
namespace {

bool hasAggregate(const Expression &expression)
{
    return (expression.kind == Expression::Kind::Call && findAggregate(expression.name) != Aggregate::None)
           || std::any_of(expression.arguments.begin(), expression.arguments.end(),
                          [](const ExpressionPtr &argument) { return hasAggregate(*argument); });
}

bool isGrouped(const Select &select)
{
    return !select.groupBy.empty() || select.having
           || std::any_of(select.items.begin(), select.items.end(), [](const SelectItem &item) {
                  return item.expression && hasAggregate(*item.expression);
              });
}

} // namespace

BlockBinder::BlockBinder(const BindContext &context, const Scope *outer)
    : m_context(context)
    , m_scope(outer)
    , m_expressions(context, m_scope)
{
}

BoundBlock BlockBinder::bind(const Select &select, bool inUnion)
{
    m_block.grouped = isGrouped(select);
    m_block.distinct = select.distinct;
    m_block.top = select.top;
    m_block.rows.from = FromBinder(m_context, m_scope).bind(select.from, m_expressions);
    if (select.where)
        m_block.rows.where = m_expressions.bindCondition(*select.where);
    groups(select);
    items(select);
    nameColumns();
    if (!inUnion)
        order(select);
    m_block.rows.tables = m_scope.tables();
    return std::move(m_block);
}

BoundBlock BlockBinder::bindOrdered(std::shared_ptr<const BoundSelect> derived, const Select &last)
{
    m_block.columns = derived->columns;
    auto from = std::make_unique<BoundFrom>();
    from->table = m_scope.addDerived(std::move(derived), u"union");
    for (int i = 0; i < m_block.columns.size(); ++i) {
        m_block.items.push_back(fieldOf(from->table, i, {}));
        m_aliases.emplace_back();
    }
    m_block.rows.from.push_back(std::move(from));
    m_block.distinct = last.distinct;
    order(last);
    m_block.distinct = false;
    m_block.rows.tables = m_scope.tables();
    return std::move(m_block);
}

QList<RowSource> BlockBinder::sources() const
{
    QList<RowSource> sources;
    for (const BoundTablePtr &table : m_scope.tables()) {
        if (!table->derived)
            sources.append({table->info.get(), table->alias, -1});
    }
    return sources;
}

void BlockBinder::groups(const Select &select)
{
    for (const ExpressionPtr &term : select.groupBy) {
        BoundPtr value = m_expressions.bind(*term);
        if (!value->isConstant())
            m_block.groupBy.push_back(std::move(value));
    }
    m_expressions.setAggregatesAllowed(m_block.grouped);
    if (!select.having)
        return;
    m_block.having = m_expressions.bindCondition(*select.having);
    requireGrouped(*m_block.having, select.having->place);
}

void BlockBinder::requireGrouped(const Bound &value, QStringView place) const
{
    if (!m_block.grouped || value.kind == Bound::Kind::Aggregate
        || std::any_of(m_block.groupBy.begin(), m_block.groupBy.end(),
                       [&value](const BoundPtr &term) { return same(*term, value); }))
        return;
    if (value.kind == Bound::Kind::Field && m_scope.indexOf(value.table) >= 0)
        throwNotGrouped(value.place.isEmpty() ? place : value.place);
    for (const BoundPtr &argument : value.arguments)
        requireGrouped(*argument, place);
}

void BlockBinder::items(const Select &select)
{
    for (const SelectItem &item : select.items) {
        if (item.star) {
            star(select, item.starTable);
            continue;
        }
        BoundPtr value = m_expressions.bind(*item.expression);
        requireGrouped(*value, item.expression->place);
        m_block.items.push_back(std::move(value));
        m_aliases.push_back(item.alias);
    }
}

void BlockBinder::star(const Select &select, QStringView tableName)
{
    if (m_block.grouped || m_scope.tables().empty())
        throwSyntaxError(select.place);
    const BoundTable *only = tableName.isEmpty() ? nullptr : m_scope.table(tableName);
    if (!tableName.isEmpty() && only == nullptr)
        throwUnknownTable(tableName);
    for (const BoundTablePtr &table : m_scope.tables()) {
        if (only != nullptr && table.get() != only)
            continue;
        for (int column = 0; column < table->info->columns.size(); ++column) {
            m_block.items.push_back(fieldOf(table.get(), column, {}));
            m_aliases.emplace_back();
        }
    }
}

void BlockBinder::nameColumns()
{
    QList<int> sourceOf; // by table of the scope
    int sources = 0;
    for (const BoundTablePtr &table : m_scope.tables())
        sourceOf.append(table->derived ? -1 : sources++);
    for (size_t i = 0; i < m_block.items.size(); ++i) {
        const Bound &item = *m_block.items[i];
        ResultColumn column{{}, {}, item.type, item.size};
        const int table = item.kind == Bound::Kind::Field ? m_scope.indexOf(item.table) : -1;
        if (table >= 0) {
            column.name = item.table->info->columns[item.column].name;
            column.qualifiedName = item.table->alias + u'.' + column.name;
            column.source = sourceOf[table];
            column.sourceColumn = column.source >= 0 ? item.column : -1;
        }
        if (!m_aliases[i].isEmpty())
            column.name = m_aliases[i].toString();
        else if (table < 0)
            column.name = QStringLiteral("Expr%1").arg(1000 + i);
        m_block.columns.append(std::move(column));
    }
    tellApart();
}

void BlockBinder::tellApart()
{
    const auto isNamed = [](QStringView alias) { return !alias.isEmpty(); };
    if (m_scope.tables().size() < 2 && std::none_of(m_aliases.begin(), m_aliases.end(), isNamed))
        return;
    QMultiHash<QString, const BoundTable *> tables; // by folded name
    for (qsizetype i = 0; i < m_block.columns.size(); ++i)
        tables.insert(m_block.columns[i].name.toLower(), m_block.items[size_t(i)]->table);
    for (qsizetype i = 0; i < m_block.columns.size(); ++i) {
        ResultColumn &column = m_block.columns[i];
        if (isNamed(m_aliases[size_t(i)]) || column.qualifiedName.isEmpty())
            continue;
        const auto [first, end] = std::as_const(tables).equal_range(column.name.toLower());
        const BoundTable *own = m_block.items[size_t(i)]->table;
        if (std::any_of(first, end, [own](const BoundTable *table) { return table != own; }))
            column.name = column.qualifiedName;
    }
}

BoundPtr BlockBinder::orderValue(const Expression &expression)
{
    if (expression.kind == Expression::Kind::Constant && expression.constant.type == FieldType::Long) {
        const qlonglong position = expression.constant.value.toLongLong();
        if (position < 1 || position > qlonglong(m_block.items.size()))
            throwSyntaxError(expression.place);
        return m_block.items[size_t(position - 1)];
    }
    if (expression.kind == Expression::Kind::Field && expression.qualifier.isEmpty()) {
        const auto named = std::find_if(m_aliases.begin(), m_aliases.end(), [&](QStringView alias) {
            return !alias.isEmpty() && alias.compare(expression.name, Qt::CaseInsensitive) == 0;
        });
        if (named != m_aliases.end()
            && (m_block.grouped || m_scope.find({}, expression.name).table == nullptr))
            return m_block.items[size_t(named - m_aliases.begin())];
    }
    BoundPtr value = m_expressions.bind(expression);
    requireGrouped(*value, expression.place);
    return value;
}

void BlockBinder::order(const Select &select)
{
    for (const OrderItem &item : select.orderBy) {
        BoundPtr value = orderValue(*item.expression);
        if (value->isConstant())
            continue;
        if (m_block.distinct
            && std::none_of(m_block.items.begin(), m_block.items.end(),
                            [&value](const BoundPtr &output) { return same(*output, *value); }))
            throwOrderConflict(item.expression->place);
        m_block.orderBy.push_back({std::move(value), item.descending});
    }
}

} // namespace dao::sql
