// SPDX-License-Identifier: Apache-2.0
#include "jetsql/FromBinder.h"

#include "jetsql/SelectBinder.h"
#include "jetsql/SqlErrors.h"

namespace dao::sql {

std::vector<BoundFromPtr> FromBinder::bind(const std::vector<FromPtr> &list, ExpressionBinder &expressions)
{
    std::vector<BoundFromPtr> bound;
    for (const FromPtr &from : list)
        bound.push_back(tables(*from));
    for (size_t i = 0; i < list.size(); ++i)
        bindJoins(*list[i], *bound[i], expressions);
    return bound;
}

BoundFromPtr FromBinder::tables(const From &from)
{
    auto bound = std::make_unique<BoundFrom>();
    if (from.isJoin()) {
        bound->join = from.join;
        bound->place = from.on->place;
        bound->left = tables(*from.left);
        bound->right = tables(*from.right);
        return bound;
    }
    bound->place = from.table;
    if (from.derived) {
        auto select =
            std::make_shared<const BoundSelect>(SelectBinder(m_context, nullptr).bind(*from.derived));
        bound->table = m_scope.addDerived(std::move(select),
                                          from.alias.isEmpty() ? QStringView(u"%$##@_Alias") : from.alias);
        return bound;
    }
    const TableInfo *table = m_context.catalog.table(from.table);
    if (table == nullptr)
        throwUnknownTable(from.table);
    bound->table = m_scope.add(table, from.alias);
    return bound;
}

void FromBinder::bindJoins(const From &from, BoundFrom &bound, ExpressionBinder &expressions)
{
    if (!from.isJoin())
        return;
    bindJoins(*from.left, *bound.left, expressions);
    bindJoins(*from.right, *bound.right, expressions);
    bound.on = expressions.bindCondition(*from.on);
}

} // namespace dao::sql
