// SPDX-License-Identifier: Apache-2.0
#include "chart/ResultUnits.h"

#include "values/JetValues.h"

#include <array>

namespace clivara {

namespace {

// value in the field's unit = factor * value + offset.
struct UnitRule {
    const char *exam; // its code in the national list of outpatient services
    const char *wanted;
    const char *unit; // as plainUnit() writes it; empty for a result without unit
    double factor;
    double offset = 0;
    double lowest = 0, highest = 0; // of the value in the unit it is in; both 0: any
};

// Creatinine 113.12 g/mol, cholesterol 386.65 g/mol: 1 mg/dl is 88.4 µmol/l of the one and 1/38.67 mmol/l of
// the other. Potassium has one charge: 1 mEq is 1 mmol. Glycated haemoglobin: % = 0.0915 * mmol/mol + 2.15
// (NGSP master equation); nobody has less than 3 or more than 20 per cent, so a value without unit is one or
// the other. Albumin of a day's urine (mg/24h) or beside creatinine (mg/g) is another quantity and has no
// rule.
constexpr std::array rules{
    UnitRule{"90.16.4", "mg/dl", "mg/dl", 1},
    UnitRule{"90.16.4", "mg/dl", "mg/l", 0.1},
    UnitRule{"90.16.4", "mg/dl", "umol/l", 1 / 88.4},
    UnitRule{"90.16.4", "mg/dl", "mmol/l", 1000 / 88.4},
    UnitRule{"90.14.3", "mg/dl", "mg/dl", 1},
    UnitRule{"90.14.3", "mg/dl", "g/l", 100},
    UnitRule{"90.14.3", "mg/dl", "mmol/l", 38.67},
    UnitRule{"90.37.4", "mmol/l", "mmol/l", 1},
    UnitRule{"90.37.4", "mmol/l", "meq/l", 1},
    UnitRule{"90.28.1", "%", "%", 1, 0, 3, 20},
    UnitRule{"90.28.1", "%", "mmol/mol", 0.0915, 2.15, 9, 196},
    UnitRule{"90.28.1", "%", "", 1, 0, 3, 20},
    UnitRule{"90.28.1", "%", "", 0.0915, 2.15, 20, 196},
    UnitRule{"90.33.4", "mg/dl", "mg/dl", 1},
    UnitRule{"90.33.4", "mg/dl", "mg/l", 0.1},
    UnitRule{"90.33.4", "mg/dl", "ug/ml", 0.1},
};

// The codes of one exam stand in a list; the rules name one of them.
bool isOf(const UnitRule &rule, const QString &exam)
{
    return exam.split(u';').contains(QLatin1String(rule.exam));
}

} // namespace

QString plainUnit(const QString &unit)
{
    QString plain;
    for (const QChar sign : unit.toLower()) {
        if (sign == QChar(0x00b5) || sign == QChar(0x03bc)) // micro sign, Greek mu
            plain += u'u';
        else if (!sign.isSpace() && sign != u'.')
            plain += sign;
    }
    const std::pair<const char *, const char *> spellings[] = {
        {"/100ml", "/dl"}, {"mg%", "mg/dl"}, {"micromol", "umol"}, {"mcmol", "umol"}, {"mcg", "ug"},
        {"/litro", "/l"},  {"%(ngsp)", "%"}, {"%ngsp", "%"},       {"%(dcct)", "%"},  {"%hb", "%"}};
    for (const auto &[written, meant] : spellings) {
        if (plain.endsWith(QLatin1String(written)) || plain.startsWith(QLatin1String(written)))
            plain.replace(QLatin1String(written), QLatin1String(meant));
    }
    return plain;
}

std::optional<ResultInUnit> resultInUnit(const QString &exam, double value, const QString &unit,
                                         const QString &wanted)
{
    const QString plain = plainUnit(unit);
    for (const UnitRule &rule : rules) {
        if (!isOf(rule, exam) || wanted != QLatin1String(rule.wanted) || plain != QLatin1String(rule.unit))
            continue;
        const bool hasBounds = rule.lowest < rule.highest;
        if (hasBounds && (value < rule.lowest || value > rule.highest))
            continue;
        if (rule.factor == 1 && rule.offset == 0)
            return ResultInUnit{value, {}};
        const QString written =
            unit.trimmed().isEmpty() ? QStringLiteral("senza unità, mmol/mol") : unit.trimmed();
        QString how = written + QStringLiteral(" × ") + jet::formatNumber(rule.factor, u"0.0000");
        if (rule.offset != 0)
            how += QStringLiteral(" + ") + jet::numberText(rule.offset);
        return ResultInUnit{rule.factor * value + rule.offset, how};
    }
    return std::nullopt;
}

} // namespace clivara
