// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/SettingsStore.h"

#include <QHash>

namespace orvale {

// The user's settings as one window of the host and its chart see them. All windows of a user share one
// store, and each has its own patient, doctor and practice: what says who is current, and the mailbox of the
// chart, is kept for the window and read from there alone. It is written into the user's store as well, where
// other programs look for it.
class WindowSettings final : public clivara::SettingsStore {
public:
    // `user` must outlive the object.
    explicit WindowSettings(clivara::SettingsStore &user);

    QVariant read(const QString &key, const QVariant &fallback = {}) const override;
    void write(const QString &key, const QVariant &value) override;

    // Writes who is current into the user's store again, where another window has written something else.
    void announce();
    // Reads a mailbox and empties it, in the user's store only when that still holds what this window left
    // there.
    QString take(const QString &mailbox);

private:
    clivara::SettingsStore &m_user;
    QHash<QString, QString> m_own; // by folded key
};

} // namespace orvale
