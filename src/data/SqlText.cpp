// SPDX-License-Identifier: Apache-2.0
#include "data/SqlText.h"

namespace clivara {

QString sqlText(const QString &text)
{
    return u'\'' + QString(text).replace(u'\'', QStringLiteral("''")) + u'\'';
}

} // namespace clivara
