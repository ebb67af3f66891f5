// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Catalog.h"

#include <QVariant>

namespace dao {

// The value as a field of that kind takes it: int, double, bool, QDateTime, QString or QByteArray; an invalid
// variant for Null. Null becomes No in a Yes/No field, an empty text becomes Null in a number, date or GUID
// field, numbers round half to even. Throws Overflow for a number outside the field's range, ConversionError
// for a value that is none of the field's kind and FieldTooSmall for too long a text (counted in UTF-16
// units).
QVariant fieldValue(const QVariant &value, const ColumnInfo &column);

} // namespace dao
