// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

namespace clivara {
class Clock;
}

namespace orvale {

class Practice;

// Opens the host window and every built section on an instructive patient of the practice and saves a picture
// of each into the folder, as NN_name.png. The result is the paths written. Settings are kept in memory; the
// practice gets no more than the chart's trace in its work folder. Throws UserError when the folder cannot be
// written or a section does not open.
QStringList takeTour(Practice &practice, clivara::Clock &clock, const QString &folder);

} // namespace orvale
