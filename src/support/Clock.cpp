// SPDX-License-Identifier: Apache-2.0
#include "support/Clock.h"

namespace clivara {

namespace {

QDateTime withoutZone(const QDateTime &moment)
{
    return QDateTime(moment.date(), moment.time(), Qt::UTC);
}

} // namespace

QDateTime SystemClock::local() const
{
    return withoutZone(QDateTime::currentDateTime());
}

QDateTime SystemClock::utc() const
{
    return QDateTime::currentDateTimeUtc();
}

FixedClock::FixedClock(QDate date)
    : m_now(date, QTime(10, 0, 0), Qt::UTC)
{
}

FixedClock::FixedClock(const QDateTime &now)
    : m_now(withoutZone(now))
{
}

void FixedClock::set(const QDateTime &now)
{
    m_now = withoutZone(now);
}

QDateTime FixedClock::local() const
{
    return m_now;
}

QDateTime FixedClock::utc() const
{
    return m_now;
}

} // namespace clivara
