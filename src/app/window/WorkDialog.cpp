// SPDX-License-Identifier: Apache-2.0
#include "app/window/WorkDialog.h"

#include "ui_WorkDialog.h"

#include <QCloseEvent>
#include <QPushButton>
#include <QThread>

namespace orvale {

namespace {

// Thrown through the work to cancel it.
struct GivenUp { };

// Rows can be more than a bar counts.
constexpr int barSteps = 1000;

} // namespace

WorkDialog::WorkDialog(const QString &title, const QString &text, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::WorkDialog>())
{
    m_ui->setupUi(this);
    setWindowTitle(title);
    m_ui->stage->setText(text);
    connect(m_ui->cancel, &QPushButton::clicked, this, &WorkDialog::reject);
}

WorkDialog::~WorkDialog() = default;

bool WorkDialog::run(const std::function<void(const Report &)> &work)
{
    bool isDone = false;
    std::exception_ptr error;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        try {
            work([this](const WorkStep &step) { note(step); });
            isDone = true;
        } catch (const GivenUp &) {
        } catch (...) {
            error = std::current_exception();
        }
    }));
    connect(thread.get(), &QThread::finished, this, [this] { done(Accepted); });
    thread->start();
    exec();
    {
        // The program may have been told to end while the work was under way.
        const QMutexLocker lock(&m_mutex);
        m_isGivenUp = true;
    }
    thread->wait();
    if (error)
        std::rethrow_exception(error);
    return isDone;
}

// In the thread of the work. At most one call is on its way to the window, which then shows the newest step:
// a work that reports every row does not bury the window in events.
void WorkDialog::note(const WorkStep &step)
{
    const QMutexLocker lock(&m_mutex);
    if (m_isGivenUp)
        throw GivenUp();
    const QString text = step.text.isEmpty() ? m_step.text : step.text;
    m_step = step;
    m_step.text = text;
    if (!std::exchange(m_isShowing, true))
        QMetaObject::invokeMethod(this, &WorkDialog::showNoted, Qt::QueuedConnection);
}

void WorkDialog::showNoted()
{
    QMutexLocker lock(&m_mutex);
    m_isShowing = false;
    if (m_isGivenUp)
        return;
    const WorkStep step = m_step;
    lock.unlock();
    if (!step.text.isEmpty())
        m_ui->stage->setText(step.text);
    m_ui->detail->setText(step.detail);
    m_ui->bar->setRange(0, step.total > 0 ? barSteps : 0);
    m_ui->bar->setValue(step.total > 0 ? static_cast<int>(step.done * barSteps / step.total) : 0);
}

void WorkDialog::reject()
{
    {
        const QMutexLocker lock(&m_mutex);
        m_isGivenUp = true;
    }
    m_ui->stage->setText(QStringLiteral("Annullamento in corso…"));
    m_ui->detail->clear();
    m_ui->bar->setRange(0, 0);
    m_ui->cancel->setEnabled(false);
}

void WorkDialog::closeEvent(QCloseEvent *event)
{
    reject();
    event->ignore();
}

} // namespace orvale
