// SPDX-License-Identifier: Apache-2.0
#include "support/ui/ChartForm.h"

#include "support/Clock.h"
#include "support/ui/PatientStrip.h"

#include <QApplication>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

namespace clivara {

ChartForm::ChartForm(const QString &name, const PatientHeader &header, const Clock &clock, QWidget *parent)
    : QDialog(parent)
    , m_header(header)
    , m_clock(clock)
    , m_strip(new PatientStrip(this))
    , m_contents(new QWidget(this))
{
    setObjectName(name);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_strip);
    layout->addWidget(m_contents, 1);
}

ChartForm::~ChartForm() = default;

void ChartForm::showModal()
{
    if (m_loaded) {
        activateWindow();
        return;
    }
    showPatient();
    load();
    m_loaded = true;
    emit loaded();

    const QWidget *host = QApplication::activeWindow();
    if (host && (host == this || !host->isVisible()))
        host = nullptr; // a form that has just been closed
    fitOnScreen(host);
    // Without a transient parent the form could open behind the host's window. It is set only while open:
    // mutual transient parents make Qt loop.
    winId();
    if (host)
        windowHandle()->setTransientParent(host->windowHandle());
    exec();
    windowHandle()->setTransientParent(nullptr);
    m_loaded = false;
    if (m_failure)
        std::rethrow_exception(std::exchange(m_failure, nullptr));
}

void ChartForm::showPatient()
{
    m_strip->showPatient(m_header, m_clock.today());
    setAccessibleDescription(m_strip->accessibleName()); // read out when the form opens
}

QSize ChartForm::sizeHint() const
{
    return m_usualSize.expandedTo(QDialog::sizeHint());
}

void ChartForm::setUsualSize(QSize size)
{
    m_usualSize = size;
    resize(size);
}

void ChartForm::fitOnScreen(const QWidget *host)
{
    // The frame is known when the window is there, and the host's is the same.
    const QSize frame = host ? host->frameGeometry().size() - host->size()
                             : QSize(0, style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this));
    const QScreen *const place = host ? host->screen() : screen();
    const QSize wanted = testAttribute(Qt::WA_Resized) ? size() : sizeHint();
    resize(wanted.boundedTo(place->availableSize() - frame));
}

void ChartForm::unload()
{
    if (m_loaded)
        finish();
}

void ChartForm::abandon()
{
    m_loaded = false;
    done(Rejected);
}

void ChartForm::reject()
{
    if (!m_loaded) {
        QDialog::reject();
        return;
    }
    // Called by the event loop; exceptions must not propagate through it.
    try {
        if (!queryUnload())
            return;
    } catch (...) {
        m_failure = std::current_exception();
        abandon();
        return;
    }
    finish();
}

void ChartForm::finish()
{
    m_loaded = false;
    try {
        unloading();
    } catch (...) {
        m_failure = std::current_exception();
    }
    done(Rejected);
}

} // namespace clivara
