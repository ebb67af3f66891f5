// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Parameters.h"

namespace dao::sql {

// The parts of a statement are not printed in their order, and some are printed twice: where a parameter stands they
// hold a mark, which becomes a "?" when all is in its place.
QString parameterMark(const ParameterUse &use);
// Puts "?" in the place of the marks and tells what each stands for.
QList<ParameterUse> resolveParameterMarks(QString &sql);

} // namespace dao::sql
