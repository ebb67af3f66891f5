// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QString>
#include <QVariant>
#include <memory>

namespace clivara {

// The host's per-user settings: application "Orvale", section "Ambiente". Both configuration and mailbox
// between host and chart. Keys are compared without regard to case; every value is text.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    // The stored text, or `fallback` when the key is missing. An unreadable store gives an empty variant.
    virtual QVariant read(const QString &key, const QVariant &fallback = {}) const = 0;
    // Stores the value as text. A null variant is not written; a refused write is ignored.
    virtual void write(const QString &key, const QVariant &value) = 0;

    QString text(const QString &key, const QString &fallback = {}) const
    {
        return read(key, fallback).toString();
    }
    // A switch: on is any number but 0 ("1", "-1") and the words true, vero, sì, yes and on, in any case.
    bool isOn(const QString &key) const;
};

// The real store, shared with the host: the platform's per-user application settings.
std::unique_ptr<SettingsStore> openUserSettings();

// Settings that live for one run, for tests and scenarios.
class MemorySettings final : public SettingsStore {
public:
    QVariant read(const QString &key, const QVariant &fallback = {}) const override;
    void write(const QString &key, const QVariant &value) override;

private:
    QHash<QString, QString> m_values; // by folded key
};

} // namespace clivara
