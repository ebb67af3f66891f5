// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Parameters.h"

#include "jetsql/Error.h"

#include <QUuid>

namespace dao::sql {

int GivenParameters::find(QStringView name) const
{
    for (qsizetype i = 0; i < m_parameters.size(); ++i) {
        if (name.compare(m_parameters[i].name, Qt::CaseInsensitive) == 0)
            return int(i);
    }
    return -1;
}

FieldType GivenParameters::use(int parameter)
{
    m_used[parameter] = true;
    return m_parameters[parameter].type;
}

void GivenParameters::requireUse() const
{
    const qsizetype unused = m_used.indexOf(false);
    if (unused >= 0)
        throw Error(
            ItemNotFound,
            QStringLiteral("Il parametro non fa parte della query: '%1'").arg(m_parameters[unused].name));
}

QString guidText(const QString &text)
{
    const QUuid uid = QUuid::fromString(text);
    return uid.isNull() ? text : uid.toString().toUpper();
}

} // namespace dao::sql
