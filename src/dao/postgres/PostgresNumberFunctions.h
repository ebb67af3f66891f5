// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace dao {

// The parts of postgresDefinitions() that define the language's functions on numbers, and on dates. They stand on the
// helpers there.
extern const char *const postgresNumberFunctions;
extern const char *const postgresDateFunctions;

} // namespace dao
