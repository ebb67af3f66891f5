// SPDX-License-Identifier: Apache-2.0
#include "support/PatientHeader.h"

namespace clivara {

QString PatientHeader::fixed(const QString &text, int width)
{
    return text.leftJustified(width, QLatin1Char(' '), true);
}

int exactAge(QDate birth, QDate today)
{
    if (!birth.isValid() || !today.isValid() || birth > today)
        return -1;
    // Month and day as they are written: whoever is born on 29 February has the birthday on 1 March in common
    // years.
    const bool birthdayToCome =
        today.month() < birth.month() || (today.month() == birth.month() && today.day() < birth.day());
    return today.year() - birth.year() - (birthdayToCome ? 1 : 0);
}

} // namespace clivara
