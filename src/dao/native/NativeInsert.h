// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Error.h"

#include <QVariantList>
#include <functional>

namespace dao {

// Adds rows to a table in the way that is fastest for the native engine.
class NativeInsert {
public:
    virtual ~NativeInsert() = default;
    // One value per column, of the column's kind as fieldValue() makes it. Throws Error; the row is not there
    // then, and the next one can be added.
    virtual void add(const QVariantList &values) = 0;

    // What is told of a row that is not there: its position among those that were given, and why. What it
    // throws passes on.
    using Refused = std::function<void(qsizetype row, const Error &error)>;
    // Many rows, in their order. The default adds one after the other.
    virtual void addRows(const QList<QVariantList> &rows, const Refused &refused)
    {
        for (qsizetype i = 0; i < rows.size(); ++i) {
            try {
                add(rows[i]);
            } catch (const Error &error) {
                refused(i, error);
            }
        }
    }
};

} // namespace dao
