// SPDX-License-Identifier: Apache-2.0
#include "host/WaitPointer.h"

#include <QCursor>
#include <QGuiApplication>

namespace clivara {

void WaitPointer::show()
{
    if (!m_shown)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    m_shown = true;
}

void WaitPointer::restore()
{
    if (m_shown)
        QGuiApplication::restoreOverrideCursor();
    m_shown = false;
}

} // namespace clivara
