// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetCriteria.h"

#include "regional/SheetData.h"

#include <gtest/gtest.h>

namespace clivara {
namespace {

using Values = QList<std::pair<const char *, const char *>>;

SheetData sheetWith(int type, const Values &values)
{
    const SheetLayout &layout = *sheetLayout(type);
    SheetData sheet(layout);
    for (const auto &[name, value] : values) {
        EXPECT_GE(layout.indexOf(name), 0) << name;
        sheet.setValue(layout.indexOf(name), value);
    }
    return sheet;
}

TEST(SheetCriteriaTest, DiabetesGoalsFollowAgeAndDisease)
{
    const struct {
        Values values;
        int age, entry;
        const char *reasons;
    } cases[] = {
        {{}, 60, 0, "Manca l'emoglobina glicata."},
        {{{"Glicata", "7"}}, 60, 1, "Emoglobina glicata 7.0 %, obiettivo 7.0 %."},
        {{{"Glicata", "7.1"}}, 74, 2, "Emoglobina glicata 7.1 %, obiettivo 7.0 %."},
        {{{"Glicata", "7.1"}}, -1, 2, "Emoglobina glicata 7.1 %, obiettivo 7.0 %."},
        {{{"Glicata", "8"}}, 75, 1, "Emoglobina glicata 8.0 %, obiettivo 8.0 %."},
        {{{"Glicata", "8.1"}, {"Scompenso", "2"}}, 50, 2, "Emoglobina glicata 8.1 %, obiettivo 8.0 %."},
        {{{"Glicata", "6"}, {"Ischemia", "2"}, {"Statine", "1"}, {"Antiaggreganti", "2"}},
         50,
         1,
         "Emoglobina glicata 6.0 %, obiettivo 8.0 %. Malattia vascolare senza statina."},
        {{{"Nefropatia", "2"}, {"AceSartani", "1"}},
         50,
         0,
         "Manca l'emoglobina glicata. Nefropatia senza ACE-inibitore o sartano."},
    };
    for (const auto &[values, age, entry, reasons] : cases) {
        const TherapyCriteria criteria = therapyCriteria(sheetWith(1, values), age);
        EXPECT_EQ(criteria.entry, entry) << reasons;
        EXPECT_EQ(criteria.reasons.join(' ').toStdString(), reasons);
    }
}

TEST(SheetCriteriaTest, RespiratorySheets)
{
    const Values noSymptoms{{"Diurni", "1"}, {"Notturni", "1"}, {"AlBisogno", "1"}, {"Limitazioni", "1"}};
    const struct {
        int type;
        Values values;
        int entry;
        const char *firstReason;
    } cases[] = {
        {6, {}, 0, "Controllo: non valutabile."},
        {6, noSymptoms, 1, "Controllo: asma controllata."},
        {6, noSymptoms + Values{{"Notturni", "2"}}, 2, "Controllo: asma parzialmente controllata."},
        {6, {{"Diurni", "2"}, {"Notturni", "2"}, {"AlBisogno", "2"}}, 2, "Controllo: asma non controllata."},
        {6, {{"Act", "20"}}, 1, "Controllo: asma controllata."},
        {6, {{"Act", "19"}}, 2, "Controllo: asma parzialmente controllata."},
        {6, {{"Act", "15"}}, 2, "Controllo: asma non controllata."},
        {6, noSymptoms + Values{{"Ics", "1"}, {"Laba", "2"}}, 2, "Controllo: asma controllata."},
        {7, {}, 0, "Gruppo: mancano la dispnea e il CAT."},
        {7, {{"Dispnea", "1"}, {"Lama", "2"}}, 1, "Gruppo A."},
        {7, {{"Dispnea", "1"}}, 2, "Gruppo A."},
        {7, {{"Dispnea", "2"}, {"Lama", "2"}}, 2, "Gruppo B."},
        {7, {{"Dispnea", "2"}, {"Gruppo", "2"}, {"Lama", "2"}}, 2, "Gruppo B."},
        {7,
         {{"Dispnea", "2"}, {"Gruppo", "1"}, {"Lama", "2"}},
         2,
         "Gruppo B secondo i dati, ma è indicato il gruppo A."},
        {7, {{"Cat", "10"}, {"Lama", "2"}, {"Laba", "2"}}, 1, "Gruppo B."},
        {7, {{"Cat", "9"}, {"Brevi", "2"}}, 1, "Gruppo A."},
        {7, {{"Riacutizzazioni", "1"}, {"Dispnea", "0"}, {"Brevi", "2"}}, 1, "Gruppo A."},
        {7, {{"Riacutizzazioni", "2"}, {"Lama", "2"}, {"Laba", "2"}}, 1, "Gruppo E."},
        {7,
         {{"Ricoveri", "1"}, {"Lama", "2"}, {"Laba", "2"}, {"Ics", "2"}, {"Eosinofili", "99"}},
         2,
         "Gruppo E."},
        {7,
         {{"Ricoveri", "1"}, {"Lama", "2"}, {"Laba", "2"}, {"Ics", "2"}, {"Eosinofili", "100"}},
         1,
         "Gruppo E."},
        {7, {{"Tiffeneau", "70"}}, 0, "FEV1/FVC 70 %: l'ostruzione non è confermata."},
        {3, {}, 0, ""},
        {3, {{"Diagnosi", "1"}, {"Ics", "1"}}, 2, "Asma senza cortisonico inalatorio."},
        {3, {{"Diagnosi", "1"}, {"Ics", "2"}}, 1, ""},
        {5, {{"Diagnosi", "2"}, {"Cat", "12"}}, 2, "Gruppo B."},
    };
    for (const auto &[type, values, entry, reason] : cases) {
        const TherapyCriteria criteria = CriteriTerapiaMalattieRespiratorie(sheetWith(type, values));
        EXPECT_EQ(criteria.entry, entry) << type << reason;
        EXPECT_EQ(criteria.reasons.value(0).toStdString(), reason) << type;
    }
    EXPECT_EQ(therapyCriteria(sheetWith(2, {}), 60).entry, 0);
    EXPECT_TRUE(therapyCriteria(sheetWith(4, {}), 60).reasons.isEmpty());
}

} // namespace
} // namespace clivara
