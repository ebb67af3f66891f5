// SPDX-License-Identifier: Apache-2.0
#include "support/Clock.h"
#include "support/PatientHeader.h"
#include "support/Prompts.h"
#include "support/Seams.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <set>

namespace {

using namespace clivara;

TEST(ExactAge, CountsCompletedYears)
{
    struct Case {
        QDate birth, today;
        int age;
    };
    const Case cases[]{
        {{1960, 6, 15}, {2026, 6, 14}, 65}, {{1960, 6, 15}, {2026, 6, 15}, 66},
        {{1960, 6, 15}, {2026, 5, 30}, 65}, {{1960, 6, 15}, {2026, 7, 1}, 66},
        {{2025, 12, 31}, {2026, 1, 1}, 0},  {{2026, 1, 1}, {2026, 1, 1}, 0},
        {{2004, 2, 29}, {2025, 2, 28}, 20}, {{2004, 2, 29}, {2025, 3, 1}, 21},
        {{2004, 2, 29}, {2024, 2, 28}, 19}, {{2004, 2, 29}, {2024, 2, 29}, 20},
        {{2026, 1, 2}, {2026, 1, 1}, -1},   {{}, {2026, 1, 1}, -1},
    };
    for (const Case &c : cases)
        EXPECT_EQ(exactAge(c.birth, c.today), c.age)
            << qPrintable(c.birth.toString(Qt::ISODate)) << " " << qPrintable(c.today.toString(Qt::ISODate));
}

TEST(PatientHeader, FillsAndCutsToTheWidth)
{
    EXPECT_EQ(PatientHeader::fixed("Forlì", 8), "Forlì   ");
    EXPECT_EQ(PatientHeader::fixed(QString(40, 'x'), 30), QString(30, 'x'));
    EXPECT_EQ(PatientHeader::fixed({}, 2), "  ");
}

TEST(SystemClock, IsTheLocalWallClockWithoutAZone)
{
    const QDateTime before = QDateTime::currentDateTime();
    const QDateTime now = SystemClock().local();
    const QDateTime after = QDateTime::currentDateTime();
    EXPECT_EQ(now.timeSpec(), Qt::UTC);
    EXPECT_GE(now, QDateTime(before.date(), before.time(), Qt::UTC));
    EXPECT_LE(now, QDateTime(after.date(), after.time(), Qt::UTC));
}

TEST(SystemPauses, Waits)
{
    QElapsedTimer timer;
    timer.start();
    SystemPauses().pause(30);
    EXPECT_GE(timer.elapsed(), 30);
}

TEST(SystemPauses, DrawsStayBelowOneAndDiffer)
{
    SystemPauses pauses;
    std::set<double> draws;
    for (int i = 0; i < 200; ++i) {
        const double draw = pauses.draw();
        ASSERT_GE(draw, 0);
        ASSERT_LT(draw, 1);
        draws.insert(draw);
    }
    EXPECT_GT(draws.size(), 100U);
}

TEST(SystemGuids, AreBracedUpperCaseAndNew)
{
    SystemGuids guids;
    const QString guid = guids.newGuid();
    const QRegularExpression form("^\\{[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\}$");
    EXPECT_TRUE(form.match(guid).hasMatch()) << qPrintable(guid);
    EXPECT_NE(guid, guids.newGuid());
}

TEST(SystemMiddleware, AsksTheLibraryThenTheEnvironment)
{
    qputenv("CLIVARA_DB_USER", "ambiente");
    SystemMiddleware library(QStringLiteral(ACCOUNT_LIBRARY));
    EXPECT_EQ(library.account("U"), "medico");
    EXPECT_EQ(library.account("P"), "parola-segretaà");
    EXPECT_EQ(library.account("?"), "") << "the library is there and knows nothing";

    SystemMiddleware missing("no-such-library");
    EXPECT_EQ(missing.account("U"), "ambiente");
    EXPECT_EQ(missing.account("P"), "");
    qunsetenv("CLIVARA_DB_USER");
    EXPECT_EQ(missing.account("U"), "");
}

TEST(Prompts, WarnsWithTheExclamationBox)
{
    struct Recorder : Prompts {
        PromptButton ask(const Prompt &prompt) override
        {
            last = prompt;
            return PromptButton::Ok;
        }
        Prompt last;
    } recorder;
    recorder.warn("Inserire il peso!");
    EXPECT_EQ(recorder.last.title, "Attenzione!");
    EXPECT_EQ(recorder.last.text, "Inserire il peso!");
    EXPECT_EQ(recorder.last.icon, PromptIcon::Warning);
    EXPECT_EQ(recorder.last.buttons, QList{PromptButton::Ok});
}

} // namespace
