// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringView>

namespace clivara {

// A measured value as the questionnaires keep it, as a text that is surely a number: "0" and the digits of the text,
// with the first decimal separator as a comma and, when there was one, a "0" at the end: "12.5" is "012,50", "7" is
// "07". A minus is kept only as the first character; everything else is left out.
QString NormalizzaNumero(QStringView text);

// The text of a measured value, normalised and shown with one decimal ("172" is "172.0"), or as the whole number it
// begins with. A text without digits is "0.0", or "0".
QString FormattaValore(QStringView text, bool wholeNumber);

} // namespace clivara
