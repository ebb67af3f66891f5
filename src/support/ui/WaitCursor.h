// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QGuiApplication>

namespace clivara {

// Shows the busy pointer as long as the object lives.
class WaitCursor {
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
};

} // namespace clivara
