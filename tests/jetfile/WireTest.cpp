// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetFileFixture.h"
#include "jetfile/wire/RowCoding.h"
#include "jetfile/wire/TableCoding.h"

#include <QUuid>

#include <functional>

namespace jetfile::wire {

namespace {

using dao::FieldType;

const QList<dao::ColumnInfo> oneOfEach{{"yes", FieldType::Boolean},   {"long", FieldType::Long},
                                       {"double", FieldType::Double}, {"date", FieldType::Date},
                                       {"text", FieldType::Text, 9},  {"memo", FieldType::Memo},
                                       {"guid", FieldType::Guid},     {"ole", FieldType::Binary}};

QByteArray encodedRow()
{
    Writer writer;
    writer << Tag::True << Tag::Integer << qint32(-5) << Tag::Double << 0.1 << Tag::Date << lastSecond;
    writer << Tag::Text << QStringLiteral("caffè") << Tag::Text << QString();
    writer << Tag::Guid << QUuid("{33323130-3534-3736-3839-616263646566}");
    writer << Tag::Bytes << QByteArray("\0\1", 2) << QStringLiteral("perché no");
    return writer.bytes();
}

JetTable exampleTable()
{
    JetTable table{"città", oneOfEach, {}, 12, 34};
    table.columns[1].required = true;
    table.indexes = {{"pk", {"long", "date"}, true, true}, {"t", {"text"}, false, false}};
    return table;
}

TEST(Wire, RowsAndTablesComeOutAsTheyWentIn)
{
    const QByteArray bytes = encodedRow();
    Reader reader(bytes);
    JetRow row;
    takeRow(reader, oneOfEach, row);
    EXPECT_TRUE(reader.atEnd());
    EXPECT_EQ(row.problem, "perché no");
    row.problem.clear();
    expectValues(row, {true, -5, 0.1, at(9999, 12, 31, 23, 59, 59), "caffè", "",
                       "{33323130-3534-3736-3839-616263646566}", QByteArray("\0\1", 2)});

    Writer writer;
    putTables(writer, {exampleTable(), {}});
    Reader tables(writer.bytes());
    const QList<JetTable> read = takeTables(tables);
    ASSERT_EQ(read.size(), 2);
    EXPECT_EQ(read[0].name, "città");
    EXPECT_EQ(read[0].declaredRows, 12);
    EXPECT_EQ(read[0].lastAutoNumber, 34);
    ASSERT_EQ(read[0].columns.size(), oneOfEach.size());
    for (int i = 0; i < oneOfEach.size(); ++i) {
        EXPECT_EQ(read[0].columns[i].name, oneOfEach[i].name);
        EXPECT_EQ(read[0].columns[i].type, oneOfEach[i].type);
        EXPECT_EQ(read[0].columns[i].size, oneOfEach[i].size);
        EXPECT_EQ(read[0].columns[i].required, i == 1);
    }
    ASSERT_EQ(read[0].indexes.size(), 2);
    EXPECT_EQ(read[0].indexes[0].fields, (QStringList{"long", "date"}));
    EXPECT_TRUE(read[0].indexes[0].unique && read[0].indexes[0].primary);
    EXPECT_FALSE(read[0].indexes[1].unique || read[0].indexes[1].primary);
    EXPECT_EQ(read[1].columns.size(), 0);
}

TEST(Wire, APayloadCutOffAnywhereIsAnError)
{
    const QByteArray row = encodedRow();
    for (qsizetype size = 0; size < row.size(); ++size) {
        const QByteArray cut = row.left(size); // a copy of its own, so that a read past its end is found
        Reader reader(cut);
        JetRow taken;
        EXPECT_THROW(takeRow(reader, oneOfEach, taken), Error) << size;
    }
    Writer writer;
    putTables(writer, {exampleTable()});
    for (qsizetype size = 0; size < writer.size(); ++size) {
        const QByteArray cut = writer.bytes().left(size);
        Reader reader(cut);
        EXPECT_THROW(takeTables(reader), Error) << size;
    }
}

TEST(Wire, LiesAreErrors)
{
    const struct {
        const char *name;
        FieldType column;
        std::function<void(Writer &)> put;
    } values[] = {
        {"text in a number", FieldType::Long, [](Writer &w) { w << Tag::Text << QStringLiteral("5"); }},
        {"number in a text", FieldType::Text, [](Writer &w) { w << Tag::Integer << qint32(5); }},
        {"number in a Yes/No", FieldType::Boolean, [](Writer &w) { w << Tag::Integer << qint32(1); }},
        {"double in a whole number", FieldType::Byte, [](Writer &w) { w << Tag::Double << 1.0; }},
        {"date in a double", FieldType::Double, [](Writer &w) { w << Tag::Date << qint64(0); }},
        {"bytes in a memo", FieldType::Memo, [](Writer &w) { w << Tag::Bytes << QByteArray(); }},
        {"text in a GUID", FieldType::Guid, [](Writer &w) { w << Tag::Text << QStringLiteral("{}"); }},
        {"date after the last", FieldType::Date, [](Writer &w) { w << Tag::Date << lastSecond + 1; }},
        {"date before the first", FieldType::Date, [](Writer &w) { w << Tag::Date << firstSecond - 1; }},
        {"unknown tag", FieldType::Long, [](Writer &w) { w << quint8(200); }},
        {"longer than its payload", FieldType::Memo,
         [](Writer &w) { w << Tag::Text << quint32(0xfffffff0); }},
        {"longer than a value may be", FieldType::Memo,
         [](Writer &w) { w << Tag::Text << QString(longestValue / 2 + 1, u'x'); }},
    };
    for (const auto &value : values) {
        Writer writer;
        value.put(writer);
        writer << QString();
        Reader reader(writer.bytes());
        JetRow row;
        EXPECT_THROW(takeRow(reader, {{"c", value.column}}, row), Error) << value.name;
    }

    const std::pair<const char *, std::function<void(JetTable &)>> tables[] = {
        {"too many columns", [](JetTable &t) { t.columns.resize(mostColumns + 1); }},
        {"type that no field has", [](JetTable &t) { t.columns[0].type = FieldType::Unknown; }},
        {"size that no text has", [](JetTable &t) { t.columns[0].size = 1 << 20; }},
        {"index without fields", [](JetTable &t) { t.indexes[0].fields.clear(); }},
        {"index of eleven fields", [](JetTable &t) { t.indexes[0].fields = QString(10, u',').split(u','); }},
        {"endless name", [](JetTable &t) { t.name = QString(70000, u'x'); }},
        {"fewer rows than none", [](JetTable &t) { t.declaredRows = -1; }},
    };
    for (const auto &[name, spoil] : tables) {
        JetTable table = exampleTable();
        spoil(table);
        Writer writer;
        putTables(writer, {table});
        Reader reader(writer.bytes());
        EXPECT_THROW(takeTables(reader), Error) << name;
    }
}

} // namespace

} // namespace jetfile::wire
