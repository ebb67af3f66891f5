// SPDX-License-Identifier: Apache-2.0
#include "app/FirstStart.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QThread>
#include <QVBoxLayout>

namespace orvale {

FirstStart::FirstStart(Writer writer, QWidget *parent)
    : QDialog(parent)
    , m_writer(std::move(writer))
    , m_stage(new QLabel(
          QStringLiteral("Al primo avvio Orvale prepara un archivio di prova con pazienti inventati."), this))
    , m_bar(new QProgressBar(this))
{
    setWindowTitle(QStringLiteral("Orvale – primo avvio"));
    m_stage->setWordWrap(true);
    m_bar->setRange(0, 0);
    m_bar->setAccessibleName(QStringLiteral("Avanzamento"));
    const auto buttons = new QDialogButtonBox(this);
    QPushButton *cancel = buttons->addButton(QStringLiteral("&Annulla"), QDialogButtonBox::RejectRole);
    cancel->setAutoDefault(false);
    const auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->setSpacing(16);
    layout->addWidget(m_stage);
    layout->addWidget(m_bar);
    layout->addWidget(buttons);
    setMinimumWidth(456);

    connect(buttons, &QDialogButtonBox::rejected, this, &FirstStart::reject);
    connect(this, &FirstStart::progressed, this, [this](int done, int total) {
        m_bar->setRange(0, total);
        m_bar->setValue(done);
    });
}

FirstStart::~FirstStart() = default;

bool FirstStart::run()
{
    // Thrown through the writer, whose practice then goes away.
    struct GivenUp { };

    const std::unique_ptr<QThread> thread(QThread::create([this] {
        try {
            m_writer([this](int done, int total) {
                if (m_givenUp)
                    throw GivenUp();
                emit progressed(done, total);
            });
        } catch (const GivenUp &) {
        } catch (...) {
            m_error = std::current_exception();
        }
    }));
    connect(thread.get(), &QThread::finished, this, [this] { done(Accepted); });
    thread->start();
    exec();
    thread->wait();
    if (m_error)
        std::rethrow_exception(m_error);
    return !m_givenUp;
}

void FirstStart::reject()
{
    m_givenUp = true;
    m_stage->setText(QStringLiteral("Annullamento in corso…"));
    m_bar->setRange(0, 0);
}

void FirstStart::closeEvent(QCloseEvent *event)
{
    reject();
    event->ignore();
}

} // namespace orvale
