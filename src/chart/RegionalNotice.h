// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

namespace clivara {

struct WorkingState;

// Tells the region's service of a saved row of the current patient by its key, where the practice is joined to it
// (TIPORETE is 1 and MIR_ATTIVO is on; otherwise nothing happens), and shows the doctor what came of it.
void tellRegion(WorkingState &state, qint32 key);

} // namespace clivara
