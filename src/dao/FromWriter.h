// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/ExpressionWriter.h"

#include <unordered_map>

namespace dao::sql {

// The FROM clause: registers its tables in a scope in the order in which they are written, then writes the
// joins in a form that every native engine takes: no join in parentheses.
class FromWriter {
public:
    FromWriter(const Context &context, Scope &scope)
        : m_context(context)
        , m_scope(scope)
    {
    }

    void addTables(const std::vector<FromPtr> &list);
    QString write(const std::vector<FromPtr> &list, ExpressionWriter &expressions);

private:
    void addTables(const From &from);
    QString write(const From &from, ExpressionWriter &expressions);
    QString tableText(const From &from) const;
    void flattenInner(const From &from, QString &sql, QString &conditions, ExpressionWriter &expressions,
                      bool &open);

    struct Entry {
        size_t position; // in the scope
        QString derivedSql;
    };

    const Context &m_context;
    Scope &m_scope;
    std::unordered_map<const From *, Entry> m_entries;
    bool m_rightJoin = false; // one was written
};

} // namespace dao::sql
