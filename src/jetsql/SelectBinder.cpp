// SPDX-License-Identifier: Apache-2.0
#include "jetsql/SelectBinder.h"

#include "jetsql/BlockBinder.h"
#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

// A column of a UNION as two of its SELECTs have it. Throws Error (TypeMismatch).
void unite(ResultColumn &column, const ResultColumn &other, QStringView place)
{
    const TypeClass first = classOf(column.type);
    const TypeClass second = classOf(other.type);
    if (first != second && first != TypeClass::Null && second != TypeClass::Null)
        throwTypeMismatch(place);
    if (first == TypeClass::Null)
        column.type = other.type;
    else if (column.type != other.type && first == TypeClass::Number)
        column.type = FieldType::Double;
    column.size = column.size == 0 || other.size == 0 ? 0 : std::max(column.size, other.size);
}

} // namespace

BoundSelect SelectBinder::bind(const Select &select) const
{
    if (select.next)
        return unionOf(select);
    BlockBinder binder(m_context, m_outer);
    BoundSelect bound;
    bound.blocks.push_back(binder.bind(select, false));
    bound.columns = bound.blocks.front().columns;
    bound.sources = binder.sources();
    return bound;
}

BoundSelect SelectBinder::bindSingleColumn(const Select &select) const
{
    BoundSelect bound = bind(select);
    if (bound.columns.size() != 1)
        throwSyntaxError(select.place);
    return bound;
}

BoundSelect SelectBinder::bindWithIdentities(const Select &select) const
{
    BoundSelect bound = bind(select);
    BoundBlock &block = bound.blocks.front();
    if (select.next || block.grouped || block.distinct)
        return bound;
    for (const BoundTablePtr &table : block.rows.tables) {
        if (!table->derived)
            block.identities.push_back(table.get());
    }
    for (qsizetype i = 0; i < bound.sources.size(); ++i)
        bound.sources[i].identityColumn = int(bound.columns.size() + i);
    return bound;
}

BoundSelect SelectBinder::unionOf(const Select &select) const
{
    BoundSelect bound;
    const Select *last = nullptr;
    for (const Select *block = &select; block != nullptr; block = block->next.get()) {
        last = block;
        bound.blocks.push_back(BlockBinder(m_context, m_outer).bind(*block, true));
        BoundBlock &part = bound.blocks.back();
        if (block == &select) {
            bound.columns = part.columns;
            continue;
        }
        part.unionAll = block->unionAll;
        bound.comparesRows = bound.comparesRows || !block->unionAll;
        if (part.columns.size() != bound.columns.size())
            throwFieldCount(block->place);
        for (qsizetype i = 0; i < part.columns.size(); ++i)
            unite(bound.columns[i], part.columns[i], block->place);
    }
    for (ResultColumn &column : bound.columns) {
        column.source = column.sourceColumn = -1;
        column.qualifiedName.clear();
    }
    return last->orderBy.empty() ? std::move(bound) : ordered(std::move(bound), *last);
}

// The last block's ORDER BY orders the whole; its names are those of the first block.
BoundSelect SelectBinder::ordered(BoundSelect select, const Select &last) const
{
    BoundSelect whole;
    whole.columns = select.columns;
    whole.blocks.push_back(BlockBinder(m_context, nullptr)
                               .bindOrdered(std::make_shared<const BoundSelect>(std::move(select)), last));
    return whole;
}

} // namespace dao::sql
