// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/ui/ChartForm.h"

#include <QTimer>
#include <functional>

namespace clivara {

// Acts in the form that showModal() is about to open. The form is closed afterwards, without saving, when it
// is still open: a failing test never hangs.
inline void inside(ChartForm &form, const std::function<void()> &act)
{
    QTimer::singleShot(0, &form, [&form, act] {
        act();
        form.abandon();
    });
}

} // namespace clivara
