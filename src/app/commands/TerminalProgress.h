// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace orvale {

struct ImportProgress;

// A bar on the terminal's last line; nothing where standard error is no terminal.
class TerminalProgress {
public:
    TerminalProgress();
    ~TerminalProgress() { end(); }
    TerminalProgress(const TerminalProgress &) = delete;
    TerminalProgress &operator=(const TerminalProgress &) = delete;
    // A text that is new gets a line of its own; the line of the one before stays as it was last. `total` 0
    // stands for all done.
    void show(const QString &text, qint64 done, qint64 total);
    // The table that is being copied or proved; nothing while the practice is finished.
    void show(const ImportProgress &progress);
    // Leaves the line, so that what follows begins on a new one.
    void end();

private:
    bool m_isTerminal;
    bool m_isOpen = false;
    int m_percent = -1; // shown last
    QString m_text;
};

} // namespace orvale
