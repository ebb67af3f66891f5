// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetFileFixture.h"

#include <algorithm>
#include <limits>

namespace jetfile {

namespace {

using JetFileRows = BothVersions;
INSTANTIATE_TEST_SUITE_P(Jet, JetFileRows, testing::ValuesIn(bothVersions));

struct ValueCase {
    QString name;
    JetColumn column;
    QVariant written;
    QVariant read;
    bool jet4Only = false;
};

QList<ValueCase> valueCases()
{
    const auto column = [](JetType type, int size = 0, int scale = 0) {
        return JetColumn{"v", type, size, scale};
    };
    QList<ValueCase> cases;
    const auto add = [&](const char *name, JetColumn design, const QVariant &written, const QVariant &read) {
        cases.append({name, design, written, read});
    };
    const auto addSame = [&](const char *name, JetColumn design, const QVariant &value) {
        add(name, design, value, value);
    };
    const auto addJet4 = [&](const char *name, JetColumn design, const QVariant &written,
                             const QVariant &read) {
        add(name, design, written, read);
        cases.last().jet4Only = true;
    };

    for (const JetType type :
         {JetType::Byte, JetType::Integer, JetType::Long, JetType::Currency, JetType::Single, JetType::Double,
          JetType::Date, JetType::Binary, JetType::Text, JetType::Ole, JetType::Memo, JetType::Guid})
        cases.append({QStringLiteral("null of type %1").arg(int(type)), column(type), {}, {}});
    addSame("yes", column(JetType::Boolean), true);
    addSame("no", column(JetType::Boolean), false);
    add("yes/no never set", column(JetType::Boolean), {}, false);
    addSame("byte", column(JetType::Byte), 255);
    addSame("integer, lowest", column(JetType::Integer), -32768);
    addSame("integer, highest", column(JetType::Integer), 32767);
    addSame("long, lowest", column(JetType::Long), std::numeric_limits<int>::min());
    addSame("long, highest", column(JetType::Long), std::numeric_limits<int>::max());
    add("currency", column(JetType::Currency), -12345LL, -1.2345);
    add("currency, large", column(JetType::Currency), 12345678901234LL, 1234567890.1234);
    addSame("single", column(JetType::Single), double(1.1f));
    for (const double value :
         {0.1, 1e308, -1e308, 5e-324, 2.2250738585072009e-308, -0.0, 0.1 + 0.2,
          std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        addSame("double", column(JetType::Double), value);

    addSame("date with time", column(JetType::Date), at(2024, 2, 29, 23, 59, 59));
    addSame("date, day zero", column(JetType::Date), at(1899, 12, 30));
    addSame("date, time alone", column(JetType::Date), at(1899, 12, 30, 6, 30, 15));
    addSame("date before day zero", column(JetType::Date), at(1899, 12, 29, 18, 0, 0));
    addSame("date, far before", column(JetType::Date), at(1799, 6, 5, 4, 3, 2));
    addSame("date, first", column(JetType::Date), at(100, 1, 1));
    addSame("date, last", column(JetType::Date), at(9999, 12, 31, 23, 59, 59));
    add("date, whole seconds", column(JetType::Date), 43831.0 + 1e-9, at(2020, 1, 1));
    add("date, second before midnight by rounding", column(JetType::Date), 43832.0 - 1e-9, at(2020, 1, 2));
    for (const double impossible : {1e9, -1e9, 2958466.0, -657435.0, std::numeric_limits<double>::quiet_NaN(),
                                    std::numeric_limits<double>::infinity()})
        addSame("impossible date", column(JetType::Date), impossible);

    addSame("empty text", column(JetType::Text), "");
    addSame("blank text", column(JetType::Text), " ");
    addSame("text", column(JetType::Text), "Nicolò dell'Acqua; \"x\",\t\r\nfine ");
    addSame("longest text", column(JetType::Text), letters(255));
    addSame("text of the code page's upper rows", column(JetType::Text), "€ “virgolette” – Œuvre ÿ");
    addJet4("text beyond Latin-1", column(JetType::Text), "Žižka Łódź", "Žižka Łódź");
    const QString mixed = "in mezzo a molte lettere latine: Ω, poi 日本, poi \U0001F600 e di nuovo latine";
    addJet4("text that changes between one byte and two", column(JetType::Text), mixed, mixed);
    const QString lowZero = "una lettera con il byte basso a zero: Ā";
    addJet4("text that cannot be compressed", column(JetType::Text), lowZero, lowZero);
    JetColumn plain = column(JetType::Text);
    plain.compressed = false;
    addJet4("uncompressed text", plain, mixed, mixed);

    addSame("empty binary", column(JetType::Binary), QByteArray(""));
    addSame("binary", column(JetType::Binary), QByteArray("\0\1\xFF\xFE\0", 5));
    addSame("long binary", column(JetType::Ole), QByteArray(50'000, '\xA5'));
    add("guid", column(JetType::Guid), "{0a1b2c3d-4E5F-6071-8293-a4b5c6d7e8f9}",
        "{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}");
    add("guid of bytes", column(JetType::Guid), QByteArray::fromHex("00112233445566778899AABBCCDDEEFF"),
        "{33221100-5544-7766-8899-AABBCCDDEEFF}");
    addJet4("fixed point of 15 digits", column(JetType::Numeric, 15, 3), "-12.345", -12.345);
    addJet4("fixed point of 18 digits", column(JetType::Numeric, 18, 3), "-999999999999999.999",
            "-999999999999999.999");
    addJet4("fixed point of 28 digits", column(JetType::Numeric, 28, 0), "1234567890123456789012345678",
            "1234567890123456789012345678");
    addJet4("fixed point below one", column(JetType::Numeric, 20, 5), "0.00012", "0.00012");
    addJet4("null fixed point", column(JetType::Numeric), {}, {});
    return cases;
}

// Each value stands between two columns of its own kind of storage, so that a value read from a wrong place
// shows.
TEST_P(JetFileRows, ValuesComeBackExactly)
{
    const QList<ValueCase> cases = valueCases();
    JetFileWriter writer(GetParam());
    QList<const ValueCase *> written;
    for (const ValueCase &value : cases) {
        if (value.jet4Only && GetParam() == JetVersion::Jet3)
            continue;
        JetTableWriter &table =
            writer.table(QStringLiteral("t%1").arg(written.size()), {number,
                                                                     {"before", JetType::Text, 20},
                                                                     value.column,
                                                                     {"after", JetType::Text, 20},
                                                                     {"last", JetType::Long}});
        table.addRow({7, "prima", value.written, "dopo", -7});
        table.addRow({8, QVariant(), value.written, QVariant(), QVariant()});
        written.append(&value);
    }
    const QList<ReadTable> tables = read(save(writer));
    ASSERT_EQ(tables.size(), written.size());
    for (int i = 0; i < tables.size(); ++i) {
        SCOPED_TRACE(written[i]->name.toStdString());
        expectRows(tables[i].rows, {{7, "prima", written[i]->read, "dopo", -7},
                                    {8, QVariant(), written[i]->read, QVariant(), QVariant()}});
    }
}

TEST_P(JetFileRows, LongValuesOfEachForm)
{
    const bool isJet3 = GetParam() == JetVersion::Jet3;
    QString wide = letters(3000);
    wide.replace(500, 3, "Ω\U0001F600");
    const QList<QString> texts{{},           letters(1),    letters(500), letters(512),    letters(513),
                               letters(980), letters(3000), wide,         letters(130'000)};
    JetFileWriter writer(GetParam());
    const QList<JetColumn> columns{
        number, {"one", JetType::Memo}, {"other", JetType::Memo}, {"bytes", JetType::Ole}};
    JetTableWriter &table = writer.table("memos", columns);
    QList<QVariantList> expected;
    const int room = isJet3 ? 1500 : 1900; // of what may stand in a row or on one page
    for (const QString &text : texts) {
        if (isJet3 && text == wide)
            continue;
        for (const LongForm form :
             {LongForm::ByLength, LongForm::Inline, LongForm::SinglePage, LongForm::Chained}) {
            if ((form == LongForm::Inline && text.size() > 500)
                || (form == LongForm::SinglePage && text.size() > room))
                continue;
            // Short inline values beside it: a row must hold all of them.
            table.setLongForm(form);
            const QVariant other = form == LongForm::Inline ? QVariant() : QVariant(text);
            const QByteArray bytes = text.left(form == LongForm::Inline ? 50 : 5000).toLatin1();
            const bool fits = form != LongForm::SinglePage || bytes.size() <= room;
            expected.append({int(expected.size()), text, other, fits ? QVariant(bytes) : QVariant()});
            table.addRow(expected.last());
        }
    }
    expectRows(readTable(writer).rows, expected);
}

TEST_P(JetFileRows, RowsThatWereDeletedOrMoved)
{
    JetFileWriter writer(GetParam());
    JetTableWriter &table = writer.table("rows", {number, {"text", JetType::Memo}, {"c", JetType::Text}});
    const auto rowOf = [](int i) {
        return QVariantList{i, letters(1000 + i), QStringLiteral("riga %1").arg(i)};
    };
    for (int i = 0; i < 60; ++i)
        table.addRow(rowOf(i));
    for (const int deleted : {0, 7, 59})
        table.deleteRow(deleted);
    for (const int moved : {1, 8, 9, 30, 58})
        table.moveRow(moved);
    table.moveRow(30); // and again
    table.deleteRow(9); // the row and its pointer
    table.deletePointer(8); // the pointer alone
    for (int i = 60; i < 70; ++i)
        table.addRow(rowOf(i));
    table.moveRow(65);

    QList<int> live;
    for (int i = 0; i < 70; ++i) {
        if (!QList<int>{0, 7, 8, 9, 59}.contains(i))
            live.append(i);
    }
    const ReadTable rows = readTable(writer);
    EXPECT_EQ(rows.table.declaredRows, live.size());
    EXPECT_THAT(numbers(rows.rows), testing::UnorderedElementsAreArray(live));
    for (const JetRow &row : rows.rows)
        expectValues(row, rowOf(row.values.value(0).toInt()));
}

TEST_F(JetFileRows, TableWithoutLiveRows)
{
    JetFileWriter writer;
    writer.table("never filled", {number});
    JetTableWriter &emptied = writer.table("emptied", {number, {"v", JetType::Text}});
    emptied.addRow({1, "x"});
    emptied.deleteRow(0);
    const QList<ReadTable> tables = read(save(writer));
    ASSERT_EQ(tables.size(), 2);
    EXPECT_TRUE(tables[0].rows.isEmpty());
    EXPECT_TRUE(tables[1].rows.isEmpty());
    EXPECT_EQ(tables[1].table.declaredRows, 0);
}

// Older rows keep the bytes of columns that are gone and lack those that came later.
TEST_P(JetFileRows, DesignChangedBetweenRows)
{
    JetFileWriter writer(GetParam());
    JetTableWriter &table = writer.table("t", {number,
                                               {"goneFixed", JetType::Double},
                                               {"kept", JetType::Integer},
                                               {"goneText", JetType::Text},
                                               {"keptText", JetType::Text},
                                               {"goneFlag", JetType::Boolean}});
    table.addRow({1, 1.5, 11, "via", "resta", true});
    for (const char *gone : {"goneFixed", "goneText", "goneFlag"})
        table.dropColumn(gone);
    table.addRow({2, 22, "due"});
    table.addColumn({"newMemo", JetType::Memo});
    table.addColumn({"newFlag", JetType::Boolean});
    table.addColumn({"newDate", JetType::Date});
    table.addRow({3, 33, QVariant(), "memo", true, at(2020, 1, 2, 3, 4, 5)});
    table.index("ByNew", {"newDate", "keptText"});

    const ReadTable read = readTable(writer);
    QStringList names;
    for (const dao::ColumnInfo &column : read.table.columns)
        names.append(column.name);
    EXPECT_EQ(names, (QStringList{"n", "kept", "keptText", "newMemo", "newFlag", "newDate"}));
    expectRows(read.rows, {{1, 11, "resta", QVariant(), false, QVariant()},
                           {2, 22, "due", QVariant(), false, QVariant()},
                           {3, 33, QVariant(), "memo", true, at(2020, 1, 2, 3, 4, 5)}});
    ASSERT_EQ(read.table.indexes.size(), 1);
    EXPECT_EQ(read.table.indexes[0].fields, (QStringList{"newDate", "keptText"}));
}

TEST_P(JetFileRows, ColumnsIndexesAndCounters)
{
    const QList<JetColumn> columns{{"idProblems", JetType::AutoNumber},
                                   {"descr_mal", JetType::Text, 40},
                                   {"Città è più", JetType::Text, 255},
                                   {"note", JetType::Memo},
                                   {"f", JetType::Boolean},
                                   {"i", JetType::Integer},
                                   {"c", JetType::Currency},
                                   {"s", JetType::Single},
                                   {"ole", JetType::Ole},
                                   {"g", JetType::Guid},
                                   {"d", JetType::Date},
                                   {"b", JetType::Byte}};
    JetFileWriter writer(GetParam());
    JetTableWriter &table = writer.table("PROBLEMS", columns);
    QVariantList row(columns.size());
    row[0] = 4;
    table.addRow(row);
    table.setDeclaredRows(12);
    table.setLastAutoNumber(900);
    table.index("descr", {"descr_mal", "i"});
    table.index("Rel_1", {"idProblems"}, IndexKind::Foreign);
    table.index("PrimaryKey", {"idProblems"}, IndexKind::Primary);
    table.index("uno", {"g"}, IndexKind::Unique);
    table.index("Rel_2", {"g"}, IndexKind::Foreign);

    const JetTable read = readTable(writer).table;
    EXPECT_EQ(read.name, "PROBLEMS");
    EXPECT_EQ(read.declaredRows, 12);
    EXPECT_EQ(read.lastAutoNumber, 900);
    using enum dao::FieldType;
    const QList<dao::FieldType> types{AutoNumber, Text,   Text,   Memo, Boolean, Integer,
                                      Currency,   Single, Binary, Guid, Date,    Byte};
    ASSERT_EQ(read.columns.size(), columns.size());
    for (int i = 0; i < columns.size(); ++i) {
        EXPECT_EQ(read.columns[i].name, columns[i].name);
        EXPECT_EQ(read.columns[i].type, types[i]) << i;
        EXPECT_EQ(read.columns[i].size, types[i] == Text ? columns[i].size : 0) << i;
    }
    QStringList indexes;
    for (const dao::IndexInfo &index : read.indexes) {
        indexes.append(QStringLiteral("%1(%2)%3%4")
                           .arg(index.name, index.fields.join(QLatin1Char(',')),
                                index.unique ? QStringLiteral(" unique") : QString(),
                                index.primary ? QStringLiteral(" primary") : QString()));
    }
    indexes.sort();
    EXPECT_EQ(indexes,
              (QStringList{"PrimaryKey(idProblems) unique primary", "descr(descr_mal,i)", "uno(g) unique"}));
}

TEST_P(JetFileRows, DefinitionOverSeveralPages)
{
    JetFileWriter writer(GetParam());
    QList<JetColumn> columns;
    QVariantList values;
    for (int i = 0; i < 250; ++i) {
        columns.append({QStringLiteral("un nome di campo piuttosto lungo numero %1").arg(i),
                        i % 3 == 0   ? JetType::Text
                        : i % 3 == 1 ? JetType::Integer
                                     : JetType::Boolean,
                        4});
        values.append(i % 3 == 0   ? QVariant(QStringLiteral("v%1").arg(i))
                      : i % 3 == 1 ? QVariant(i)
                                   : QVariant(i % 2 == 0));
    }
    JetTableWriter &table = writer.table("larga", columns);
    for (int i = 0; i < 12; ++i)
        table.index(QStringLiteral("un indice dal nome lungo, numero %1").arg(i), {columns[3 * i].name});
    table.addRow(values);
    const ReadTable read = readTable(writer);
    ASSERT_EQ(read.table.columns.size(), columns.size());
    EXPECT_EQ(read.table.columns.last().name, columns.last().name);
    ASSERT_EQ(read.table.indexes.size(), 12);
    EXPECT_EQ(read.table.indexes[11].fields, QStringList{columns[33].name});
    expectRows(read.rows, {values});
}

QList<JetColumn> numberAndTexts(int texts)
{
    QList<JetColumn> columns{number};
    for (int i = 0; i < texts; ++i)
        columns.append({QStringLiteral("c%1").arg(i), JetType::Text, 255, 0, false});
    return columns;
}

// In Jet 3 a place within a row has one byte, and a table of jumps tells the rest: each length of a row once.
TEST_P(JetFileRows, RowsOfEveryLength)
{
    JetFileWriter writer(GetParam());
    JetTableWriter &table = writer.table("t", numberAndTexts(7));
    QList<QVariantList> expected;
    for (int length = 200; length < 1060; ++length) {
        QVariantList row{length};
        for (int i = 0, left = length; i < 7; ++i) {
            const int share = i == 6 ? left : std::min(left, (length * (i + 3) / 41) % 255);
            row.append(share == 0 ? QVariant() : QVariant(letters(share)));
            left -= share;
        }
        if (row.last().toString().size() > 255)
            row.last() = row.last().toString().left(255);
        table.addRow(row);
        expected.append(row);
    }
    expectRows(readTable(writer).rows, expected);
}

// So many pages that a usage map does not fit into its row.
TEST_P(JetFileRows, TableOfManyPages)
{
    JetFileWriter writer(GetParam());
    JetTableWriter &big = writer.table("grande", numberAndTexts(5));
    JetTableWriter &small = writer.table("piccola", {number});
    const QString filling = letters(240);
    QList<int> all;
    for (int i = 0; i < 2400; ++i) {
        big.addRow({i, filling, filling, filling, filling, filling});
        all.append(i);
        if (i % 100 == 0)
            small.addRow({i});
    }
    const QList<ReadTable> tables = read(save(writer));
    ASSERT_EQ(tables.size(), 2);
    EXPECT_GT(big.dataPages().size(), 1030);
    EXPECT_EQ(numbers(tables[0].rows), all);
    EXPECT_EQ(tables[1].rows.size(), 24);
}

TEST_F(JetFileRows, OnlyTablesOfTheFileItself)
{
    JetFileWriter writer;
    writer.table("prima", {number});
    writer.addLinkedTable("collegata", "C:\\altro.mdb", "x");
    writer.addQuery("interrogazione");
    writer.table("seconda è ultima", {number}).addRow({5});
    const QList<ReadTable> tables = read(save(writer));
    ASSERT_EQ(tables.size(), 2);
    EXPECT_EQ(tables[0].table.name, "prima");
    EXPECT_EQ(tables[1].table.name, "seconda è ultima");
    EXPECT_THAT(numbers(tables[1].rows), testing::ElementsAre(5));
}

} // namespace

} // namespace jetfile
