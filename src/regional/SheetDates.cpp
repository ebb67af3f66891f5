// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetDates.h"

namespace clivara {

QString StrData2woBars(const QString &text)
{
    return text.mid(0, 2) + text.mid(3, 2) + text.mid(6, 4);
}

QString StrData2wBars(const QString &text)
{
    return text.mid(0, 2) + u'/' + text.mid(2, 2) + u'/' + text.mid(4, 4);
}

QDate StrDatawoBars2Data(const QString &text)
{
    return QDate::fromString(StrData2wBars(text), QStringLiteral("dd/MM/yyyy"));
}

} // namespace clivara
