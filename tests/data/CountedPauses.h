// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Seams.h"

#include <QList>
#include <functional>

// Counts the pauses instead of sleeping; something may happen during one of them.
class CountedPauses : public clivara::Pauses {
public:
    void pause(int milliseconds) override
    {
        taken.append(milliseconds);
        if (taken.size() == actAt)
            during();
    }
    double draw() override { return draws[taken.size() % draws.size()]; }

    QList<int> taken;
    QList<double> draws{0.5};
    qsizetype actAt = 0;
    std::function<void()> during;
};
