// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace orvale {

// A text that is built into the program, by its resource path (":/demo/words.txt"). Throws std::logic_error when the
// program was built without it.
QString resourceText(const QString &path);

} // namespace orvale
