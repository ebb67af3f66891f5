// SPDX-License-Identifier: Apache-2.0
#include "app/commands/StartupReport.h"

#include "app/commands/CommandLine.h"
#include "app/window/HostWindow.h"

#include <QApplication>
#include <QFile>
#include <QTimer>

namespace orvale {

namespace {

qint64 residentKilobytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong();
    }
    return 0;
}

} // namespace

StartupReport::StartupReport(HostWindow &window)
    : QObject(&window)
    , m_window(window)
{
    window.installEventFilter(this);
    connect(&window, &HostWindow::patientsLoaded, this, &StartupReport::tellWhenReady);
}

bool StartupReport::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        m_window.removeEventFilter(this);
        // Runs when the whole window, its children included, has been painted.
        QTimer::singleShot(0, this, [this] {
            m_visible = true;
            printLine(QStringLiteral("visible"));
            tellWhenReady();
        });
    }
    return QObject::eventFilter(watched, event);
}

void StartupReport::tellWhenReady()
{
    if (!m_visible || m_window.isLoadingPatients())
        return;
    printLine(QStringLiteral("resident %1").arg(residentKilobytes()));
    QApplication::quit();
}

} // namespace orvale
