// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QStringView>

namespace clivara {

// The text in code page 1252, the single-byte code page of the host's workstations; a character that it does
// not have becomes '?'. Line breaks stay as they are.
QByteArray singleByteText(QStringView text);

} // namespace clivara
