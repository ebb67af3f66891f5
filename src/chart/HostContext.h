// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace clivara {

struct WorkingState;

// Reads again what the host may have changed since the last action: the codes and UIDs of the doctors, the
// group and print settings, the current doctor's settings and the patient header, in this order. Nothing is
// raised; what cannot be read is empty, the header excepted, which keeps its values (see loadPatientHeader);
// allergies that cannot be read are Unread.
void reloadHostContext(WorkingState &state);

// Reads the allergies of the header's patient again: after they were saved, the strips that are shown next
// have them. Nothing is raised.
void reloadAllergies(WorkingState &state);

} // namespace clivara
