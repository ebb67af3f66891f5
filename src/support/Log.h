// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace clivara {

class Clock;
class SettingsStore;

// The daily trace of the component: one text file a day in the folder "logOrvale" of the host's work folder,
// in code page 1252 with CR LF line ends. Without that folder nothing is written and nothing is created.
class Log {
public:
    explicit Log(const Clock &clock);

    // Reads the work folder (setting "ORVALE_WORK"), decides whether logging is on, writes the first line.
    void start(const SettingsStore &settings, const QString &text);
    // Appends one line "dd/mm/yyyy hh:mm:ss:mmm text". The file is opened and closed for every line; a line
    // that cannot be written is lost without an error.
    void write(const QString &text);

    bool isEnabled() const { return m_enabled; }
    // Local date and time and the milliseconds of the system's clock.
    QString timestamp() const;

private:
    const Clock &m_clock;
    QString m_folder;
    bool m_enabled = false;
};

// True when the path is an existing folder; any error is false.
bool folderExists(const QString &path);

} // namespace clivara
