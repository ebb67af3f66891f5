// SPDX-License-Identifier: Apache-2.0
#include "support/Seams.h"

#include <QLibrary>
#include <QRandomGenerator>
#include <QThread>
#include <QUuid>
#include <chrono>

namespace clivara {

void SystemPauses::pause(int milliseconds)
{
    if (milliseconds > 0)
        QThread::msleep(static_cast<unsigned long>(milliseconds));
}

double SystemPauses::draw()
{
    const auto ticks = std::chrono::system_clock::now().time_since_epoch().count();
    const quint32 seed[]{static_cast<quint32>(ticks), static_cast<quint32>(ticks >> 32)};
    return QRandomGenerator(seed).generateDouble();
}

QString SystemGuids::newGuid()
{
    return QUuid::createUuid().toString(QUuid::WithBraces).toUpper();
}

SystemMiddleware::SystemMiddleware(const QString &library)
    : m_library(library)
{
}

QString SystemMiddleware::account(const QString &selector)
{
    const bool password = selector == QLatin1String("P");
    using GetUsefullTimer = void (*)(const char *selector, char *buffer);
    QLibrary library(m_library);
    if (const auto function = reinterpret_cast<GetUsefullTimer>(library.resolve("GetUsefullTimer"))) {
        QByteArray buffer(password ? 15 : 10, ' ');
        function(selector.toLatin1().constData(), buffer.data());
        const auto length = qstrnlen(buffer.constData(), static_cast<size_t>(buffer.size()));
        return QString::fromLatin1(buffer.constData(), static_cast<qsizetype>(length)).trimmed();
    }
    const char *variable = password ? "CLIVARA_DB_PASSWORD" : "CLIVARA_DB_USER";
    return qEnvironmentVariable(variable).trimmed();
}

QString AbsentConnector::send(qint32, qint32, const QString &)
{
    return QStringLiteral("Connettore regionale non installato: i dati sono salvati ma non inviati.");
}

} // namespace clivara
