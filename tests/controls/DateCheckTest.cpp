// SPDX-License-Identifier: Apache-2.0
#include "controls/DateCheck.h"
#include "TestPrompts.h"

namespace clivara {
namespace {

struct Case {
    const char *text;
    bool dayFirst;
    const char *answer; // "ok", "month", the last day of the month, or "form"
};

QString answerOf(const DateCheckResult &result)
{
    if (result.valid)
        return QStringLiteral("ok");
    if (result.reason.isEmpty())
        return QStringLiteral("form");
    const QString day = "Il giorno deve essere un numero compreso tra 1 e ";
    if (result.reason.startsWith(day))
        return result.reason.mid(day.size());
    return result.reason == QStringLiteral("Il mese deve essere un numero compreso tra 1 e 12")
               ? QStringLiteral("month")
               : result.reason;
}

TEST(DateCheck, JudgesFieldByField)
{
    const Case cases[] = {
        {"12/03/2026", true, "ok"},
        {"  12/03/2026 ", true, "ok"},
        {"31/01/2024", true, "ok"},
        {"31/04/2024", true, "30"},
        {"30/11/2024", true, "ok"},
        {"32/12/2024", true, "31"},
        {"00/12/2024", true, "31"},
        // February is the reverse of the calendar, without an exception for centuries.
        {"29/02/2024", true, "28"},
        {"29/02/2023", true, "ok"},
        {"30/02/2023", true, "29"},
        {"29/02/1900", true, "28"},
        {"29/02/24", true, "28"},
        {"29/02/30", true, "ok"}, // 1930
        {"29/02/28", true, "28"}, // 2028
        {"01/13/24", true, "month"},
        {"01/13/24", false, "ok"},
        {"13/01/24", false, "month"},
        {"04/31/2024", false, "30"},
        {"01/00/2024", true, "month"},
        {"xx/03/2024", true, "31"},
        {"12/03/202", true, "form"},
        {"1/2/2024", true, "month"}, // eight characters, but not in their places
        {"", true, "form"},
        {"__/__/____", true, "month"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(answerOf(checkDateText(c.text, c.dayFirst)).toStdString(), c.answer) << c.text;
}

TEST(DateCheck, CompletesShortYears)
{
    EXPECT_EQ(withFullYear("05/06/29"), "05/06/2029");
    EXPECT_EQ(withFullYear("05/06/30"), "05/06/1930");
    EXPECT_EQ(withFullYear(" 05/06/1830"), "05/06/1830");
}

TEST(DateCheck, TellsWhatIsWrong)
{
    TestPrompts prompts;
    EXPECT_TRUE(checkDate("12/03/2026", true, prompts));

    prompts.queue();
    EXPECT_FALSE(checkDate("29/02/2024", true, prompts));
    EXPECT_EQ(prompts.last(), "Attenzione!|Il giorno deve essere un numero compreso tra 1 e 28\n\n"
                              "Inserire la data nel formato GG/MM/AAAA|warning");
    prompts.queue();
    EXPECT_FALSE(checkDate("123", false, prompts));
    EXPECT_EQ(prompts.last(), "Attenzione!|Inserire la data nel formato MM/GG/AAAA|warning");
}

TEST(DateCheck, CalendarDayKnowsTheCalendar)
{
    const struct {
        const char *text;
        QDate day; // invalid: no day
    } cases[] = {
        {"29-02-2024", {2024, 2, 29}},
        {"29-02-2023", {}},
        {"29/02/24", {2024, 2, 29}},
        {"31-12-29", {2029, 12, 31}},
        {"01-01-30", {1930, 1, 1}},
        {"31-04-2026", {}},
        {"12-31-2026", {}},
        {"00-01-2026", {}},
        {"01-01-202", {}},
        {"1-1-26", {}},
        {"01-01-", {}},
        {"", {}},
        {"--", {}},
        {"10.30.00", {}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(calendarDay(c.text).value_or(QDate()), c.day) << c.text;
}

} // namespace
} // namespace clivara
