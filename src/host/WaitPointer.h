// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace clivara {

// The hourglass over the whole application, taken back as often as asked without touching what others have
// set. It may also be taken back by others.
class WaitPointer {
public:
    WaitPointer() = default;
    ~WaitPointer() { restore(); }
    WaitPointer(const WaitPointer &) = delete;
    WaitPointer &operator=(const WaitPointer &) = delete;

    void show();
    void restore();

private:
    bool m_shown = false;
};

} // namespace clivara
