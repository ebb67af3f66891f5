// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>
#include <functional>

namespace orvale {

struct DemoOptions {
    int patients = 1500; // 1 to 100000
    int years = 12; // of history before today, 1 to 40
    quint64 seed = 1;
    QDate today; // the last day of the history
};

// Called now and then while the practice is written, with 0 to `total`.
using DemoProgress = std::function<void(int done, int total)>;

// Writes an invented practice of realistic content into a folder that does not exist or is empty. Equal
// options give equal rows. Throws UserError and leaves nothing behind when it cannot be done.
void createDemo(const QString &path, const DemoOptions &options, const DemoProgress &progress = {});

} // namespace orvale
