// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QVariant>

namespace dao {

// The rows of a native statement, read forward once.
class NativeCursor {
public:
    virtual ~NativeCursor() = default;
    // Steps to the next row, the first time to the first; false after the last. Throws Error.
    virtual bool next() = 0;
    // A column of the row as it is stored; Null is a null variant.
    virtual QVariant value(int column) const = 0;
};

} // namespace dao
