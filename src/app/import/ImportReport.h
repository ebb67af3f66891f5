// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/import/Import.h"

#include <QByteArray>

namespace orvale {

// The whole report as tab-separated text with a header line, for a table program: every figure of both sides,
// and everything that deserves attention. It holds counts and sums, no value of a single row.
QByteArray reportText(const ImportReport &report);

} // namespace orvale
