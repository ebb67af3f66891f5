// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QString>

namespace orvale {

// A region of Italy and its two-digit code, as the practice keeps it.
struct Region {
    QString code; // "01" to "20"
    QString name;
};

// All twenty, by code.
const QList<Region> &regions();

} // namespace orvale
