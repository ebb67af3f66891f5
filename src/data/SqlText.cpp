// SPDX-License-Identifier: Apache-2.0
#include "data/SqlText.h"

#include "dao/Dao.h"
#include "values/JetValues.h"

namespace clivara {

QString sqlText(const QString &text)
{
    return u'\'' + QString(text).replace(u'\'', QStringLiteral("''")) + u'\'';
}

QVariant dateValue(QDate date)
{
    return date.isValid() ? QVariant(jet::dateTime(date)) : QVariant();
}

void writeDay(dao::Field field, QDate day)
{
    if (field.date().date() != day)
        field.setValue(dateValue(day));
}

QString storedText(const QString &text)
{
    return text.trimmed().isEmpty() ? QStringLiteral("") : text;
}

} // namespace clivara
