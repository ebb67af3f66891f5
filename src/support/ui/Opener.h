// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

namespace clivara {

// Enables a control that opens something, or disables it and says why: under the pointer and to a screen
// reader.
inline void enableOpener(QWidget &control, bool opens, const QString &whyNot)
{
    control.setEnabled(opens);
    control.setToolTip(opens ? QString() : whyNot);
    control.setAccessibleDescription(opens ? QString() : whyNot);
}

} // namespace clivara
