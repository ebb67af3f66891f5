// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace clivara {

// A text between quotes, those inside it doubled.
QString sqlText(const QString &text);

} // namespace clivara
