// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QString>
#include <memory>

class QThread;

namespace orvale {

// Reads a practice's files through in the background, so that the window is there at once and damage is still
// found before long.
class DamageWatch final : public QObject {
    Q_OBJECT

public:
    explicit DamageWatch(const QString &practice, QObject *parent = nullptr);
    ~DamageWatch() override; // waits until all files are read

signals:
    // When all is read: the damaged file, empty when there is none.
    void finished(const QString &damagedFile);

private:
    std::unique_ptr<QThread> m_thread;
};

} // namespace orvale
