// SPDX-License-Identifier: Apache-2.0
#include "dao/native/FunctionErrors.h"

namespace dao {

std::optional<std::pair<int, QString>> functionError(QStringView nativeMessage)
{
    // Qt and SQLite may put words of their own before the message.
    const qsizetype at = nativeMessage.indexOf(u"JET:");
    if (at < 0)
        return std::nullopt;
    const QStringView rest = nativeMessage.mid(at + 4);
    const qsizetype colon = rest.indexOf(u':');
    bool isNumber = false;
    const int number = colon > 0 ? rest.first(colon).toInt(&isNumber) : 0;
    if (!isNumber)
        return std::nullopt;
    return std::pair(number, rest.mid(colon + 1).trimmed().toString());
}

} // namespace dao
