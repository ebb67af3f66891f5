// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDateTime>

namespace clivara {

// Where the program takes the time from; tests and scenarios put a fixed one in its place.
class Clock {
public:
    virtual ~Clock() = default;
    // The workstation's local date and time, without a time zone.
    virtual QDateTime local() const = 0;
    // The system's time in UTC; only its milliseconds go into the log.
    virtual QDateTime utc() const = 0;

    QDate today() const { return local().date(); }
};

class SystemClock final : public Clock {
public:
    QDateTime local() const override;
    QDateTime utc() const override;
};

// A clock that stands still at a local date, 10:00:00, until it is set again.
class FixedClock final : public Clock {
public:
    explicit FixedClock(QDate date);
    explicit FixedClock(const QDateTime &now);
    void set(const QDateTime &now);
    QDateTime local() const override;
    QDateTime utc() const override;

private:
    QDateTime m_now;
};

} // namespace clivara
