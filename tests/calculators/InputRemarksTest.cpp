// SPDX-License-Identifier: Apache-2.0
#include "inputs/InputRemarks.h"
#include "inputs/CalculatorRules.h"

#include <gtest/gtest.h>

namespace clivara {
namespace {

const QDate today(2026, 11, 21);

TEST(InputRemarks, RangesIncludeTheirEnds)
{
    struct Case {
        PlausibleRange range;
        double least, below, most, above;
    };
    for (const Case &c :
         {Case{plausibleAdultWeightKg, 30, 29.9, 300, 300.1}, Case{plausibleWeightKg, 2, 1.9, 300, 301},
          Case{plausibleWaistCm, 40, 39, 200, 9999}, Case{plausibleSystolicMmHg, 60, 59, 260, 261},
          Case{plausibleDiastolicMmHg, 30, 29, 150, 151}, Case{plausibleCreatinineMgDl, 0.2, 0.001, 20, 88.4},
          Case{plausibleTotalCholesterolMgDl, 60, 5.2, 600, 601}, Case{plausibleHdlMgDl, 10, 1.3, 150, 151},
          Case{plausibleTriglyceridesMgDl, 20, 1.7, 2000, 2001},
          Case{plausibleGlucoseMgDl, 30, 5.5, 600, 601}}) {
        EXPECT_EQ(rangeRemark(c.least, c.range, "u").toStdString(), "") << c.least;
        EXPECT_EQ(rangeRemark(c.most, c.range, "u").toStdString(), "") << c.most;
        EXPECT_NE(rangeRemark(c.below, c.range, "u").toStdString(), "") << c.below;
        EXPECT_NE(rangeRemark(c.above, c.range, "u").toStdString(), "") << c.above;
    }
    EXPECT_EQ(rangeRemark(-1, plausibleCreatinineMgDl, "mg/dl").toStdString(),
              "Improbabile: di solito tra 0.2 e 20 mg/dl.");
}

TEST(InputRemarks, ValuesThatCannotGoTogether)
{
    EXPECT_EQ(hdlRemark(200, 200).toStdString(), "");
    EXPECT_EQ(hdlRemark(201, 200).toStdString(), "L'HDL supera il colesterolo totale (200).");
    EXPECT_EQ(hdlRemark(201, 0).toStdString(), "") << "there is no total";
    EXPECT_EQ(friedewaldRemark(250, 50, 400).toStdString(), "");
    EXPECT_EQ(friedewaldRemark(0, 0, 400.5).toStdString(),
              "Oltre 400 mg/dl la formula di Friedewald non è valida.");
    EXPECT_EQ(friedewaldRemark(100, 50, 300).toStdString(), "Con questi valori l'LDL è negativo.");
    EXPECT_EQ(friedewaldRemark(0, 50, 300).toStdString(), "");
    EXPECT_EQ(pressureRemark(120, 119).toStdString(), "");
    EXPECT_EQ(pressureRemark(120, 120).toStdString(), "La diastolica non è minore della sistolica (120).");
    EXPECT_EQ(pressureRemark(0, 120).toStdString(), "");
}

TEST(InputRemarks, SpellingsOfAUnit)
{
    for (const char *same : {"mg/dl", "mg/dL", "MG/DL", " mg / dl ", "mg/100 ml", "mg%", "mg/dl."})
        EXPECT_TRUE(isSameUnit(same, "mg/dl")) << same;
    for (const char *other : {"µmol/l", "mmol/l", "mg/l", "g/dl", "%", "mg/dl/h"})
        EXPECT_FALSE(isSameUnit(other, "mg/dl")) << other;
}

TEST(InputRemarks, OnWhatTheRecordsHold)
{
    struct Case {
        Finding finding;
        const char *lines;
        bool mustBeSeen;
    };
    const QDate recent(2026, 11, 1);
    const auto result = [&](const char *text, const char *stored, const char *unit = "") {
        return Proposal{text, recent, stored, unit, {}};
    };
    const auto of = [](QDate date, QDate performed = {}) {
        return Proposal{"1.4", date, "1.4", "mg/dl", performed};
    };
    const Sighting high{"340", "mg/dl", QDate(2026, 11, 10), "90.14.3"};
    const Sighting none{"non eseguito", "mg/dl", QDate(2026, 11, 10), "90.14.3"};
    const Sighting other{"1.35", "mg/dl", QDate(2026, 11, 10), "90.16.4"};
    const Case cases[] = {
        {{}, "", false},
        {{result("1.4", "1.4", "mg/dL"), {}, {}, {}}, "", false},
        {{result("1.1", "1.10"), {}, {}, {}}, "", false},
        {{result("221", "220.6", "mg/dl"), {}, {}, {}}, "", false}, // rounded
        {{result("1", "1,4"), {}, {}, {}}, "«1,4» letto come 1.", true},
        {{result("0", "<0.5"), {}, {}, {}}, "«<0.5» letto come 0.", true},
        {{result("0", "emolizzato"), {}, {}, {}}, "«emolizzato» letto come 0.", true},
        {{result("97", "97", "µmol/l"), {}, {}, {}}, "È in µmol/l, non in mg/dl.", true},
        {{result("1", "1,4", "mmol/l"), {}, {}, {}}, "«1,4» letto come 1.|È in mmol/l, non in mg/dl.", true},
        {{of(today), {}, {}, {}}, "", false},
        {{of(today.addDays(1)), {}, {}, {}}, "La data è futura: 22/11/2026.", false},
        {{of(QDate(2025, 11, 21)), {}, {}, {}}, "", false}, // 365 days
        {{of(QDate(2025, 11, 20)), {}, {}, {}}, "È di più di un anno fa.", false},
        {{of(QDate(2008, 3, 1)), {}, {}, {}}, "È di 18 anni fa.", false},
        {{of({}), {}, {}, {}}, "Senza data: può essere vecchio.", false},
        {{of(recent, QDate(2026, 10, 1)), {}, {}, {}}, "", false},
        {{of(recent, QDate(2026, 10, 1)), {}, {}, QDate(2026, 10, 15)},
         "Risulta eseguito il 01/10/2026.",
         false},
        {{of(recent, QDate(2019, 2, 3)), {}, {}, {}}, "Risulta eseguito il 03/02/2019.", false},
        {{of(recent, QDate(2029, 2, 3)), {}, {}, {}}, "Risulta eseguito in data futura: 03/02/2029.", false},
        {{of(recent), high, {}, {}}, "Il più recente è fuori dai limiti: 340 mg/dl del 10/11/2026.", false},
        {{of(recent), none, {}, {}}, "Il più recente è senza valore: «non eseguito» del 10/11/2026.", false},
        {{{}, high, {}, {}}, "Non proposto perché fuori dai limiti: 340 mg/dl del 10/11/2026.", false},
        {{of(recent), {}, other, {}},
         "Con il codice 90.16.4 ce n'è uno più recente: 1.35 mg/dl del 10/11/2026.",
         false},
        {{{}, {}, other, {}}, "Con il codice 90.16.4 c'è: 1.35 mg/dl del 10/11/2026.", false},
    };
    for (const Case &c : cases) {
        const FindingRemarks remarks = findingRemarks(c.finding, "mg/dl", today);
        EXPECT_EQ(remarks.lines.join(u'|').toStdString(), c.lines);
        EXPECT_EQ(remarks.mustBeSeen, c.mustBeSeen) << c.lines;
    }
}

TEST(InputRemarks, OnDatesAndAges)
{
    const QDate birth(1966, 3, 12);
    struct Case {
        QDate day;
        QDate birth;
        const char *date;
        const char *age;
    };
    for (const Case &c :
         {Case{today, birth, "", ""}, Case{{}, birth, "", ""}, Case{QDate(2026, 3, 12), birth, "", ""},
          Case{QDate(2026, 3, 11), birth, "", "Il 11/03/2026 aveva 59 anni: Calcola usa l'età di oggi, 60."},
          Case{QDate(2026, 3, 11), {}, "", ""}, Case{QDate(2026, 11, 22), birth, "La data è futura.", ""},
          Case{QDate(2090, 1, 1), birth, "La data è futura.",
               "Il 01/01/2090 avrà 123 anni: Calcola usa l'età di oggi, 60."},
          Case{QDate(202, 1, 1), birth, "Anno improbabile: 202.", ""},
          Case{QDate(202, 1, 1), {}, "Anno improbabile: 202.", ""},
          Case{QDate(1966, 3, 11), birth, "La data precede la nascita (12/03/1966).", ""},
          Case{today, QDate(2030, 1, 1), "La data precede la nascita (01/01/2030).", ""}}) {
        EXPECT_EQ(dateRemark(c.day, c.birth, today).toStdString(), c.date) << c.day.toString().toStdString();
        EXPECT_EQ(ageAtDateRemark(c.day, c.birth, today).toStdString(), c.age)
            << c.day.toString().toStdString();
    }
}

TEST(InputRemarks, SpellingsOfAnExamCode)
{
    const std::pair<const char *, const char *> cases[] = {
        {"90.16.04", "90.16.4"}, {"90.16.4", "90.16.04"},
        {"90.14.1", "90.14.01"}, {"90.16.004", "90.16.4 90.16.04"},
        {"90.16.40", ""},        {"89", ""},
        {"90.16.x", ""},         {"", ""}};
    for (const auto &[code, others] : cases)
        EXPECT_EQ(otherSpellings(code).join(u' ').toStdString(), others) << code;
}

} // namespace
} // namespace clivara
