// SPDX-License-Identifier: Apache-2.0
#include "dao/Scope.h"

#include "jetsql/SqlErrors.h"

namespace dao::sql {

void Scope::append(ScopeTable entry)
{
    if (tableIndex(entry.alias) >= 0)
        throwSyntaxError(entry.alias);
    entry.quotedAlias = m_dialect.identifier(entry.alias);
    m_tables.push_back(std::move(entry));
}

void Scope::add(const TableInfo *table, QStringView alias)
{
    ScopeTable entry;
    entry.table = table;
    entry.alias = alias.isEmpty() ? table->name : alias.toString();
    append(std::move(entry));
}

void Scope::addDerived(std::unique_ptr<TableInfo> table, QStringView alias)
{
    ScopeTable entry;
    entry.table = table.get();
    entry.derived = std::move(table);
    entry.alias = alias.toString();
    append(std::move(entry));
}

int Scope::tableIndex(QStringView alias) const
{
    for (size_t i = 0; i < m_tables.size(); ++i) {
        if (alias.compare(m_tables[i].alias, Qt::CaseInsensitive) == 0)
            return int(i);
    }
    return -1;
}

Scope::Found Scope::find(QStringView qualifier, QStringView name) const
{
    Found found;
    for (size_t i = 0; i < m_tables.size(); ++i) {
        const ScopeTable &entry = m_tables[i];
        if (!qualifier.isEmpty() && qualifier.compare(entry.alias, Qt::CaseInsensitive) != 0)
            continue;
        const int column = entry.table->columnIndex(name);
        if (column < 0)
            continue;
        if (found.entry != nullptr)
            throwAmbiguousField(name);
        found = {int(i), &entry, column};
    }
    if (found.entry == nullptr && m_outer != nullptr) {
        found = m_outer->find(qualifier, name);
        found.table = -1;
    }
    return found;
}

} // namespace dao::sql
