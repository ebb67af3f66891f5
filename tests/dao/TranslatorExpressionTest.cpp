// SPDX-License-Identifier: Apache-2.0
#include "dao/SmallPractice.h"
#include "jetsql/Error.h"
#include "jetsql/JetFunctions.h"

#include <gtest/gtest.h>

namespace {

// Each literal as a subquery, so that the native engine computes what the translator would have folded.
QString withoutConstants(const QString &expression)
{
    QString result;
    const auto wrap = [&result](const QString &literal) {
        result += QStringLiteral("(select ") + literal + QStringLiteral(" from one)");
    };
    for (qsizetype at = 0; at < expression.size();) {
        const QChar c = expression[at];
        qsizetype end = at + 1;
        if (c == u'\'' || c == u'#') {
            end = expression.indexOf(c, at + 1) + 1;
            while (c == u'\'' && end < expression.size() && expression[end] == c)
                end = expression.indexOf(c, end + 1) + 1;
            wrap(expression.mid(at, end - at));
        } else if (c.isDigit() && (at == 0 || !expression[at - 1].isLetter())) {
            while (end < expression.size()
                   && (expression[end].isDigit() || expression[end] == u'.' || expression[end] == u'e'))
                ++end;
            wrap(expression.mid(at, end - at));
        } else {
            result += c;
        }
        at = end;
    }
    return result;
}

struct Case {
    const char *expression;
    const char *value; // "error <number>" for an error
};

class TranslatorExpression : public testing::Test {
protected:
    std::string value(const QString &expression)
    {
        try {
            return m_practice.value(expression).toStdString();
        } catch (const dao::Error &error) {
            return "error " + std::to_string(error.number());
        } catch (const std::exception &error) {
            return error.what();
        }
    }

    // Both as the translator folds it and as the native engine computes it.
    void expectValues(std::initializer_list<Case> cases)
    {
        for (const Case &c : cases) {
            const QString expression = QString::fromUtf8(c.expression);
            EXPECT_EQ(value(expression), c.value) << c.expression;
            EXPECT_EQ(value(withoutConstants(expression)), c.value)
                << c.expression << " by the native engine";
        }
    }
    SmallPractice m_practice;
};

TEST_F(TranslatorExpression, Arithmetic)
{
    expectValues({
        {"5 + '3'", "8"},
        {"'5' + 3", "8"},
        {"'5' + '3'", "53"},
        {"'a' + 3", "error 13"},
        {"5 & 3", "53"},
        {"7/2", "3.5"},
        {"7\\2", "3"},
        {"-7\\2", "-3"},
        {"7.5\\2", "4"},
        {"7 mod 3", "1"},
        {"-7 mod 3", "-1"},
        {"2 + 3 * 4", "14"},
        {"(2 + 3) * 4", "20"},
        {"2 ^ 3 ^ 2", "64"},
        {"-2 ^ 2", "-4"},
        {"2 ^ -1", "0.5"},
        {"10 - 2 - 3", "5"},
        {"8 / 4 / 2", "1"},
        {"12 \\ 5 * 2", "1"},
        {"11 mod 4 + 1", "4"},
        {"1 + 2 & 3", "33"},
        {"- -5", "5"},
        {"1/0", "error 11"},
        {"1\\0", "error 11"},
        {"1 mod 0", "error 11"},
        {"2 + true", "1"},
        {"1.5e2 + 0.5", "150.5"},
        {"#05/11/2024# + 1", "2024-05-12 00:00:00"},
        {"#05/11/2024# - #05/01/2024#", "10"},
        {"#05/11/2024# - 0.5", "2024-05-10 12:00:00"},
        {"'1' * '3'", "3"},
    });
}

TEST_F(TranslatorExpression, NullRules)
{
    expectValues({
        {"null + 1", "Null"},
        {"null + 'a'", "Null"},
        {"empty + 'a'", "Null"},
        {"'a' & null", "a"},
        {"'a' & empty", "a"},
        {"nonumber & 'x' & nodate", "x"},
        {"isnull('')", "0"},
        {"isnull(null)", "-1"},
        {"isnull(empty)", "-1"},
        {"isnull(nodate)", "-1"},
        {"format(null, 'dd/mm/yyyy')", ""},
        {"format(nodate, 'dd/mm/yyyy')", ""},
        {"format(nonumber)", ""},
        {"mid(empty, 1, 2)", "Null"},
        {"len(null)", "Null"},
        {"year(nodate)", "Null"},
        {"trim(empty)", "Null"},
        {"val(empty)", "Null"},
        {"cdate(empty)", "Null"},
        {"cint(nonumber)", "Null"},
        {"nz(empty, 'x')", "x"},
        {"nz(empty)", ""},
        {"nz(nonumber)", "0"},
        {"nz(nonumber, 5) + 1", "6"},
        {"nz('a', 'x')", "a"},
        {"iif(null = 1, 'y', 'n')", "n"},
        {"iif(nonumber = 1, 'y', 'n')", "n"},
        {"iif(null is null, 1, 2)", "1"},
        {"iif(empty is not null, 1, 2)", "2"},
        {"iif(not (nonumber = 1), 'y', 'n')", "n"},
        {"iif(null in (1, 2), 'y', 'n')", "n"},
        {"iif('' is null, 'y', 'n')", "n"},
    });
}

TEST_F(TranslatorExpression, Comparisons)
{
    const struct {
        const char *condition;
        bool holds;
    } cases[] = {
        {"'Nicolò' = 'NICOLÒ'", true},
        {"'Nicolò' = 'Nicolo'", false},
        {"'abc' < 'ABD'", true},
        {"'a' in ('b', 'A')", true},
        {"'a' not in ('b', 'c')", true},
        {"3 = '3'", true},
        {"'3.0' = 3", true},
        {"'abc' = 3", false},
        {"'abc' <> 3", true},
        {"'' = 0", false},
        {"'10' > 9", true},
        {"'10' > '9'", false},
        {"true = -1", true},
        {"true = 1", false},
        {"yes = on", true},
        {"no = off", true},
        {"true", true},
        {"not false", true},
        {"0", false},
        {"2", true},
        {"true xor true", false},
        {"true xor false", true},
        {"not not true", true},
        {"1 = 1 and 2 = 2 or 1 = 2", true},
        {"not 1 = 2", true},
        {"5 between 1 and 5", true},
        {"5 not between 1 and 4", true},
        {"'b' between 'A' and 'C'", true},
        {"#05/11/2024# = '11/05/2024'", true},
        {"#05/11/2024# = cdate('11/05/2024 0.0.0')", true},
        {"#05/11/2024# < cdate('11/05/2024 23.59.59')", true},
        {"#05/11/2024# = 45423", true},
        {"#05/11/2024# between '10/05/2024' and '12/05/2024'", true},
        {"{guid {0a0b0c0d-0000-0000-0000-000000000001}} = '{0A0B0C0D-0000-0000-0000-000000000001}'", true},
        {"'0a0b0c0d-0000-0000-0000-000000000001' = {guid {0A0B0C0D-0000-0000-0000-000000000001}}", true},
        {"'it''s' = \"it's\"", true},
        {"\"say \"\"hi\"\"\" = 'say \"hi\"'", true},
        {"1 = 1 = true", true},
        {"exists (select n from one)", true},
        {"not exists (select n from one where n = 2)", true},
        {"1 in (select n from one)", true},
        {"'1' in (select n from one)", true},
        {"2 not in (select n from one)", true},
        {"'ROSSI' in (select cognome from archivio)", true},
    };
    for (const auto &c : cases) {
        const QString condition = QString::fromUtf8(c.condition);
        EXPECT_EQ(value(QStringLiteral("iif(") + condition + QStringLiteral(", 'y', 'n')")),
                  c.holds ? "y" : "n")
            << c.condition;
        if (!condition.contains(u'{') && !condition.contains(u'"')) {
            EXPECT_EQ(
                value(QStringLiteral("iif(") + withoutConstants(condition) + QStringLiteral(", 'y', 'n')")),
                c.holds ? "y" : "n")
                << c.condition << " by the native engine";
        }
    }
}

TEST_F(TranslatorExpression, Like)
{
    const struct {
        const char *condition;
        bool holds;
    } cases[] = {
        {"'C10AA05' like 'c10aa*'", true},
        {"'4019' like '401.*'", false},
        {"'401.9' like '401.*'", true},
        {"'A' like 'a'", true},
        {"'AB' like 'a'", false},
        {"'x' not like 'y*'", true},
        {"'a_c' like 'a_c'", true},
        {"'abc' like 'a_c'", false},
        {"'100%' like '100%'", true},
        {"'nicolò' like 'NICOLÒ*'", true},
        {"'nicolò' like 'Nicolo*'", false},
        {"'b5' like '[a-c]#'", true},
        {"'d5' like '[!a-c]?'", true},
        {"'5*' like '5[*]'", true},
        {"45 like '4*'", true},
        {"'D''Angelo' like 'd''a*'", true},
        {"'abc' like ''", false},
        {"'' like '*'", true},
    };
    for (const auto &c : cases) {
        const QString condition = QString::fromUtf8(c.condition);
        for (const QString &text : {condition, withoutConstants(condition)})
            EXPECT_EQ(value(QStringLiteral("iif(") + text + QStringLiteral(", 'y', 'n')")),
                      c.holds ? "y" : "n")
                << text.toStdString();
        // A pattern that is constant against a text that is not: the way by the index.
        const qsizetype pattern = condition.lastIndexOf(u"like");
        const QString mixed = withoutConstants(condition.left(pattern)) + condition.mid(pattern);
        EXPECT_EQ(value(QStringLiteral("iif(") + mixed + QStringLiteral(", 'y', 'n')")), c.holds ? "y" : "n")
            << mixed.toStdString();
    }
}

TEST_F(TranslatorExpression, NumberFunctions)
{
    expectValues({
        {"cint(2.5)", "2"},
        {"cint(3.5)", "4"},
        {"cint(-2.5)", "-2"},
        {"cint('7.4')", "7"},
        {"cint(32768)", "error 6"},
        {"cint('abc')", "error 13"},
        {"clng(2147483647.4)", "2147483647"},
        {"clng(2147483648)", "error 6"},
        {"cbyte(256)", "error 6"},
        {"cdbl('3.25')", "3.25"},
        {"ccur(1.23455)", "1.2346"},
        {"cbool(3)", "-1"},
        {"int(-2.5)", "-3"},
        {"fix(-2.5)", "-2"},
        {"int(2.9)", "2"},
        {"abs(-3)", "3"},
        {"sgn(-0.5)", "-1"},
        {"sgn(0)", "0"},
        {"round(2.5)", "2"},
        {"round(3.5)", "4"},
        {"round(2.345, 2)", "2.34"},
        {"round(2.675, 2)", "2.68"},
        {"round(-2.5)", "-2"},
        {"round(1234.5678, 1)", "1234.6"},
        {"round(1, -1)", "error 5"},
        {"sqr(16)", "4"},
        {"sqr(-1)", "error 5"},
        {"val('12,5 mg')", "12"},
        {"val('12.5 mg')", "12.5"},
        {"val('mg')", "0"},
        {"val('')", "0"},
        {"isnumeric('12.5')", "-1"},
        {"isnumeric('12,5')", "0"},
        {"isnumeric(null)", "0"},
        {"isnumeric(empty)", "0"},
        {"isnumeric(5)", "-1"},
        {"format(77.775, '0.00')", "77.78"},
        {"format(0.125, '0.0%')", "12.5%"},
        {"format(2.5, '0')", "3"},
        {"format('2.5', '0.00')", "2.50"},
        {"format(3)", "3"},
    });
}

TEST_F(TranslatorExpression, TextFunctions)
{
    expectValues({
        {"mid('abcdef', 2, 3)", "bcd"},
        {"mid('abcdef', 5)", "ef"},
        {"mid('abc', 10, 2)", ""},
        {"mid('abc', 4)", ""},
        {"mid('abc', 0)", "error 5"},
        {"mid('abc', 1, -1)", "error 5"},
        {"Mid$('abc', 2, 1)", "b"},
        {"left('abc', 2)", "ab"},
        {"left('abc', 20)", "abc"},
        {"left(12345, 2)", "12"},
        {"right('abc', 2)", "bc"},
        {"right('abc', 0)", ""},
        {"len('Nicolò')", "6"},
        {"len('')", "0"},
        {"len(12345)", "5"},
        {"trim('  a b  ')", "a b"},
        {"ltrim('  a ')", "a "},
        {"rtrim(' a  ')", " a"},
        {"instr('abcabc', 'C')", "3"},
        {"instr(4, 'abcabc', 'c')", "6"},
        {"instr(1, 'abC', 'c', 0)", "0"},
        {"instr('abc', 'x')", "0"},
        {"instr('abc', '')", "1"},
        {"ucase('nicolò')", "NICOLÒ"},
        {"lcase('NICOLÒ')", "nicolò"},
        {"str(5)", " 5"},
        {"str(-5.5)", "-5.5"},
        {"cstr(5)", "5"},
        {"cstr(0.1)", "0.1"},
        {"cstr(true)", "-1"},
        {"cstr(#05/11/2024#)", "11/05/2024"},
        {"cstr(#05/11/2024 08:05:00#)", "11/05/2024 08:05:00"},
        {"space(3) & 'x'", "   x"},
        {"string(3, 'ab')", "aaa"},
        {"string(2, 65)", "AA"},
        {"asc('A')", "65"},
        {"asc('')", "error 5"},
        {"chr(65)", "A"},
        {"replace('a.b.c', '.', '')", "abc"},
        {"strcomp('a', 'A')", "0"},
        {"strcomp('a', 'b')", "-1"},
        {"strcomp('a', 'A', 0)", "1"},
        {"iif(1 = 2, 'SI', 'NO')", "NO"},
        {"iif(1 = 1, 5, 'x')", "5"},
        {"switch(1 = 2, 'a', 2 = 2, 'b')", "b"},
        {"switch(1 = 2, 'a')", "Null"},
        {"choose(2, 'a', 'b', 'c')", "b"},
        {"choose(5, 'a', 'b')", "Null"},
    });
}

TEST_F(TranslatorExpression, DateFunctions)
{
    expectValues({
        {"date()", "2024-05-11 00:00:00"},
        {"now()", "2024-05-11 14:30:15"},
        {"cdate('11/05/2024 23.59.59')", "2024-05-11 23:59:59"},
        {"cdate('1/5/24')", "2024-05-01 00:00:00"},
        {"cdate('14:30')", "1899-12-30 14:30:00"},
        {"cdate('31/02/2024')", "error 13"},
        {"cdate('')", "error 13"},
        {"cdate(45423)", "2024-05-11 00:00:00"},
        {"cdate(11-05-2024)", "1894-06-21 00:00:00"},
        {"cdate(1e9)", "error 5"},
        {"cvdate('11/05/2024')", "2024-05-11 00:00:00"},
        {"datevalue('11/05/2024 10.00.00')", "2024-05-11 00:00:00"},
        {"timevalue('11/05/2024 10.00.00')", "1899-12-30 10:00:00"},
        {"dateserial(2024, 2, 30)", "2024-03-01 00:00:00"},
        {"dateserial(2024, 0, 1)", "2023-12-01 00:00:00"},
        {"dateserial(24, 1, 1)", "2024-01-01 00:00:00"},
        {"#05/11/2024#", "2024-05-11 00:00:00"},
        {"#31/12/2024#", "2024-12-31 00:00:00"},
        {"year('11/05/2024')", "2024"},
        {"month(#05/11/2024#)", "5"},
        {"day(#05/11/2024#)", "11"},
        {"hour(#05/11/2024 08:05:09#)", "8"},
        {"minute(#05/11/2024 08:05:09#)", "5"},
        {"second(#05/11/2024 08:05:09#)", "9"},
        {"weekday(#05/11/2024#)", "7"},
        {"weekday(#05/11/2024#, 2)", "6"},
        {"datediff('yyyy', #12/31/2023#, #01/01/2024#)", "1"},
        {"datediff('m', #01/31/2024#, #02/01/2024#)", "1"},
        {"datediff('d', #05/11/2023#, #05/11/2024#)", "366"},
        {"datediff('d', #05/12/2024 00:01:00#, #05/11/2024 23:59:00#)", "-1"},
        {"datediff('q', #03/31/2024#, #04/01/2024#)", "1"},
        {"datediff('ww', #05/11/2024#, #05/12/2024#)", "1"},
        {"datediff('w', #05/01/2024#, #05/14/2024#)", "1"},
        {"datediff('h', #05/11/2024 08:59:00#, #05/11/2024 09:01:00#)", "1"},
        {"datediff('n', #05/11/2024 08:59:59#, #05/11/2024 09:01:00#)", "2"},
        {"datediff('s', #05/11/2024#, #05/12/2024#)", "86400"},
        {"datediff('x', #05/11/2024#, #05/12/2024#)", "error 5"},
        {"dateadd('m', 1, #01/31/2024#)", "2024-02-29 00:00:00"},
        {"dateadd('yyyy', 1, #02/29/2024#)", "2025-02-28 00:00:00"},
        {"dateadd('d', -1, #03/01/2024#)", "2024-02-29 00:00:00"},
        {"dateadd('ww', 1, #05/11/2024#)", "2024-05-18 00:00:00"},
        {"dateadd('h', 36, #05/11/2024#)", "2024-05-12 12:00:00"},
        {"dateadd('yyyy', 9000, #05/11/2024#)", "error 5"},
        {"datepart('ww', #01/07/2024#)", "2"},
        {"datepart('y', #02/01/2024#)", "32"},
        {"datepart('q', #05/11/2024#)", "2"},
        {"isdate('11/05/2024')", "-1"},
        {"isdate('31/02/2024')", "0"},
        {"isdate(null)", "0"},
        {"isdate(#05/11/2024#)", "-1"},
        {"isdate(nodate)", "0"},
        {"format(#05/11/2024#, 'dd/mm/yyyy')", "11/05/2024"},
        {"format(#05/11/2024#, 'dd/mm/yy')", "11/05/24"},
        {"format(#05/11/2024 08:05:09#, 'hh:nn:ss')", "08:05:09"},
        {"format('11/05/2024', 'yyyy')", "2024"},
        {"iif(#05/11/2024# > date() - 1, 'y', 'n')", "y"},
    });
}

TEST_F(TranslatorExpression, WhatIsUnknownIsAnError)
{
    const Case cases[] = {
        {"soundex('a')", "error 3085"},
        {"assigntext('a', 1)", "error 3085"},
        {"mid('a')", "error 3075"},
        {"iif(1, 2)", "error 3075"},
        {"date(1)", "error 3075"},
        {"switch(1 = 1)", "error 3075"},
        {"missing", "error 3061"},
        {"one.missing", "error 3061"},
        {"format(#05/11/2024#, 'Short Date')", "error 3075"},
        {"format(#05/11/2024#, 'mmmm')", "error 3075"},
        {"format(3.5, '#,##0')", "error 3075"},
        {"6 and 3", "error 3075"},
        {"sum(n + max(n))", "error 3096"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(value(c.expression), c.value) << c.expression;
}

// The engine's own functions against the table, for each number of arguments: they are there, and Null goes through.
TEST_F(TranslatorExpression, EveryFunctionOfTheTableIsOneOfTheNativeEngine)
{
    namespace sql = dao::sql;
    for (const auto &group : {sql::textFunctions(), sql::numberFunctions(), sql::dateFunctions()}) {
        for (const sql::Function &function : group) {
            if (!function.sign.isEmpty())
                continue;
            QList<dao::FieldType> types;
            bool optional = false;
            for (const char *parameter = function.parameters;; ++parameter) {
                optional = optional || *parameter == '|';
                if (*parameter == '|')
                    continue;
                if (*parameter == '\0' || optional) {
                    const QString name = function.name.toString();
                    EXPECT_EQ(m_practice.ofNulls(name, types),
                              (function.traits & sql::TakesNull) != 0 ? "0" : "Null")
                        << name.toStdString() << " of " << types.size();
                }
                if (*parameter == '\0')
                    break;
                types.append(*parameter == 't'   ? dao::FieldType::Text
                             : *parameter == 'd' ? dao::FieldType::Date
                                                 : dao::FieldType::Double);
            }
        }
    }
}

} // namespace
