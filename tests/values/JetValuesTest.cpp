// SPDX-License-Identifier: Apache-2.0
#include "values/JetValues.h"

#include <cmath>
#include <gtest/gtest.h>

namespace jet = clivara::jet;

namespace {

std::string shown(const QString &text)
{
    return text.toStdString();
}

std::string shown(const std::optional<QDateTime> &date)
{
    return date ? jet::storedDate(*date).toStdString() : "none";
}

TEST(JetValues, LeadingNumberStopsAtTheFirstCharacterThatIsNoNumber)
{
    const struct {
        QStringView text;
        double number;
    } cases[] = {
        {u"", 0},        {u"abc", 0},  {u"  12.5 mg", 12.5}, {u"1,2", 1},
        {u"-3.", -3},    {u".5", 0.5}, {u"+7", 7},           {u"1.2.3", 1.2},
        {u"1e3x", 1000}, {u"1e", 1},   {u"2E-1", 0.2},       {u"-", 0},
        {u".", 0},       {u"--5", 0},  {u"1e999", 0},        {u"1e-999", 0},
        {u"inf", 0},     {u"nan", 0},  {u"0x10", 0},         {u"12-5", 12},
        {u"\t8", 8},     {u"1 2", 1},  {u"90.14.3", 90.14},
    };
    for (const auto &c : cases)
        EXPECT_EQ(jet::leadingNumber(c.text), c.number) << c.text.toUtf8().toStdString();
}

TEST(JetValues, NumberFromTextTakesTheWholeTextOrNothing)
{
    EXPECT_EQ(jet::numberFromText(u" 3.50 "), 3.5);
    EXPECT_EQ(jet::numberFromText(u"-1e2"), -100);
    for (const QStringView text : {u"", u" ", u"3,5", u"3 5", u"5x", u"1e999", u"1e", u".", u"+-1", u"inf"})
        EXPECT_FALSE(jet::numberFromText(text)) << text.toUtf8().toStdString();
}

TEST(JetValues, RoundsHalvesToTheEvenNumberAndRefusesWhatDoesNotFit)
{
    EXPECT_EQ(jet::toLong(2.5), 2);
    EXPECT_EQ(jet::toLong(3.5), 4);
    EXPECT_EQ(jet::toLong(-2.5), -2);
    EXPECT_EQ(jet::toLong(2.5000001), 3);
    EXPECT_EQ(jet::toLong(2147483647.4), 2147483647);
    EXPECT_FALSE(jet::toLong(2147483647.5));
    EXPECT_EQ(jet::toLong(-2147483648.5), std::numeric_limits<qint32>::min());
    EXPECT_FALSE(jet::toLong(std::nan("")));
    EXPECT_EQ(jet::toInteger(32767.4), 32767);
    EXPECT_FALSE(jet::toInteger(32767.5));
    EXPECT_FALSE(jet::toInteger(-HUGE_VAL));
}

TEST(JetValues, FormatsNumbersByTheirDecimalValueHalvesAwayFromZero)
{
    const struct {
        double value;
        QStringView pattern;
        const char *text;
    } cases[] = {
        {77.775, u"0.00", "77.78"},
        {2.675, u"0.00", "2.68"},
        {1.005, u"0.00", "1.01"},
        {0.5, u"0", "1"},
        {1.5, u"0", "2"},
        {2.5, u"0", "3"},
        {-2.5, u"0", "-3"},
        {0.049, u"0.0", "0.0"},
        {-0.04, u"0.0", "0.0"},
        {0.05, u"0.0", "0.1"},
        {9.995, u"0.00", "10.00"},
        {99.95, u"0.0", "100.0"},
        {0, u"0.00", "0.00"},
        {0.1234, u"0.0%", "12.3%"},
        {0.0005, u"0.0%", "0.1%"},
        {1, u"0.0%", "100.0%"},
        {12345678, u"0", "12345678"},
        {1e21, u"0", "1000000000000000000000"},
        {5, u"000", "005"},
        {1e-300, u"0.0", "0.0"},
        {3.14159, u"0.0 mg/dl", "3.1 mg/dl"},
        {3, u"= 0", "= 3"},
        {0.1 + 0.2, u"0.00", "0.30"},
        {6, u"abc", "abc"},
        {HUGE_VAL, u"0.0", ""},
        {std::nan(""), u"0", ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(shown(jet::formatNumber(c.value, c.pattern)), c.text)
            << c.value << " by " << c.pattern.toUtf8().toStdString();
}

TEST(JetValues, NumberTextIsTheShortestThatReadsBack)
{
    const struct {
        double value;
        const char *text;
    } cases[] = {{0, "0"},
                 {-0.0, "0"},
                 {3, "3"},
                 {-0.5, "-0.5"},
                 {0.1, "0.1"},
                 {1200, "1200"},
                 {123456.789, "123456.789"},
                 {1e15, "1E+15"},
                 {1e14, "100000000000000"},
                 {1.5e-7, "1.5E-07"}};
    for (const auto &c : cases)
        EXPECT_EQ(shown(jet::numberText(c.value)), c.text);
}

TEST(JetValues, DatesCountFromDayZero)
{
    EXPECT_EQ(jet::serialFromDate(jet::dateTime(1899, 12, 30)), 0);
    EXPECT_EQ(jet::serialFromDate(jet::dateTime(2024, 5, 11)), 45423);
    EXPECT_EQ(jet::serialFromDate(jet::dateTime(1900, 1, 1, 12)), 2.5);
    EXPECT_EQ(jet::serialFromDate(jet::dateTime(1899, 12, 29, 6)), -1.25);
    for (const double serial : {-657434.0, -1.25, 0.0, 0.75, 45423.5, 2958465.0})
        EXPECT_EQ(jet::serialFromDate(jet::dateFromSerial(serial)), serial);
    EXPECT_EQ(shown(jet::storedDate(jet::dateFromSerial(45423.99999999))), "2024-05-12 00:00:00");
    for (const double serial : {-657435.0, 2958466.0, 2958465.9999999, HUGE_VAL, std::nan("")})
        EXPECT_FALSE(jet::dateFromSerial(serial).isValid()) << serial;
}

TEST(JetValues, ReadsDatesAsPeopleWriteThem)
{
    const struct {
        QStringView text;
        const char *stored;
    } cases[] = {
        {u"11/05/2024", "2024-05-11 00:00:00"},
        {u"1/5/2024", "2024-05-01 00:00:00"},
        {u" 11-05-24 ", "2024-05-11 00:00:00"},
        {u"31/12/29", "2029-12-31 00:00:00"},
        {u"1/1/30", "1930-01-01 00:00:00"},
        {u"1/1/1010", "1010-01-01 00:00:00"},
        {u"05/31/2024", "2024-05-31 00:00:00"},
        {u"2024-05-11", "2024-05-11 00:00:00"},
        {u"2024/5/1 8:05", "2024-05-01 08:05:00"},
        {u"11/05/2024 0.0.0", "2024-05-11 00:00:00"},
        {u"11/05/2024 23.59.59", "2024-05-11 23:59:59"},
        {u"11/05/2024  9:7", "2024-05-11 09:07:00"},
        {u"11.05.2024", "2024-05-11 00:00:00"},
        {u"25.12.24", "2024-12-25 00:00:00"},
        {u"0.00.00", "1899-12-30 00:00:00"},
        {u"14.30", "1899-12-30 14:30:00"},
        {u"14:30:15", "1899-12-30 14:30:15"},
        {u"29/02/2024", "2024-02-29 00:00:00"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(shown(jet::dateFromText(c.text)), c.stored) << c.text.toUtf8().toStdString();
    EXPECT_EQ(shown(jet::dateFromText(u"05/11/2024", jet::DateOrder::MonthFirst)), "2024-05-11 00:00:00");
    EXPECT_EQ(shown(jet::dateFromText(u"31/12/2024", jet::DateOrder::MonthFirst)), "2024-12-31 00:00:00");
    for (const QStringView text :
         {u"", u"__-__-____", u"31/02/2024", u"29/02/2023", u"0/1/2024", u"11/05", u"11/05/2024 24:00",
          u"11/05/2024 x", u"11/05/20245", u"11/05/2024/1", u"1/1/099", u"abc", u"12", u"11/05/2024 1 2"})
        EXPECT_EQ(shown(jet::dateFromText(text)), "none") << text.toUtf8().toStdString();
}

TEST(JetValues, FormatsDatesByPattern)
{
    const QDateTime date = jet::dateTime(2004, 3, 7, 8, 5, 9);
    const struct {
        QStringView pattern;
        const char *text;
    } cases[] = {{u"dd/mm/yyyy", "07/03/2004"},
                 {u"d-m-yy", "7-3-04"},
                 {u"dd/mm/yyyy hh:mm:ss", "07/03/2004 08:05:09"},
                 {u"h.n.s", "8.5.9"},
                 {u"hh.nn.ss", "08.05.09"},
                 {u"DD/MM/YYYY", "07/03/2004"},
                 {u"yyyymmdd", "20040307"},
                 {u"yy_mm_dd", "04_03_07"},
                 {u"", ""}};
    for (const auto &c : cases)
        EXPECT_EQ(shown(jet::formatDate(date, c.pattern)), c.text);
    EXPECT_EQ(shown(jet::formatDate(QDateTime(), u"dd/mm/yyyy")), "");
}

TEST(JetValues, StoredDatesReadBackAndNothingElseDoes)
{
    EXPECT_EQ(jet::dateFromStored(u"2024-05-11 23:59:58"), jet::dateTime(2024, 5, 11, 23, 59, 58));
    EXPECT_EQ(jet::dateFromStored(u"0100-01-02"), jet::dateTime(100, 1, 2));
    for (const QStringView text :
         {u"", u"2024-05-1", u"2024-13-01", u"2024-05-11 25:00:00", u"2024-05-11x10:00:00", u"20a4-05-11"})
        EXPECT_FALSE(jet::dateFromStored(text).isValid()) << text.toUtf8().toStdString();
    EXPECT_EQ(shown(jet::storedDate(QDateTime())), "");
}

TEST(JetValues, TextsCompareWithoutCaseAndKeepAccentsApart)
{
    const struct {
        QString a;
        QString b;
        int order;
    } cases[] = {
        {"Nicolò", "NICOLÒ", 0}, {"Nicolò", "Nicolo", 1}, {"rossi", "ROSSI", 0}, {"", "", 0},
        {"", "a", -1},           {"e", "è", -1},          {"è", "ea", -1},       {"è", "z", -1},
        {"È", "F", -1},          {"ab", "abc", -1},       {"_", "A", -1},        {"ñ", "Ñ", 0},
        {"Đ", "đ", 0},           {"😀", "😀", 0},           {"😀a", "😀B", -1},      {"èb", "ea", 1},
        {"aè", "aé", -1},        {"ŽIŽEK", "žižek", 0},   {"a b", "a  b", 1},
    };
    const auto sign = [](int value) { return (value > 0) - (value < 0); };
    for (const auto &c : cases) {
        const QByteArray a = c.a.toUtf8();
        const QByteArray b = c.b.toUtf8();
        EXPECT_EQ(sign(jet::compareText(QStringView(c.a), QStringView(c.b))), c.order)
            << a.toStdString() << " " << b.toStdString();
        EXPECT_EQ(sign(jet::compareText(QStringView(c.b), QStringView(c.a))), -c.order)
            << a.toStdString() << " " << b.toStdString();
        EXPECT_EQ(sign(jet::compareText(QUtf8StringView(a), QUtf8StringView(b))), c.order)
            << a.toStdString() << " " << b.toStdString();
    }
}

TEST(JetValues, BrokenUtf8ComparesWithoutReadingPastTheEnd)
{
    const QByteArray cut = QByteArrayLiteral("a\xE2\x82");
    EXPECT_EQ(jet::compareText(QUtf8StringView(cut), QUtf8StringView(cut)), 0);
    EXPECT_NE(jet::compareText(QUtf8StringView(cut), QUtf8StringView("a")), 0);
}

TEST(JetValues, LikeKnowsItsSigns)
{
    const struct {
        QString pattern;
        QStringList like, unlike;
    } cases[] = {{"C10AA*", {"C10AA05", "c10aa"}, {"C10AB"}},
                 {"401.*", {"401.9"}, {"4019"}},
                 {"*c", {"abc"}, {}},
                 {"*bc", {"abcabc"}, {"abcab"}},
                 {"*", {""}, {}},
                 {"", {""}, {"a"}},
                 {"?", {}, {""}},
                 {"?x", {"😀x"}, {}},
                 {"a?c", {"abc"}, {"ac"}},
                 {"a#c", {"a1c"}, {"axc"}},
                 {"[a-c]", {"b", "B"}, {"d"}},
                 {"[!a-c]", {"d"}, {"b", ""}},
                 {"5[*]", {"5*"}, {"5x"}},
                 {"a[[]b", {"a[b"}, {}},
                 {"x[?]", {"x?"}, {}},
                 {"[#]#", {"#1"}, {}},
                 {"[!]", {"!"}, {}},
                 {"[a-]", {"-"}, {}},
                 {"a]", {"a]"}, {}},
                 {"[a", {}, {"[a"}},
                 {"a[", {}, {"a"}},
                 {"a[]b", {"ab"}, {}},
                 {"nicolÒ", {"Nicolò"}, {}},
                 {"nicolo", {}, {"Nicolò"}},
                 {"*a?b*", {"aab"}, {"ab"}},
                 {"m*iss*pi", {"mississippi"}, {}},
                 {"100%", {"100%"}, {}},
                 {"a_b", {"a_b"}, {"axb"}}};
    for (const auto &[pattern, like, unlike] : cases) {
        for (const QString &text : like)
            EXPECT_TRUE(jet::like(text, pattern)) << shown(text) << " like " << shown(pattern);
        for (const QString &text : unlike)
            EXPECT_FALSE(jet::like(text, pattern)) << shown(text) << " like " << shown(pattern);
    }
}

} // namespace
