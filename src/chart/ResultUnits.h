// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <optional>

namespace clivara {

// Laboratory results in the unit that a field is kept in. Only what a rule of the table in ResultUnits.cpp
// says is converted: the same word is another quantity in another exam.

struct ResultInUnit {
    double value = 0;
    QString rule; // how it was converted ("mg/l × 0.1000"); empty when it was in that unit
};

// `exam` is the exam's code, or a list of codes of one exam with ';' between them; `unit` as the laboratory
// wrote it (riepil2.unita_Mis), `wanted` as the table spells it ("mg/dl"). Empty when no rule knows the unit,
// also when it is missing, and for a value that cannot be one in that unit.
std::optional<ResultInUnit> resultInUnit(const QString &exam, double value, const QString &unit,
                                         const QString &wanted);

// A unit without case, blanks, points and other ways to write the same sign: "mg / dL", "MG/DL" and "mg/100 ml" are
// "mg/dl", "μmol/l" and "mcmol/l" are "umol/l".
QString plainUnit(const QString &unit);

} // namespace clivara
