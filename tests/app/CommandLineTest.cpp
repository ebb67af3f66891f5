// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"

#include <gtest/gtest.h>

namespace {

using orvale::CommandLine;

CommandLine sample()
{
    CommandLine line("prova A B [--num N]", "Prova.");
    line.addArgument("A", "primo");
    line.addArgument("B", "secondo");
    line.addOption("num", "N", "numero");
    line.addOption("day", "D", "giorno");
    line.addOption("quick", {}, "presto");
    return line;
}

std::string usageError(const QString &words)
{
    try {
        CommandLine line = sample();
        line.parse(words.split(u' ', Qt::SkipEmptyParts));
        line.number("num", 5, 1, 9);
        line.date("day", {});
    } catch (const orvale::UsageError &error) {
        return error.text().toStdString();
    }
    return {};
}

TEST(CommandLineTest, ReadsOptionsAndArgumentsInAnyOrder)
{
    for (const char *words : {"a --num 3 b --quick --day 2024-02-29", "--num=3 --day=2024-02-29 --quick a b",
                              "--quick --num 3 --day 2024-02-29 -- a b"}) {
        CommandLine line = sample();
        EXPECT_TRUE(line.parse(QString::fromLatin1(words).split(u' '))) << words;
        EXPECT_EQ(line.argument(0), "a");
        EXPECT_EQ(line.argument(1), "b");
        EXPECT_EQ(line.number("num", 5, 1, 9), 3);
        EXPECT_EQ(line.date("day", {}), QDate(2024, 2, 29));
        EXPECT_TRUE(line.isSet("quick"));
    }
    CommandLine line = sample();
    EXPECT_TRUE(line.parse({"-", "--", "--num"}));
    EXPECT_EQ(line.argument(0), "-");
    EXPECT_EQ(line.argument(1), "--num");
    EXPECT_EQ(line.number("num", 5, 1, 9), 5);
    EXPECT_FALSE(line.isSet("quick"));
}

TEST(CommandLineTest, TellsWhatIsWrong)
{
    const struct {
        const char *words;
        const char *text;
    } cases[] = {
        {"a", "Manca l'argomento B"},
        {"", "Manca l'argomento A"},
        {"a b c", "Argomento di troppo: c"},
        {"a b --nn 3", "Opzione sconosciuta: --nn"},
        {"a b -n 3", "Opzione sconosciuta: -n"},
        {"a b --num", "manca il valore (N)"},
        {"a b --quick=1", "non vuole un valore"},
        {"a b --num x", "da 1 a 9, non \"x\""},
        {"a b --num 0", "da 1 a 9"},
        {"a b --num 10", "da 1 a 9"},
        {"a b --num 3.5", "da 1 a 9"},
        {"a b --num 99999999999", "da 1 a 9"},
        {"a b --num=", "da 1 a 9"},
        {"a b --day 29/02/2024", "AAAA-MM-GG"},
        {"a b --day 2023-02-29", "AAAA-MM-GG"},
        {"a b --num 9", ""},
    };
    for (const auto &c : cases) {
        const std::string text = usageError(c.words);
        EXPECT_NE(text.find(c.text), std::string::npos) << c.words << ": " << text;
        EXPECT_EQ(text.empty(), *c.text == '\0') << c.words << ": " << text;
    }
}

} // namespace
