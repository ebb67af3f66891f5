// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace clivara {

class FormRegistry;
struct FormCall;

// Opens another form of the chart over the one that is open.
class FormOpener {
public:
    virtual ~FormOpener() = default;
    // Shows the form of that name ("Probl1") until the doctor closes it; one that takes a call gets it, and leaves its
    // answer there. False when this build does not have the form or when it failed: the doctor has been told, and the
    // log names the form. No error passes on, since forms call this out of the event loop.
    virtual bool showForm(const QString &name, FormCall *call = nullptr) = 0;
    // The forms that there are: what would open one that is not built is disabled and says so.
    virtual const FormRegistry &registry() const = 0;
};

} // namespace clivara
