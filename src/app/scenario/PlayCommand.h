// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

namespace orvale {

// orvale play [--practice P] [--today D] [--shots FOLDER] FILE. The result is the exit status.
int runPlay(const QStringList &arguments);

} // namespace orvale
