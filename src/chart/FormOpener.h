// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace clivara {

// Opens another form of the chart over the one that is open.
class FormOpener {
public:
    virtual ~FormOpener() = default;
    // Shows the form of that name ("Probl1") until the doctor closes it. False when this build does not have
    // it or when it failed: the doctor has been told, and the log names the form. No error passes on, since
    // forms call this out of the event loop.
    virtual bool showForm(const QString &name) = 0;
    // Whether this build has the form: what would open one that it has not is disabled and says so.
    virtual bool isBuilt(const QString &) const { return true; }
};

} // namespace clivara
