// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Bound.h"

#include <QDateTime>
#include <functional>

namespace dao::sql {

// Gives the names and expressions of a statement their meaning. Needs no database: the catalog tells of the tables,
// `now` the local time for date() and now(). Throws Error: ObjectNotFound for an unknown table, TooFewParameters for
// a name that is neither a field nor a parameter, AmbiguousField for one that may be several, ItemNotFound for a
// parameter that does not stand in the statement, SyntaxError for what this engine does not translate, and the errors
// of what cannot be computed.
BoundStatement bind(const Statement &statement, const Catalog &catalog, const ParameterTypes &parameters,
                    const std::function<QDateTime()> &now);

} // namespace dao::sql
