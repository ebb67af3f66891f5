// SPDX-License-Identifier: Apache-2.0
#include "support/SettingsStore.h"

#include "values/JetValues.h"

#include <QSettings>
#include <QStandardPaths>

namespace clivara {

namespace {

// A store on the disk. Every access opens it anew: so the host's writes are seen at once and one failed
// access says nothing about the next.
class UserSettings final : public SettingsStore {
public:
    UserSettings(const QString &place, QSettings::Format format, const QString &group)
        : m_place(place)
        , m_format(format)
        , m_group(group)
    {
    }

    QVariant read(const QString &key, const QVariant &fallback) const override
    {
        QSettings settings(m_place, m_format);
        if (settings.status() != QSettings::NoError)
            return {};
        settings.beginGroup(m_group);
        const QString stored = storedKey(settings, key);
        if (stored.isEmpty())
            return fallback;
        const QVariant value = settings.value(stored);
        // A line written by hand with a bare comma is read as a list.
        if (value.typeId() == QMetaType::QStringList)
            return value.toStringList().join(QStringLiteral(", "));
        return value.toString();
    }

    void write(const QString &key, const QVariant &value) override
    {
        if (key.isEmpty() || value.isNull())
            return;
        QSettings settings(m_place, m_format);
        settings.beginGroup(m_group);
        const QString stored = storedKey(settings, key);
        settings.setValue(stored.isEmpty() ? key : stored, value.toString());
        settings.sync();
    }

private:
    // The key in the spelling in which it is stored; empty when it is not.
    static QString storedKey(const QSettings &settings, const QString &key)
    {
        const QStringList keys = settings.childKeys();
        const auto found = std::find_if(keys.begin(), keys.end(), [&](const QString &stored) {
            return stored.compare(key, Qt::CaseInsensitive) == 0;
        });
        return found == keys.end() ? QString() : *found;
    }

    const QString m_place;
    const QSettings::Format m_format;
    const QString m_group;
};

} // namespace

bool SettingsStore::isOn(const QString &key) const
{
    const QString value = text(key).trimmed().toLower();
    if (const auto number = jet::numberFromText(value))
        return *number != 0;
    const QStringList words{QStringLiteral("true"), QStringLiteral("vero"), QStringLiteral("si"),
                            QStringLiteral("sì"),   QStringLiteral("yes"),  QStringLiteral("on")};
    return words.contains(value);
}

std::unique_ptr<SettingsStore> openUserSettings()
{
#ifdef Q_OS_WIN
    // Where the host's language keeps the settings of an application and section.
    return std::make_unique<UserSettings>(
        QStringLiteral("HKEY_CURRENT_USER\\Software\\VB and VBA Program Settings\\Orvale"),
        QSettings::NativeFormat, QStringLiteral("Ambiente"));
#else
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::make_unique<UserSettings>(folder + QStringLiteral("/Orvale.conf"), QSettings::IniFormat,
                                          QStringLiteral("Ambiente"));
#endif
}

QVariant MemorySettings::read(const QString &key, const QVariant &fallback) const
{
    const auto found = m_values.constFind(key.toCaseFolded());
    return found == m_values.constEnd() ? fallback : QVariant(*found);
}

void MemorySettings::write(const QString &key, const QVariant &value)
{
    if (!key.isEmpty() && !value.isNull())
        m_values.insert(key.toCaseFolded(), value.toString());
}

} // namespace clivara
