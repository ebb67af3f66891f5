// SPDX-License-Identifier: Apache-2.0
#include "app/demo/DemoRandom.h"

#include <QUuid>

namespace orvale {

quint64 DemoRandom::next()
{
    quint64 z = (m_state += 0x9e3779b97f4a7c15ULL);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
    return z ^ (z >> 31);
}

double DemoRandom::normal(double mean, double deviation)
{
    double sum = 0;
    for (int i = 0; i < 12; ++i)
        sum += fraction();
    return mean + (sum - 6) * deviation;
}

QString DemoRandom::uid()
{
    const quint64 high = next();
    const quint64 low = next();
    const QUuid uuid(uint(high >> 32), ushort(high >> 16), ushort((high & 0x0fff) | 0x4000),
                     uchar(((low >> 56) & 0x3f) | 0x80), uchar(low >> 48), uchar(low >> 40), uchar(low >> 32),
                     uchar(low >> 24), uchar(low >> 16), uchar(low >> 8), uchar(low));
    return uuid.toString(QUuid::WithoutBraces);
}

} // namespace orvale
