// SPDX-License-Identifier: Apache-2.0
#include "app/window/PatientPanel.h"
#include "app/practice/FactsTable.h"
#include "app/window/HostStyle.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <gtest/gtest.h>

namespace orvale {
namespace {

struct PatientPanelTest : ::testing::Test {
    static void SetUpTestSuite() { applyHostStyle(*qApp); }

    FactsTable &table(const char *name) const { return *panel.findChild<FactsTable *>(QLatin1String(name)); }
    QString cell(const char *name, int row, int column, int role = Qt::DisplayRole) const
    {
        return table(name).model()->index(row, column).data(role).toString();
    }
    void show(const PatientSummary &summary, QSize size)
    {
        panel.showPatient(summary, QDate(2026, 11, 21));
        panel.resize(size);
        panel.show();
        QApplication::processEvents();
    }

    PatientPanel panel;
};

TEST_F(PatientPanelTest, NamesStayReadableInEveryWidth)
{
    PatientSummary summary;
    summary.laboratory = {
        {"S-Creatinina (enzimatica)", "inferiore al limite di rilevaz", {}, {}, {}, {}, {}, {}},
        {"S-TSH", "1", "µUI/ml", {}, {}, QDate(2026, 11, 1), "12.35", QDate(2025, 1, 1)}};
    summary.problems = {{"Ipertensione arteriosa essenziale", "401.9", QDate(2012, 3, 4), 1}};
    for (const int width : {320, 480, 640, 800, 1200}) {
        show(summary, {width, 700});
        for (const auto &[name, column] : {std::pair("laboratory", 0), std::pair("problems", 1)}) {
            FactsTable &facts = table(name);
            const int readable = 20 * facts.fontMetrics().averageCharWidth();
            EXPECT_GE(facts.columnWidth(column), readable) << name << " at " << width;
        }
        EXPECT_GE(table("laboratory").columnWidth(1),
                  table("laboratory").fontMetrics().horizontalAdvance(cell("laboratory", 0, 1)))
            << "a value is never cut";
    }
}

TEST_F(PatientPanelTest, MarksAreTextsAndWords)
{
    PatientSummary summary;
    summary.laboratory = {
        {"A", "204", "mg/dl", RangeMark::Above, "«superiore alla norma»", QDate(2026, 11, 1), {}, {}},
        {"B", "7", "mg/dl", RangeMark::None, {}, QDate(2026, 11, 1), {}, {}},
        {"C", "presente", {}, RangeMark::Beyond, "«*»", QDate(2026, 11, 1), {}, {}}};
    summary.problems = {{"Diabete", "250.00", QDate(2001, 1, 1), 3}, {"Tosse", {}, {}, 0}};
    show(summary, {900, 700});
    EXPECT_EQ(cell("laboratory", 0, 1), "▲ 204 mg/dl");
    EXPECT_EQ(cell("laboratory", 0, 1, Qt::AccessibleTextRole),
              "▲ 204 mg/dl, Sopra la norma secondo il referto: «superiore alla norma»");
    EXPECT_TRUE(table("laboratory").item(0, 1)->font().bold());
    EXPECT_EQ(cell("laboratory", 1, 1), "7 mg/dl");
    EXPECT_FALSE(table("laboratory").item(1, 1)->font().bold());
    EXPECT_EQ(cell("laboratory", 2, 1), "⚠ presente");
    EXPECT_FALSE(table("problems").item(0, 0)->icon().isNull());
    EXPECT_EQ(cell("problems", 0, 0, Qt::AccessibleTextRole), "01/01/01, Cronico");
    EXPECT_EQ(cell("problems", 1, 0, Qt::AccessibleTextRole), "–, <non specificato>");
}

TEST_F(PatientPanelTest, TheLineOfAllergiesIsAlwaysThere)
{
    const auto *line = panel.findChild<QLabel *>("allergies");
    const clivara::Allergies known = clivara::judgedAllergies({"Latte"}, true, true, {});
    for (const clivara::Allergies &allergies :
         {known, clivara::judgedAllergies({}, false, true, "nega allergie"),
          clivara::judgedAllergies({}, false, true, {}), clivara::Allergies()}) {
        PatientSummary summary;
        summary.registry.allergies = allergies;
        show(summary, {600, 700});
        EXPECT_TRUE(line->isVisible());
        EXPECT_EQ(line->text(), clivara::allergyLine(allergies));
        EXPECT_EQ(line->accessibleName(), clivara::allergyWords(allergies));
        EXPECT_EQ(line->property("alert").toBool(), allergies == known || allergies == clivara::Allergies())
            << "what could not be read warns, too";
    }
}

} // namespace
} // namespace orvale
