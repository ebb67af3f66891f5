// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Bound.h"

namespace dao::sql {

// The tables that names in a SELECT can refer to: its own, then those of the SELECT around it.
class Scope {
public:
    explicit Scope(const Scope *outer = nullptr)
        : m_outer(outer)
    {
    }

    // Throws Error when another table is there under the same name. The catalog's table outlives the trees.
    const BoundTable *add(const TableInfo *table, QStringView alias);
    const BoundTable *addDerived(std::shared_ptr<const BoundSelect> select, QStringView alias);

    const std::vector<BoundTablePtr> &tables() const { return m_tables; }
    // The table of that name; null when this scope has none (outer scopes are not asked).
    const BoundTable *table(QStringView alias) const;
    // Position of a table of this scope; -1 when it is another's.
    int indexOf(const BoundTable *table) const;

    struct Found {
        const BoundTable *table = nullptr; // null: not found
        int column = -1;
    };
    // A field by name, its table given or not. Throws Error when it is in more than one table.
    Found find(QStringView qualifier, QStringView name) const;

private:
    const BoundTable *append(BoundTable table);

    const Scope *m_outer;
    std::vector<BoundTablePtr> m_tables;
};

} // namespace dao::sql
