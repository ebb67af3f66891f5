// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/scenario/JsonLine.h"

namespace clivara {
class ModEstrazDati;
}

namespace orvale {

// Calls the extraction routine of that name (without regard to case) with arguments as a scenario writes
// them: separated by blanks, in double quotes what holds blanks or is empty (a quote inside them is doubled);
// patients as whole numbers, dates as YYYY-MM-DD, 0 for none; a list or condition at the end may be left out
// and is empty then. The line has the routine, its result and its outputs. Throws UserError for an unknown
// routine and for arguments that do not fit it.
JsonLine extractionReport(const clivara::ModEstrazDati &data, const QString &routine,
                          const QString &arguments);

} // namespace orvale
