// SPDX-License-Identifier: Apache-2.0
// Shapes of files in which a reader goes wrong by a byte or a row.
#include "jetfile/JetFileFixture.h"

#include <QtEndian>

namespace jetfile {

namespace {

using JetFileEdges = JetFileFixture;

QByteArray noise(qsizetype count)
{
    QByteArray bytes(count, '\0');
    for (qsizetype i = 0; i < count; ++i)
        bytes[i] = char(i * 131 + i / 251);
    return bytes;
}

TEST_F(JetFileEdges, LongValuesThatJustFillTheirPages)
{
    for (const JetVersion version : bothVersions) {
        for (const LongForm form : {LongForm::ByLength, LongForm::Chained}) {
            SCOPED_TRACE(int(version));
            JetFileWriter writer(version);
            JetTableWriter &table =
                writer.table(QStringLiteral("t"), {number, {QStringLiteral("ole"), JetType::Ole}});
            table.setLongForm(form);
            QList<QVariantList> expected;
            for (const int size : {1,    63,   64,   65,   2014, 2029, 2030, 2031, 2032, 2033, 2034, 2035,
                                   2036, 2037, 4072, 4074, 4075, 4076, 4077, 4078, 4079, 4080, 4081, 8152}) {
                expected.append({size, noise(size)});
                table.addRow(expected.last());
            }
            const ReadTable read = readTable(writer);
            ASSERT_EQ(read.rows.size(), expected.size());
            for (int i = 0; i < expected.size(); ++i)
                expectValues(read.rows[i], expected[i]);
        }
    }
}

// Rows of a table without columns of variable length do not say where such values begin.
TEST_F(JetFileEdges, TheFirstColumnOfVariableLengthComesLate)
{
    for (const JetVersion version : bothVersions) {
        SCOPED_TRACE(int(version));
        JetFileWriter writer(version);
        JetTableWriter &table = writer.table(QStringLiteral("t"), {number});
        table.addRow({-1}).addRow({0x01010101});
        table.addColumn({QStringLiteral("testo"), JetType::Text, 20});
        table.addRow({2, QStringLiteral("due")});
        for (int i = 0; i < 8; ++i) // beyond the first byte of the older rows' bitmap
            table.addColumn({QStringLiteral("si%1").arg(i), JetType::Boolean});
        const ReadTable read = readTable(writer);
        ASSERT_EQ(read.rows.size(), 3);
        const QVariantList no(8, false);
        expectValues(read.rows[0], QVariantList{-1, QVariant()} + no);
        expectValues(read.rows[1], QVariantList{0x01010101, QVariant()} + no);
        expectValues(read.rows[2], QVariantList{2, QStringLiteral("due")} + no);
    }
}

TEST_F(JetFileEdges, FieldsOfAPrimaryIndexAreRequired)
{
    for (const JetVersion version : bothVersions) {
        JetFileWriter writer(version);
        JetTableWriter &table = writer.table(
            QStringLiteral("t"),
            {{QStringLiteral("a"), JetType::Long}, number, {QStringLiteral("b"), JetType::Byte}});
        table.index(QStringLiteral("pk"), {QStringLiteral("b"), number.name}, IndexKind::Primary);
        table.index(QStringLiteral("u"), {QStringLiteral("a")}, IndexKind::Unique);
        const JetTable read = readTable(writer).table;
        EXPECT_FALSE(read.columns[0].required);
        EXPECT_TRUE(read.columns[1].required && read.columns[2].required);
    }
}

// Damage to one row, or to one page, costs these alone, and is told.
TEST_F(JetFileEdges, DamagedRowsAndPagesAreToldAndTheOthersRead)
{
    constexpr qsizetype page = 4096;
    constexpr qsizetype places = 14; // where the places of the rows of a page begin
    JetFileWriter writer;
    JetTableWriter &table =
        writer.table(QStringLiteral("t"),
                     {number, {QStringLiteral("t"), JetType::Text}, {QStringLiteral("b"), JetType::Boolean}});
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
    const struct {
        const char *name;
        QByteArray bytes;
        int lost; // rows of which nothing but their being there is left
        qsizetype read;
    } cases[] = {
        {"a row outside its page", with(second + places + 2 * 5, 0x1fff), 2, rows},
        {"a row of no columns", with(second + rowStart, 0), 1, rows},
        {"a row of more columns than bytes", with(second + rowStart, 0x7fff), 1, rows},
        {"places of values beyond the row", with(second + nextStart - 3, 0x7fff), 0, rows},
        {"a page of another kind", with(second, 0x0109), 1, rows - rowsOfPage + 1},
        {"a page of another table", with(second + 4, 0x7777), 1, rows - rowsOfPage + 1},
        {"a page of too many rows", with(second + places - 2, 0xffff), 1, rows - rowsOfPage + 1},
    };
    for (const auto &damage : cases) {
        SCOPED_TRACE(damage.name);
        const QList<ReadTable> tables = read(save(damage.bytes));
        ASSERT_EQ(tables.size(), 1);
        EXPECT_EQ(tables[0].rows.size(), damage.read);
        int problems = 0, lost = 0;
        for (const JetRow &row : tables[0].rows) {
            problems += !row.problem.isEmpty();
            if (!row.values[0].isValid()) {
                ++lost;
                EXPECT_TRUE(row.problem.contains(QStringLiteral("pagina %1").arg(table.dataPages()[1])))
                    << row.problem.toStdString();
            }
        }
        EXPECT_EQ(lost, damage.lost);
        EXPECT_EQ(problems, std::max(damage.lost, 1));
    }
}

TEST_F(JetFileEdges, TwoTablesOnOneDefinitionAreDamage)
{
    JetFileWriter writer;
    JetTableWriter &one = writer.table(QStringLiteral("prima"), {number});
    JetTableWriter &two = writer.table(QStringLiteral("altra"), {number});
    QByteArray bytes = writer.bytes();
    const auto idOf = [](const JetTableWriter &table) {
        return ByteSink().u32(table.definitionPage()).bytes();
    };
    // The catalogue's row of the second table holds the first one's page in its place.
    const QString title = QStringLiteral("altra");
    const qsizetype name = bytes.indexOf(QByteArrayView(reinterpret_cast<const char *>(title.utf16()), 10));
    ASSERT_GT(name, 0);
    const qsizetype id = bytes.lastIndexOf(idOf(two), name);
    ASSERT_GT(id, name - 100);
    bytes.replace(id, 4, idOf(one));
    EXPECT_TRUE(refusal(bytes).contains(QStringLiteral("«altra»"))) << refusal(bytes).toStdString();
}

} // namespace

} // namespace jetfile
