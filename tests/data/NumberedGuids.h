// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Seams.h"

// New identities that a test can foresee.
class NumberedGuids : public clivara::GuidSource {
public:
    QString newGuid() override
    {
        return QStringLiteral("{00000000-0000-4000-8000-%1}").arg(++m_last, 12, 10, QLatin1Char('0'));
    }

private:
    int m_last = 0;
};

inline QString guid(int number)
{
    return QStringLiteral("00000000-0000-4000-8000-%1").arg(number, 12, 10, QLatin1Char('0'));
}
