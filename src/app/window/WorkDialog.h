// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDialog>
#include <QMutex>
#include <functional>
#include <memory>

class QThread;

namespace Ui {
class WorkDialog;
}

namespace orvale {

// How far a long work is.
struct WorkStep {
    QString text; // what is being done; empty leaves the text that stands there
    QString detail; // a quieter line below the bar
    qint64 done = 0;
    qint64 total = 0; // 0: unknown
};

// Long work in a thread of its own, so that the window answers, with a bar and "Annulla". Closing the dialog
// in any way gives the work up.
class WorkDialog final : public QDialog {
    Q_OBJECT

public:
    // Tells how far the work is; may be called as often as the work likes. Throws to give up: the work lets
    // it pass and undoes what it has done.
    using Report = std::function<void(const WorkStep &)>;

    // `text` stands above the bar until the work reports another.
    WorkDialog(const QString &title, const QString &text, QWidget *parent = nullptr);
    ~WorkDialog() override;

    // True when the work came to its end, even if it was asked to give up after its last report; false when
    // it gave up. What the work throws passes on.
    bool run(const std::function<void(const Report &)> &work);

protected:
    void reject() override;
    void closeEvent(QCloseEvent *event) override;

private:
    void note(const WorkStep &step);
    void showNoted();

    std::unique_ptr<Ui::WorkDialog> m_ui;
    QMutex m_mutex; // for the members below, which both threads use
    WorkStep m_step;
    bool m_isShowing = false; // showNoted() is on its way
    bool m_isGivenUp = false;
};

} // namespace orvale
