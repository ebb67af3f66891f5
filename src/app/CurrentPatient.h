// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

namespace dao {
class Database;
}
namespace clivara {
class SettingsStore;
}

namespace orvale {

class Practice;

// Makes a patient the current one for the chart: code and exemptions go into the host's settings. False, and
// nothing is written, when the practice has no such patient. Throws dao::Error.
bool selectPatient(clivara::SettingsStore &settings, dao::Database &clinical, qint32 code);
// No patient is current.
void deselectPatient(clivara::SettingsStore &settings);

// The doctor who works at the host and the region, as the chart reads them. The practice's first doctor is
// taken when the settings name none or one whom the practice does not know. Throws dao::Error.
void prepareDoctor(clivara::SettingsStore &settings, Practice &practice);

// A work folder with a log folder inside the practice's folder, named in the settings: the chart traces
// there. A folder that cannot be made leaves the trace off.
void prepareWorkFolder(clivara::SettingsStore &settings, const Practice &practice);

} // namespace orvale
