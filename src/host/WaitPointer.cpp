// SPDX-License-Identifier: Apache-2.0
#include "host/WaitPointer.h"

#include <QCursor>
#include <QGuiApplication>

namespace clivara {

void WaitPointer::show()
{
    // A host may have taken back the one that an action left behind.
    if (!m_shown || !QGuiApplication::overrideCursor())
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    m_shown = true;
}

void WaitPointer::restore()
{
    if (m_shown && QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
    m_shown = false;
}

} // namespace clivara
