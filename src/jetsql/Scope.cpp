// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Scope.h"

#include "jetsql/SqlErrors.h"

namespace dao::sql {

const BoundTable *Scope::append(BoundTable added)
{
    if (table(added.alias) != nullptr)
        throwSyntaxError(added.alias);
    m_tables.push_back(std::make_shared<const BoundTable>(std::move(added)));
    return m_tables.back().get();
}

const BoundTable *Scope::add(const TableInfo *table, QStringView alias)
{
    // Not owned: the catalog keeps it.
    return append({std::shared_ptr<const TableInfo>(std::shared_ptr<const TableInfo>(), table),
                   alias.isEmpty() ? table->name : alias.toString(),
                   {}});
}

const BoundTable *Scope::addDerived(std::shared_ptr<const BoundSelect> select, QStringView alias)
{
    auto info = std::make_shared<TableInfo>();
    info->name = alias.toString();
    for (const ResultColumn &column : select->columns)
        info->columns.append({column.name, column.type, column.size, false});
    return append({std::move(info), alias.toString(), std::move(select)});
}

const BoundTable *Scope::table(QStringView alias) const
{
    for (const BoundTablePtr &table : m_tables) {
        if (alias.compare(table->alias, Qt::CaseInsensitive) == 0)
            return table.get();
    }
    return nullptr;
}

int Scope::indexOf(const BoundTable *table) const
{
    for (size_t i = 0; i < m_tables.size(); ++i) {
        if (m_tables[i].get() == table)
            return int(i);
    }
    return -1;
}

Scope::Found Scope::find(QStringView qualifier, QStringView name) const
{
    Found found;
    for (const BoundTablePtr &table : m_tables) {
        if (!qualifier.isEmpty() && qualifier.compare(table->alias, Qt::CaseInsensitive) != 0)
            continue;
        const int column = table->info->columnIndex(name);
        if (column < 0)
            continue;
        if (found.table != nullptr)
            throwAmbiguousField(name);
        found = {table.get(), column};
    }
    return found.table == nullptr && m_outer != nullptr ? m_outer->find(qualifier, name) : found;
}

} // namespace dao::sql
