// SPDX-License-Identifier: Apache-2.0
#pragma once

class QApplication;

namespace orvale {

// One look for the host and the chart: the Fusion style with the program's colours, Italian dates and
// numbers, and Qt's own texts in Italian where the translation is installed.
void applyHostStyle(QApplication &application);

} // namespace orvale
