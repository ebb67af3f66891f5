// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace clivara {

// Opens another form of the chart over the one that is open.
class FormOpener {
public:
    virtual ~FormOpener() = default;
    // Shows the form of that name ("Probl1") until the doctor closes it. False, after a line in the log, when
    // this build does not have it or when it failed; no error passes on, since forms call this out of the
    // event loop.
    virtual bool showForm(const QString &name) = 0;
};

} // namespace clivara
