// SPDX-License-Identifier: Apache-2.0
// Shapes of files in which a reader goes wrong by a byte or a row.
#include "jetfile/JetFileFixture.h"

#include <QtEndian>

namespace jetfile {

namespace {

using JetFileEdges = BothVersions;
INSTANTIATE_TEST_SUITE_P(Jet, JetFileEdges, testing::ValuesIn(bothVersions));

QByteArray noise(qsizetype count)
{
    QByteArray bytes(count, '\0');
    for (qsizetype i = 0; i < count; ++i)
        bytes[i] = char(i * 131 + i / 251);
    return bytes;
}

TEST_P(JetFileEdges, LongValuesThatJustFillTheirPages)
{
    for (const LongForm form : {LongForm::ByLength, LongForm::Chained}) {
        JetFileWriter writer(GetParam());
        JetTableWriter &table = writer.table("t", {number, {"ole", JetType::Ole}});
        table.setLongForm(form);
        QList<QVariantList> expected;
        for (const int size : {1,    63,   64,   65,   2014, 2029, 2030, 2031, 2032, 2033, 2034, 2035,
                               2036, 2037, 4072, 4074, 4075, 4076, 4077, 4078, 4079, 4080, 4081, 8152}) {
            expected.append({size, noise(size)});
            table.addRow(expected.last());
        }
        expectRows(readTable(writer).rows, expected);
    }
}

// Rows of a table without columns of variable length do not say where such values begin.
TEST_P(JetFileEdges, TheFirstColumnOfVariableLengthComesLate)
{
    JetFileWriter writer(GetParam());
    JetTableWriter &table = writer.table("t", {number});
    table.addRow({-1}).addRow({0x01010101});
    table.addColumn({"testo", JetType::Text, 20});
    table.addRow({2, "due"});
    for (int i = 0; i < 8; ++i) // beyond the first byte of the older rows' bitmap
        table.addColumn({QStringLiteral("si%1").arg(i), JetType::Boolean});
    const QVariantList no(8, false);
    expectRows(readTable(writer).rows,
               {QVariantList{-1, QVariant()} + no, QVariantList{0x01010101, QVariant()} + no,
                QVariantList{2, "due"} + no});
}

TEST_P(JetFileEdges, FieldsOfAPrimaryIndexAreRequired)
{
    JetFileWriter writer(GetParam());
    JetTableWriter &table = writer.table("t", {{"a", JetType::Long}, number, {"b", JetType::Byte}});
    table.index("pk", {"b", number.name}, IndexKind::Primary);
    table.index("u", {"a"}, IndexKind::Unique);
    const JetTable read = readTable(writer).table;
    EXPECT_FALSE(read.columns[0].required);
    EXPECT_TRUE(read.columns[1].required && read.columns[2].required);
}

// Damage to one row, or to one page, costs these alone, and is told.
TEST_F(JetFileEdges, DamagedRowsAndPagesAreToldAndTheOthersRead)
{
    constexpr qsizetype page = 4096;
    constexpr qsizetype places = 14; // where the places of the rows of a page begin
    JetFileWriter writer;
    JetTableWriter &table = writer.table("t", {number, {"t", JetType::Text}, {"b", JetType::Boolean}});
    constexpr int rows = 300;
    for (int i = 0; i < rows; ++i)
        table.addRow({i, letters(40), true});
    ASSERT_GE(table.dataPages().size(), 3);
    const qsizetype second = qsizetype(table.dataPages()[1]) * page;
    const QByteArray whole = writer.bytes();
    const int rowsOfPage = qFromLittleEndian<quint16>(whole.constData() + second + places - 2);
    const quint16 rowStart = qFromLittleEndian<quint16>(whole.constData() + second + places + 2 * 5);
    const quint16 nextStart = qFromLittleEndian<quint16>(whole.constData() + second + places + 2 * 4);
    const auto with = [&](qsizetype at, quint16 value) {
        QByteArray bytes = whole;
        qToLittleEndian(value, bytes.data() + at);
        return bytes;
    };
    QByteArray longValues = whole; // which a table's map of pages may list too, and which hold no rows
    longValues.replace(second + 4, 4, "LVAL");
    const struct {
        const char *name;
        QByteArray bytes;
        int lost; // rows of which nothing but their being there is left
        int problems;
        qsizetype read;
    } cases[] = {
        {"a row outside its page", with(second + places + 2 * 5, 0x1fff), 2, 2, rows},
        {"a row of no columns", with(second + rowStart, 0), 1, 1, rows},
        {"a row of more columns than bytes", with(second + rowStart, 0x7fff), 1, 1, rows},
        {"places of values beyond the row", with(second + nextStart - 3, 0x7fff), 0, 1, rows},
        {"a page of another kind", with(second, 0x0109), 1, 1, rows - rowsOfPage + 1},
        {"a page of another table", with(second + 4, 0x7777), 1, 1, rows - rowsOfPage + 1},
        {"a page of too many rows", with(second + places - 2, 0xffff), 1, 1, rows - rowsOfPage + 1},
        {"a page of long values", longValues, 0, 0, rows - rowsOfPage},
    };
    for (const auto &damage : cases) {
        SCOPED_TRACE(damage.name);
        const QList<JetRow> found = rowsOf(damage.bytes);
        EXPECT_EQ(found.size(), damage.read);
        int problems = 0, lost = 0;
        for (const JetRow &row : found) {
            problems += !row.problem.isEmpty();
            if (!row.values[0].isValid()) {
                ++lost;
                EXPECT_TRUE(row.problem.contains(QStringLiteral("pagina %1").arg(table.dataPages()[1])))
                    << row.problem.toStdString();
            }
        }
        EXPECT_EQ(lost, damage.lost);
        EXPECT_EQ(problems, damage.problems);
    }
}

// Jet 4 holds UTF-16, or FF FE and one byte a character until a byte 0 changes over and back.
TEST_F(JetFileEdges, TextsOfEveryStorage)
{
    const struct {
        const char *name;
        QByteArray stored;
        QVariant read; // invalid: no text
    } cases[] = {
        {"nothing", QByteArray(""), ""},
        {"UTF-16", QByteArray("a\0\xe8\0", 4), "aè"},
        {"half a character", QByteArray("a\0b", 3), {}},
        {"a mark and nothing", QByteArray("\xff\xfe", 2), ""},
        {"single bytes",
         QByteArray("\xff\xfe"
                    "a\xe8\xff",
                    5),
         "aèÿ"},
        {"two bytes from the start", QByteArray("\xff\xfe\0\x16\x04", 5), "Ж"},
        {"over and back",
         QByteArray("\xff\xfe"
                    "a\0\x16\x04\x17\x04\0b\0\x16\x04",
                    13),
         "aЖЗbЖ"},
        {"over and back at once",
         QByteArray("\xff\xfe"
                    "a\0\0b",
                    6),
         "ab"},
        {"half a character after changing over",
         QByteArray("\xff\xfe"
                    "a\0\x16",
                    5),
         {}},
        {"one byte alone", QByteArray("a"), {}},
    };
    JetFileWriter writer;
    JetTableWriter &table = writer.table("t", {number, {"x", JetType::Binary, 60}});
    for (const auto &text : cases)
        table.addRow({7, text.stored});
    QByteArray bytes = writer.bytes();
    // The second column becomes a text.
    const qsizetype type = qsizetype(table.definitionPage()) * 4096 + 63 + 25;
    ASSERT_EQ(bytes[type], char(JetType::Binary));
    bytes[type] = char(JetType::Text);
    const QList<JetRow> rows = rowsOf(bytes);
    ASSERT_EQ(rows.size(), qsizetype(std::size(cases)));
    for (qsizetype i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(cases[i].name);
        const JetRow &row = rows[i];
        EXPECT_TRUE(same(cases[i].read, row.values[1])) << describe(row.values[1]);
        EXPECT_EQ(row.problem.isEmpty(), cases[i].read.isValid()) << row.problem.toStdString();
        EXPECT_EQ(row.values[0], QVariant(7));
    }
}

// A moved row belongs to one pointer only, and pointers do not lead in circles.
TEST_F(JetFileEdges, MovedRowsAreNotReadTwice)
{
    constexpr qsizetype page = 4096;
    JetFileWriter writer;
    JetTableWriter &table = writer.table("t", {number, {"t", JetType::Text}});
    for (int i = 0; i < 4; ++i)
        table.addRow({i, letters(30)});
    table.moveRow(1);
    table.moveRow(2);
    const QByteArray whole = writer.bytes();
    const auto placeOf = [&](quint32 pageNumber, int row) {
        return qFromLittleEndian<quint16>(whole.constData() + pageNumber * page + 14 + 2 * row);
    };
    const qsizetype first = qsizetype(table.dataPages()[0]) * page;
    const qsizetype pointer1 = first + (placeOf(table.dataPages()[0], 1) & 0x1fff);
    const qsizetype pointer2 = first + (placeOf(table.dataPages()[0], 2) & 0x1fff);

    QByteArray shared = whole;
    shared.replace(pointer2, 4, whole.mid(pointer1, 4));
    // The row that pointer 1 leads to becomes a pointer to itself.
    QByteArray circle = whole;
    const auto target = qFromLittleEndian<quint32>(whole.constData() + pointer1);
    const qsizetype slot = qsizetype(target >> 8) * page + 14 + 2 * (target & 0xff);
    circle[slot + 1] = char(circle[slot + 1] | 0x40);
    circle.replace(qsizetype(target >> 8) * page + (placeOf(target >> 8, int(target & 0xff)) & 0x1fff), 4,
                   whole.mid(pointer1, 4));
    for (const auto &[bytes, intact] :
         {std::pair(shared, QList<int>{0, 1, 3}), std::pair(circle, QList<int>{0, 2, 3})}) {
        const QList<JetRow> rows = rowsOf(bytes);
        EXPECT_EQ(rows.size(), 4);
        EXPECT_EQ(numbers(rows), intact);
    }
}

// A few bytes could otherwise make a small file as long as one likes.
TEST_F(JetFileEdges, ManyFieldsOnOneLongValueAreDamage)
{
    JetFileWriter writer;
    JetTableWriter &table = writer.table("t", {number, {"o", JetType::Ole}});
    table.setLongForm(LongForm::Chained);
    const QByteArray value = noise(99991);
    table.addRow({0, value});
    table.setLongForm(LongForm::SinglePage);
    for (int i = 1; i < 100; ++i)
        table.addRow({i, noise(777)});
    QByteArray bytes = writer.bytes();
    const qsizetype longHead = bytes.indexOf(ByteSink().u32(quint32(value.size())).bytes());
    ASSERT_GT(longHead, 0);
    const QByteArray shortHead = ByteSink().u32(777 | 0x40000000).bytes();
    int replaced = 0;
    for (qsizetype at = bytes.indexOf(shortHead); at >= 0; at = bytes.indexOf(shortHead, at + 12), ++replaced)
        bytes.replace(at, 12, bytes.mid(longHead, 12));
    ASSERT_EQ(replaced, 99);
    EXPECT_TRUE(refusal(bytes).contains("stessi testi lunghi")) << refusal(bytes).toStdString();
}

TEST_F(JetFileEdges, TwoTablesOnOneDefinitionAreDamage)
{
    JetFileWriter writer;
    JetTableWriter &one = writer.table("prima", {number});
    JetTableWriter &two = writer.table("altra", {number});
    QByteArray bytes = writer.bytes();
    const auto idOf = [](const JetTableWriter &table) {
        return ByteSink().u32(table.definitionPage()).bytes();
    };
    // The catalogue's row of the second table holds the first one's page in its place.
    const QString title = "altra";
    const qsizetype name = bytes.indexOf(QByteArrayView(reinterpret_cast<const char *>(title.utf16()), 10));
    ASSERT_GT(name, 0);
    const qsizetype id = bytes.lastIndexOf(idOf(two), name);
    ASSERT_GT(id, name - 100);
    bytes.replace(id, 4, idOf(one));
    EXPECT_TRUE(refusal(bytes).contains("«altra»")) << refusal(bytes).toStdString();
}

} // namespace

} // namespace jetfile
