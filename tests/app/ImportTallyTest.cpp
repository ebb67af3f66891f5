// SPDX-License-Identifier: Apache-2.0
#include "app/import/ImportTally.h"

#include "values/JetValues.h"

#include <gtest/gtest.h>

namespace {

using dao::FieldType;
using orvale::ColumnTally;
using orvale::TableTally;

ColumnTally tally(FieldType type, const QVariantList &values)
{
    ColumnTally result(type);
    for (const QVariant &value : values)
        result.add(value);
    return result;
}

QDateTime at(int year, int second = 0)
{
    return clivara::jet::dateTime(year, 1, 2, 3, 4, second);
}

// A proof is worth what it finds: pairs that must not pass for each other.
TEST(ImportTally, TellsEveryChangeOfAColumn)
{
    const struct {
        FieldType type;
        QVariantList one, other;
    } cases[] = {
        {FieldType::Text, {"ab", "c"}, {"a", "bc"}},
        {FieldType::Text, {"ab"}, {"ba"}},
        {FieldType::Text, {""}, {QVariant()}},
        {FieldType::Memo, {"a\r\n"}, {"a\n"}},
        {FieldType::Memo, {"a "}, {"a"}},
        {FieldType::Text, {"è"}, {"e\u0300"}},
        {FieldType::Long, {1, 4}, {2, 3}},
        {FieldType::Long, {0}, {QVariant()}},
        {FieldType::Double, {0.1 + 0.2}, {0.3}},
        {FieldType::Double, {1.0, 2.0}, {1.5, 1.5}},
        {FieldType::Currency, {0.0001}, {0.0002}},
        {FieldType::Boolean, {true, false}, {true, true}},
        {FieldType::Date, {at(1950)}, {at(1950, 1)}},
        {FieldType::Date, {at(1950), at(1952)}, {at(1951), at(1951)}},
        {FieldType::Binary, {QByteArray("\0a", 2)}, {QByteArray("a\0", 2)}},
    };
    for (const auto &c : cases)
        EXPECT_FALSE(tally(c.type, c.one) == tally(c.type, c.other)) << int(c.type);
}

TEST(ImportTally, DoesNotMindTheOrderOfRowsNorTheKindOfAnEqualNumber)
{
    EXPECT_TRUE(tally(FieldType::Double, {0.1, 1e300, -1e300, 7.0})
                == tally(FieldType::Double, {1e300, 7, 0.1, -1e300}));
    EXPECT_TRUE(tally(FieldType::Text, {"a", QVariant(), "b"})
                == tally(FieldType::Text, {"b", "a", QVariant()}));
    EXPECT_TRUE(tally(FieldType::Double, {-0.0}) == tally(FieldType::Double, {0.0}));
}

TEST(ImportTally, FindsValuesThatChangedRows)
{
    const QList<dao::ColumnInfo> columns{{"a", FieldType::Long}, {"b", FieldType::Text, 9}};
    const auto table = [&](const QList<QVariantList> &rows) {
        TableTally result(columns);
        for (const QVariantList &row : rows)
            result.add([&](int i) { return row[i]; });
        return result;
    };
    const TableTally right = table({{1, "x"}, {2, "y"}});
    EXPECT_EQ(right.checksum(), table({{2, "y"}, {1, "x"}}).checksum());
    const TableTally swapped = table({{1, "y"}, {2, "x"}});
    EXPECT_TRUE(right.column(0) == swapped.column(0));
    EXPECT_TRUE(right.column(1) == swapped.column(1));
    EXPECT_NE(right.checksum(), swapped.checksum());
}

TEST(ImportTally, ShowsSumsThatAPersonCanFollow)
{
    const struct {
        FieldType type;
        QVariantList values;
        const char *sum;
    } cases[] = {
        {FieldType::Long, {2147483647, 2147483647, -1}, "4294967293"},
        {FieldType::Currency, {0.1, -0.35}, "-0.2500"},
        {FieldType::Currency, {922337203685477.0, 922337203685477.0}, "1844674407370954.0000"},
        {FieldType::Boolean, {true, false, true}, "2"},
        {FieldType::Text, {"AB", "a"}, "228"},
        {FieldType::Date, {QVariant(clivara::jet::dateTime(1899, 12, 31))}, "86400"},
        {FieldType::Date, {QVariant(clivara::jet::dateTime(1899, 12, 29, 12))}, "-43200"},
        {FieldType::Double, {0.1, 0.2}, "0.3"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(tally(c.type, c.values).sum(), c.sum) << int(c.type);
    const auto figures = tally(FieldType::Date, {at(1950), at(1947, 9)}).figures();
    EXPECT_TRUE(figures.contains({"prima data", "1947-01-02 03:04:09"}));
    EXPECT_TRUE(figures.contains({"ultima data", "1950-01-02 03:04:00"}));
}

} // namespace
