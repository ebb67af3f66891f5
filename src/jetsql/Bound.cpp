// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Bound.h"

namespace dao::sql {

bool same(const Bound &a, const Bound &b)
{
    if (&a == &b)
        return true;
    return a.kind == b.kind && a.type == b.type && a.value == b.value && a.nullOf == b.nullOf
           && a.table == b.table && a.column == b.column && a.parameter == b.parameter
           && a.function == b.function && a.aggregate == b.aggregate && a.op == b.op && a.negated == b.negated
           && a.select == b.select
           && std::equal(a.arguments.begin(), a.arguments.end(), b.arguments.begin(), b.arguments.end(),
                         [](const BoundPtr &x, const BoundPtr &y) { return same(*x, *y); });
}

} // namespace dao::sql
