// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetFileFixture.h"
#include "jetfile/wire/RowCoding.h"
#include "jetfile/wire/TableCoding.h"

#include <functional>

namespace jetfile::wire {

namespace {

using dao::FieldType;

const QList<dao::ColumnInfo> oneOfEach{{"yes", FieldType::Boolean},   {"long", FieldType::Long},
                                       {"double", FieldType::Double}, {"date", FieldType::Date},
                                       {"text", FieldType::Text, 9},  {"memo", FieldType::Memo},
                                       {"guid", FieldType::Guid},     {"ole", FieldType::Binary}};

std::span<const uchar> bytesOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const uchar *>(bytes.constData()), std::size_t(bytes.size())};
}

QByteArray encodedRow()
{
    const QByteArray guid("0123456789abcdef", 16);
    Writer writer;
    putValue(writer, Tag::True);
    putInteger(writer, -5);
    putDouble(writer, 0.1);
    putDate(writer, lastSecond);
    putLatin(writer, bytesOf(QByteArrayLiteral("caff\xe8")));
    putCharacters(writer, u"Žižka");
    putGuid(writer, bytesOf(guid).first<16>());
    putBytes(writer, bytesOf(QByteArray("\0\1", 2)));
    writer.putText(u"perché no");
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
    expectValues(row, {true, -5, 0.1, at(9999, 12, 31, 23, 59, 59), "caffè", "Žižka",
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
        {"text in a number", FieldType::Long, [](Writer &w) { putCharacters(w, u"5"); }},
        {"number in a text", FieldType::Text, [](Writer &w) { putInteger(w, 5); }},
        {"number in a Yes/No", FieldType::Boolean, [](Writer &w) { putInteger(w, 1); }},
        {"double in a whole number", FieldType::Byte, [](Writer &w) { putDouble(w, 1); }},
        {"date in a double", FieldType::Double, [](Writer &w) { putDate(w, 0); }},
        {"bytes in a memo", FieldType::Memo, [](Writer &w) { putBytes(w, {}); }},
        {"text in a GUID", FieldType::Guid, [](Writer &w) { putCharacters(w, u"{}"); }},
        {"date after the last", FieldType::Date, [](Writer &w) { putDate(w, lastSecond + 1); }},
        {"date before the first", FieldType::Date, [](Writer &w) { putDate(w, firstSecond - 1); }},
        {"unknown tag", FieldType::Long, [](Writer &w) { w.put(quint8(200)); }},
        {"longer than a value may be", FieldType::Memo,
         [](Writer &w) {
             w.put(Tag::Wide);
             w.put(quint32(0xffffffff));
         }},
    };
    for (const auto &value : values) {
        Writer writer;
        value.put(writer);
        writer.putText({});
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
