// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace dao {
class Database;
}

namespace clivara {

class Clock;
class SettingsStore;
struct PatientHeader;

// Reloads the header for the patient of the host setting "CODICE PAZIENTE", from the clinical database's
// tables inf_gen and archivio. With the code -1, which also stands for a setting that is missing, no whole
// number or out of range, the previous values stay. A null field leaves its value; an error ends the reload,
// what was read before it stays and nothing is reported. `identified` and `birthDay` never speak of another
// patient.
void loadPatientHeader(PatientHeader &header, const SettingsStore &settings, dao::Database &clinical,
                       const Clock &clock);

} // namespace clivara
