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

// What the chart has to know of a practice before a patient is selected: the working doctor and the region.
// Throws dao::Error.
void prepareSettings(clivara::SettingsStore &settings, Practice &practice);

// The region of the practice, whatever the settings said before; none when the practice has none. Throws
// dao::Error.
void prepareRegion(clivara::SettingsStore &settings, const Practice &practice);

// A work folder with a log folder inside the practice's folder, named in the settings: the chart traces
// there. A folder that cannot be made leaves the trace off.
void prepareWorkFolder(clivara::SettingsStore &settings, const Practice &practice);

} // namespace orvale
