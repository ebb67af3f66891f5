// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Parameters.h"

#include <QUuid>

namespace dao::sql {

QString guidText(const QString &text)
{
    const QUuid uid = QUuid::fromString(text);
    return uid.isNull() ? text : uid.toString().toUpper();
}

} // namespace dao::sql
