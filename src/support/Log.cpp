// SPDX-License-Identifier: Apache-2.0
#include "support/Log.h"

#include "support/Clock.h"
#include "support/SettingsStore.h"
#include "support/SingleByteText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace clivara {

Log::Log(const Clock &clock)
    : m_clock(clock)
{
}

void Log::start(const SettingsStore &settings, const QString &text)
{
    m_folder = settings.text(QStringLiteral("ORVALE_WORK")) + QDir::separator() + QStringLiteral("logOrvale");
    m_enabled = folderExists(m_folder);
    write(text);
}

void Log::write(const QString &text)
{
    if (!m_enabled)
        return;
    const QString name = m_clock.local().toString(u"'log_'yy_MM_dd'.log'");
    const QByteArray line = singleByteText(timestamp() + QLatin1Char(' ') + text) + "\r\n";
    // Appended in a single write, so that the lines of several processes stay whole.
    QFile file(m_folder + QDir::separator() + name);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        file.write(line);
}

QString Log::timestamp() const
{
    return m_clock.local().toString(u"dd/MM/yyyy HH:mm:ss:") + m_clock.utc().toString(u"zzz");
}

bool folderExists(const QString &path)
{
    return QFileInfo(path).isDir();
}

} // namespace clivara
