// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/Demo.h"

#include <QDialog>
#include <atomic>
#include <exception>
#include <functional>

class QLabel;
class QProgressBar;

namespace orvale {

// The first start of the program: writes the demo practice in a thread of its own, so that the window
// answers, and shows how far it is. Closing the dialog gives up and leaves nothing behind.
class FirstStart final : public QDialog {
    Q_OBJECT

public:
    // Writes a practice and tells its progress; createDemo, unless a test puts another in its place. Runs in
    // another thread.
    using Writer = std::function<void(const DemoProgress &)>;
    explicit FirstStart(Writer writer, QWidget *parent = nullptr);
    ~FirstStart() override;

    // True when the practice was written, false when the doctor gave up. What the writer throws passes on.
    bool run();

signals:
    void progressed(int done, int total);

protected:
    void reject() override;
    void closeEvent(QCloseEvent *event) override;

private:
    Writer m_writer;
    QLabel *m_stage;
    QProgressBar *m_bar;
    std::atomic_bool m_givenUp = false;
    std::exception_ptr m_error;
};

} // namespace orvale
