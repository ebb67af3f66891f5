// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

namespace orvale {

// A pseudo-random source with the same results on every platform: splitmix64 (Steele, Lea, Flood 2014).
class DemoRandom {
public:
    explicit DemoRandom(quint64 seed)
        : m_state(seed)
    {
    }

    quint64 next();
    int below(int bound) { return int(next() % quint64(bound)); } // 0 to bound-1; bound at least 1
    int between(int least, int most) { return least + below(most - least + 1); }
    double fraction() { return double(next() >> 11) * 0x1.0p-53; } // [0, 1)
    bool chance(double probability) { return fraction() < probability; }
    // Roughly normal, never beyond 6 deviations: the sum of twelve uniform draws.
    double normal(double mean, double deviation);
    QDate day(QDate first, QDate last) { return first.addDays(below(int(first.daysTo(last)) + 1)); }
    template <typename List>
    const auto &pick(const List &list)
    {
        return list.at(below(int(list.size())));
    }
    // A version 4 GUID in lower case without braces.
    QString uid();

private:
    quint64 m_state;
};

} // namespace orvale
