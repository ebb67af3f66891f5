// SPDX-License-Identifier: Apache-2.0
#include "app/session/WindowSettings.h"

#include <QStringList>

namespace orvale {

namespace {

// The patient, the doctors, and what belongs to the practice that is open.
const QStringList &current()
{
    static const QStringList keys{
        QStringLiteral("CODICE PAZIENTE"), QStringLiteral("ESENZ_PAT"),   QStringLiteral("ESENZ_INV"),
        QStringLiteral("medicoP"),         QStringLiteral("medicoT"),     QStringLiteral("medico_corrente"),
        QStringLiteral("MEDICO"),          QStringLiteral("uidMedicoP"),  QStringLiteral("CODICE REGIONE"),
        QStringLiteral("REGIONE"),         QStringLiteral("ORVALE_WORK"), QStringLiteral("STUDIO CORRENTE"),
    };
    return keys;
}

// What the chart leaves for the host.
const QStringList &mailboxes()
{
    static const QStringList keys{
        QStringLiteral("AGGIORNA_DIARIO"), QStringLiteral("CARICA PAZIENTE"),     QStringLiteral("DIAGNOSI"),
        QStringLiteral("CODICE DIAGNOSI"), QStringLiteral("PRESCRI_ESAMI_ESENZ"),
    };
    return keys;
}

bool isOwn(const QString &key)
{
    return current().contains(key, Qt::CaseInsensitive) || mailboxes().contains(key, Qt::CaseInsensitive);
}

} // namespace

WindowSettings::WindowSettings(clivara::SettingsStore &user)
    : m_user(user)
{
}

QVariant WindowSettings::read(const QString &key, const QVariant &fallback) const
{
    if (!isOwn(key))
        return m_user.read(key, fallback);
    const auto own = m_own.constFind(key.toCaseFolded());
    return own == m_own.constEnd() ? fallback : QVariant(*own);
}

void WindowSettings::write(const QString &key, const QVariant &value)
{
    if (isOwn(key) && !value.isNull())
        m_own.insert(key.toCaseFolded(), value.toString());
    m_user.write(key, value);
}

void WindowSettings::announce()
{
    for (const QString &key : current()) {
        const auto own = m_own.constFind(key.toCaseFolded());
        if (own != m_own.constEnd() && m_user.text(key) != *own)
            m_user.write(key, *own);
    }
}

QString WindowSettings::take(const QString &mailbox)
{
    const QString left = m_own.take(mailbox.toCaseFolded());
    if (!left.isEmpty() && m_user.text(mailbox) == left)
        m_user.write(mailbox, QString());
    return left;
}

} // namespace orvale
