// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Error.h"

#include <QStringView>

// The errors of the translation, one function for each. `place` is the offending part of the SQL; the texts
// quote it, shortened.
namespace dao::sql {

[[noreturn]] void throwSyntaxError(QStringView place);
// SQL that is right but that this engine does not translate; better no result than a wrong one.
[[noreturn]] void throwUnsupported(QStringView place);
[[noreturn]] void throwUnknownTable(QStringView name);
[[noreturn]] void throwUnknownField(QStringView name);
[[noreturn]] void throwUnknownFunction(QStringView name);
[[noreturn]] void throwAmbiguousField(QStringView name);
// A name that is both a field's and a parameter's.
[[noreturn]] void throwFieldAndParameter(QStringView name);
[[noreturn]] void throwTypeMismatch(QStringView place);
[[noreturn]] void throwNotGrouped(QStringView place);
[[noreturn]] void throwAggregateHere(QStringView place);
[[noreturn]] void throwWrongArguments(QStringView place);
[[noreturn]] void throwOrderConflict(QStringView place);
[[noreturn]] void throwFieldCount(QStringView place);
[[noreturn]] void throwError(int number, const QString &text, QStringView place);

} // namespace dao::sql
