// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Dialect.h"
#include "jetsql/Catalog.h"

#include <memory>
#include <vector>

namespace dao::sql {

// A table of a FROM clause under the name by which fields refer to it.
struct ScopeTable {
    const TableInfo *table = nullptr;
    QString alias;
    QString quotedAlias; // native
    std::unique_ptr<TableInfo> derived; // the fields of a derived table; null for a table of the database
};

// The tables that names in a SELECT can refer to: its own, then those of the SELECT around it.
class Scope {
public:
    explicit Scope(const Dialect &dialect, const Scope *outer = nullptr)
        : m_dialect(dialect)
        , m_outer(outer)
    {
    }

    // Throws Error when another table is there under the same name.
    void add(const TableInfo *table, QStringView alias);
    void addDerived(std::unique_ptr<TableInfo> table, QStringView alias);

    const std::vector<ScopeTable> &tables() const { return m_tables; }
    // Position of the table of that name; -1 when this scope has none (outer scopes are not asked).
    int tableIndex(QStringView alias) const;

    struct Found {
        int table = -1; // -1 in an outer scope
        const ScopeTable *entry = nullptr; // null: not found
        int column = -1;
    };
    // A field by name, its table given or not. Throws Error when it is in more than one table.
    Found find(QStringView qualifier, QStringView name) const;

private:
    void append(ScopeTable entry);
    const Dialect &m_dialect;
    const Scope *m_outer;
    std::vector<ScopeTable> m_tables;
};

} // namespace dao::sql
