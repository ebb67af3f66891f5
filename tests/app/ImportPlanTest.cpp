// SPDX-License-Identifier: Apache-2.0
#include "app/import/ImportPlan.h"

#include <gtest/gtest.h>

namespace {

using dao::ColumnInfo;
using dao::FieldType;
using orvale::PlannedTable;

ColumnInfo column(const char *name, FieldType type, int size = 0)
{
    return {name, type, size};
}

TEST(ImportPlan, WidensAFieldThatCannotHoldTheSourcesValues)
{
    const struct {
        ColumnInfo known, source;
        std::optional<ColumnInfo> result;
    } cases[] = {
        {column("f", FieldType::Text, 10), column("f", FieldType::Text, 20),
         column("f", FieldType::Text, 20)},
        {column("f", FieldType::Text, 20), column("f", FieldType::Text, 10),
         column("f", FieldType::Text, 20)},
        {column("f", FieldType::Text, 20), column("f", FieldType::Memo), column("f", FieldType::Memo)},
        {column("f", FieldType::Memo), column("f", FieldType::Text, 10), column("f", FieldType::Memo)},
        {column("f", FieldType::Text, 10), column("f", FieldType::Guid), column("f", FieldType::Text, 38)},
        {column("f", FieldType::Guid), column("f", FieldType::Text, 50), std::nullopt},
        {column("f", FieldType::Byte), column("f", FieldType::Integer), column("f", FieldType::Integer)},
        {column("f", FieldType::Integer), column("f", FieldType::Byte), column("f", FieldType::Integer)},
        {column("f", FieldType::Integer), column("f", FieldType::Long), column("f", FieldType::Long)},
        {column("f", FieldType::Integer), column("f", FieldType::Single), column("f", FieldType::Single)},
        {column("f", FieldType::Long), column("f", FieldType::Single), column("f", FieldType::Double)},
        {column("f", FieldType::Single), column("f", FieldType::Long), column("f", FieldType::Double)},
        {column("f", FieldType::Long), column("f", FieldType::Currency), column("f", FieldType::Currency)},
        {column("f", FieldType::Single), column("f", FieldType::Currency), column("f", FieldType::Double)},
        {column("f", FieldType::Double), column("f", FieldType::Currency), column("f", FieldType::Double)},
        {column("f", FieldType::AutoNumber), column("f", FieldType::Long),
         column("f", FieldType::AutoNumber)},
        {column("f", FieldType::Long), column("f", FieldType::AutoNumber),
         column("f", FieldType::AutoNumber)},
        {column("f", FieldType::AutoNumber), column("f", FieldType::Double), std::nullopt},
        {column("f", FieldType::Boolean), column("f", FieldType::Integer), std::nullopt},
        {column("f", FieldType::Integer), column("f", FieldType::Boolean), std::nullopt},
        {column("f", FieldType::Date), column("f", FieldType::Text, 10), std::nullopt},
        {column("f", FieldType::Binary), column("f", FieldType::Memo), std::nullopt},
    };
    for (const auto &c : cases) {
        const auto result = orvale::widened(c.known, c.source);
        SCOPED_TRACE(testing::Message() << int(c.known.type) << " with " << int(c.source.type));
        ASSERT_EQ(result.has_value(), c.result.has_value());
        if (result) {
            EXPECT_EQ(result->type, c.result->type);
            EXPECT_EQ(result->size, c.result->size);
        }
    }
}

QStringList names(const QList<ColumnInfo> &columns)
{
    QStringList list;
    for (const ColumnInfo &c : columns)
        list.append(c.name);
    return list;
}

TEST(ImportPlan, KeepsTheKnownFieldsInTheirOrderAndAddsTheOthers)
{
    const dao::TableInfo known{"ESAMI",
                               {},
                               {column("tipo", FieldType::Integer), column("descr", FieldType::Text, 60),
                                column("nota", FieldType::Memo)},
                               {{"tipo", {"tipo"}, true, true}}};
    jetfile::JetTable source;
    source.name = "esami";
    source.columns = {column("extra", FieldType::Long), column("DESCR", FieldType::Text, 60),
                      column("Tipo", FieldType::Integer)};
    source.indexes = {{"PrimaryKey", {"Tipo"}, true, true}, {"tipo", {"extra"}, false, false}};
    const PlannedTable plan = orvale::planKnownTable(known, source);
    EXPECT_EQ(plan.name, known.name);
    EXPECT_TRUE(plan.isChanged);
    EXPECT_EQ(names(plan.columns), (QStringList{"tipo", "descr", "nota", "extra"}));
    EXPECT_EQ(plan.unknownFields, QStringList{"extra"});
    EXPECT_EQ(plan.missingFields, QStringList{"nota"});
    QList<int> positions;
    for (const auto &copied : plan.copied)
        positions.append(copied.source);
    EXPECT_EQ(positions, (QList<int>{2, 1, 0}));
    // The source's primary key is the practice's already; the other index gets a name that is free.
    ASSERT_EQ(plan.indexes.size(), 2);
    EXPECT_EQ(plan.indexes[1].name, "tipo_2");
    EXPECT_EQ(plan.indexes[1].fields, QStringList{"extra"});

    source.columns = known.columns;
    source.indexes = known.indexes;
    EXPECT_FALSE(orvale::planKnownTable(known, source).isChanged);
}

TEST(ImportPlan, GivesEveryTableAndFieldANameThatIsFree)
{
    const struct {
        const char *source, *target;
    } cases[] = {{"Fatture", "Fatture"},
                 {"FATTURE già lì", "FATTURE già lì_2"},
                 {"orvale_properties", "origine_orvale_properties"},
                 {"sqlite_x", "origine_sqlite_x"},
                 {"", "senza nome"},
                 {"select \"a'b$c\"", "select \"a'b$c\""}};
    for (const auto &c : cases) {
        jetfile::JetTable source;
        source.name = QString::fromUtf8(c.source);
        EXPECT_EQ(orvale::planUnknownTable(source, {"fatture GIÀ lì"}).name, c.target);
    }
    jetfile::JetTable source;
    source.name = "t";
    source.columns = {column("a", FieldType::AutoNumber), column("A", FieldType::AutoNumber),
                      column("", FieldType::Long)};
    source.indexes = {{"i", {"a", "gone"}, true, false}};
    const PlannedTable plan = orvale::planUnknownTable(source, {});
    EXPECT_EQ(names(plan.columns), (QStringList{"a", "A_2", "senza nome"}));
    EXPECT_EQ(plan.columns[0].type, FieldType::AutoNumber);
    EXPECT_EQ(plan.columns[1].type, FieldType::Long); // a table has one
    EXPECT_TRUE(plan.indexes.isEmpty());
}

} // namespace
