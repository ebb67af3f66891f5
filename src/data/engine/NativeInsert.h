// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QVariantList>

namespace dao {

// Adds rows to a table through a native statement that is prepared once.
class NativeInsert {
public:
    virtual ~NativeInsert() = default;
    // One value per column, of the column's kind as fieldValue() makes it. Throws Error; the row is not there
    // then, and the next one can be added.
    virtual void add(const QVariantList &values) = 0;
};

} // namespace dao
