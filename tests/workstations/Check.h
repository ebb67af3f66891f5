// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Ledger.h"

#include <QString>
#include <QStringList>

namespace orvale {
class Practice;
}

namespace workstations {

// Compares what the workstations believe with what the practice holds: every acknowledged save is there once
// and whole; one that was begun and not acknowledged is there once and whole or not at all; nothing else is
// there. The faults, one line each. Throws dao::Error.
QStringList compare(const QList<Account> &accounts, orvale::Practice &practice);

} // namespace workstations
