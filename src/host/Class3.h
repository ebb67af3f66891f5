// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QVariant>
#include <memory>

namespace clivara {

struct HostEnvironment;
struct Services;

// The component's one public class. A host creates one instance, hands it its environment once and calls
// Action for each section of the current patient's chart. The public members never raise an error to the
// host.
class Class3 {
public:
    // With the real services of the workstation: user settings, system clock, message boxes.
    Class3();
    // With the host's own services; they must outlive the component.
    explicit Class3(const Services &services);
    ~Class3();
    Class3(const Class3 &) = delete;
    Class3 &operator=(const Class3 &) = delete;

    // Keeps the environment (it must outlive the component) and prepares the database engine. Always true.
    bool InitDbConn(const HostEnvironment &environment);
    // Opens the form of the action code and returns when the doctor has closed it. Always 0. `param` is the
    // action's optional parameter; after an action whose form hands a result back it holds that result, for
    // the calculators the list {"valutazione", value}.
    qint16 Action(qint16 code);
    qint16 Action(qint16 code, QVariant &param);
    // Why the last Action ended with an error that nobody was told of; empty when it did not. After one the mouse
    // pointer may still be the waiting one.
    QString failure() const;

    // True when the action code opens a form in this build.
    static bool isBuilt(qint16 code);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace clivara
