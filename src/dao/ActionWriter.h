// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/ExpressionWriter.h"

namespace dao::sql {

// Translates INSERT, UPDATE and DELETE; a value written to a field is converted to the field's type.
class ActionWriter {
public:
    explicit ActionWriter(const Context &context)
        : m_context(context)
    {
    }

    Translation insert(const Statement &statement);
    Translation update(const Statement &statement);
    Translation remove(const Statement &statement);

private:
    QString insertedValues(const Statement &statement, const QList<int> &columns, const TableInfo &table);
    QString insertedSelect(const Statement &statement, QList<int> &columns, const TableInfo &table);

    const Context &m_context;
};

} // namespace dao::sql
