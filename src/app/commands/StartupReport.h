// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

namespace orvale {

class HostWindow;

// Reports how fast and how large the program started, for benchmarks: one line "visible" on standard output
// when the window has been painted, one line "resident N" (memory in kilobytes, 0 where the system does not
// say) when the patients are loaded too; then the program ends.
class StartupReport final : public QObject {
    Q_OBJECT

public:
    explicit StartupReport(HostWindow &window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void tellWhenReady();

    HostWindow &m_window;
    bool m_visible = false;
};

} // namespace orvale
