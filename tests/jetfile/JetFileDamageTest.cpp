// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetFileFixture.h"

#include <QDir>
#include <functional>

namespace jetfile {

namespace {

using JetFileDamage = JetFileFixture;

// A file with a bit of everything, for the tests of refused ones.
void fill(JetFileWriter &writer)
{
    JetTableWriter &table = writer.table("PROBLEMS", {number, {"m", JetType::Memo}});
    table.setLongForm(LongForm::Chained);
    for (int i = 0; i < 20; ++i)
        table.addRow({i, letters(6000)});
    table.moveRow(3);
    table.index("pk", {"n"}, IndexKind::Primary);
}

void expectOneLine(const QString &text, const QString &contains)
{
    EXPECT_TRUE(text.contains("Orvale.mdb")) << text.toStdString();
    EXPECT_FALSE(text.contains(QLatin1Char('\n'))) << text.toStdString();
    EXPECT_TRUE(text.contains(contains)) << text.toStdString();
}

TEST_F(JetFileDamage, RefusedFiles)
{
    const auto changed = [](JetVersion version, const std::function<void(JetFileWriter &)> &change) {
        JetFileWriter writer(version);
        fill(writer);
        change(writer);
        return writer.bytes();
    };
    for (const JetVersion version : bothVersions) {
        SCOPED_TRACE(int(version));
        ASSERT_EQ(refusal(changed(version, [](JetFileWriter &) {})), QString());
        for (const char *password : {"segreta", "x", "una parola di venti c"}) {
            expectOneLine(refusal(changed(version, [&](auto &file) { file.setPassword(password); })),
                          "password");
        }
        expectOneLine(refusal(changed(version, [](auto &file) { file.setDatabaseKey(0x1234ABCD); })),
                      "cifrato");
    }
    for (const quint8 newer : {2, 3, 5}) {
        expectOneLine(refusal(changed(JetVersion::Jet4, [&](auto &file) { file.setVersionByte(newer); })),
                      "più recente");
    }
    expectOneLine(refusal(QByteArray()), "vuoto");
    expectOneLine(refusal(QByteArray("SQLite format 3\0", 16) + QByteArray(4080, '\0')), "Jet");
    expectOneLine(refusal(QByteArray("Ciao")), "Jet");
    expectOneLine(refusal(QByteArray(100'000, '\0')), "Jet");
    QDir(m_folder.path()).remove("Orvale.mdb");
    expectOneLine(refusal(m_folder.filePath("Orvale.mdb")), "non esiste");
    QDir(m_folder.path()).mkdir("Orvale.mdb");
    expectOneLine(refusal(m_folder.filePath("Orvale.mdb")), "cartella");
}

TEST_F(JetFileDamage, NamesThatCannotBeCreatedAnywhere)
{
    const QString names[]{{}, "DELET\uFFFFONS", "due\nrighe", QString(65, QLatin1Char('x'))};
    for (const QString &name : names) {
        SCOPED_TRACE(name.toStdString());
        JetFileWriter badTable;
        badTable.table(name, {number});
        expectOneLine(refusal(badTable.bytes()), "danneggiato");
        JetFileWriter badColumn;
        badColumn.table("t", {number, {name, JetType::Long}});
        expectOneLine(refusal(badColumn.bytes()), "danneggiato");
    }
    JetFileWriter halfPair; // in a field's name the library under the reader replaces it
    halfPair.table(QStringLiteral("mezza \xD83D coppia"), {number});
    expectOneLine(refusal(halfPair.bytes()), "danneggiato");
}

TEST_F(JetFileDamage, FileThatMayNotBeRead)
{
    JetFileWriter writer;
    fill(writer);
    const QString path = save(writer);
    ASSERT_TRUE(QFile::setPermissions(path, {}));
    if (QFile(path).open(QIODevice::ReadOnly))
        GTEST_SKIP() << "this user may read every file";
    expectOneLine(refusal(path), "non si può leggere");
}

TEST_F(JetFileDamage, TruncatedFiles)
{
    for (const JetVersion version : bothVersions) {
        JetFileWriter writer(version);
        fill(writer);
        const QByteArray whole = writer.bytes();
        const int page = version == JetVersion::Jet3 ? 2048 : 4096;
        QList<qsizetype> lengths{1, 20, 300, page - 1, page, page + 1, whole.size() / 3, whole.size() - 1};
        for (qsizetype length = 2 * page; length < whole.size(); length += 5 * page)
            lengths.append(length);
        for (const qsizetype length : lengths) {
            SCOPED_TRACE(QStringLiteral("Jet %1, %2 of %3 bytes")
                             .arg(int(version))
                             .arg(length)
                             .arg(whole.size())
                             .toStdString());
            expectOneLine(refusal(whole.left(length)), "Orvale.mdb");
        }
    }
}

// Changes a whole file behind the writer's back.
class DamagedRows : public JetFileFixture {
protected:
    static constexpr int page = 4096;

    DamagedRows()
        : m_table(m_writer.table("t", {number, {"m", JetType::Memo}}))
    {
        m_table.setLongForm(LongForm::Chained);
        for (int i = 0; i < 5; ++i)
            m_table.addRow({i, letters(5000)});
    }
    quint32 number16(const QByteArray &bytes, qsizetype at) const
    {
        return quint8(bytes[at]) | quint32(quint8(bytes[at + 1])) << 8;
    }
    // Where a row of the table's first page begins.
    qsizetype rowStart(const QByteArray &bytes, int row) const
    {
        const qsizetype start = qsizetype(m_table.dataPages().first()) * page;
        return start + (number16(bytes, start + 14 + 2 * row) & 0x1FFF);
    }
    // Where the header of that row's memo begins: behind the count of columns and the number.
    qsizetype memoHeader(const QByteArray &bytes, int row) const { return rowStart(bytes, row) + 2 + 4; }
    void put32(QByteArray &bytes, qsizetype at, quint32 value) const
    {
        bytes.replace(at, 4, ByteSink().u32(value).bytes());
    }
    // Row 2 has lost its memo and says why; the others are whole.
    void expectMemoLost(const QByteArray &bytes)
    {
        const QList<JetRow> rows = rowsOf(bytes);
        ASSERT_EQ(rows.size(), 5);
        for (int i = 0; i < 5; ++i) {
            const JetRow &row = rows[i];
            if (i != 2) {
                expectValues(row, {i, letters(5000)});
                continue;
            }
            EXPECT_EQ(row.values.value(0), QVariant(2));
            EXPECT_FALSE(row.values.value(1).isValid());
            EXPECT_TRUE(row.problem.contains("campo m")) << row.problem.toStdString();
        }
    }

    JetFileWriter m_writer;
    JetTableWriter &m_table;
};

TEST_F(DamagedRows, MemoThatCannotBeFollowed)
{
    const QByteArray whole = m_writer.bytes();
    const quint32 first =
        quint32(number16(whole, memoHeader(whole, 2) + 4)) | number16(whole, memoHeader(whole, 2) + 6) << 16;
    const qsizetype longPage = qsizetype(first >> 8) * page;
    const qsizetype piece = longPage + (number16(whole, longPage + 14) & 0x1FFF);
    struct Case {
        const char *name;
        qsizetype at;
        quint32 value;
        bool beyondFile = false; // a part of the file is missing: nothing of it is taken over
    };
    const Case cases[]{
        {"a chain that ends too early", piece, 0},
        {"a chain that leads to itself", piece, first},
        {"a chain beyond the file", piece, 0xFFFFFF00, true},
        {"a page of rows instead of long values", memoHeader(whole, 2) + 4, m_table.dataPages().first() << 8},
        {"the first page beyond the file", memoHeader(whole, 2) + 4, 0x7FFFFF00, true},
        {"a row that the page lacks", memoHeader(whole, 2) + 4, first | 0xFF},
        {"a length beyond the chain", memoHeader(whole, 2), 0x00FFFFFE},
        {"inline without the bytes", memoHeader(whole, 2), 0x80001000}};
    for (const Case &damage : cases) {
        SCOPED_TRACE(damage.name);
        QByteArray bytes = whole;
        put32(bytes, damage.at, damage.value);
        if (damage.beyondFile)
            expectOneLine(refusal(bytes), "danneggiato o incompleto");
        else
            expectMemoLost(bytes);
    }
}

TEST_F(DamagedRows, MovedRowThatIsNotThere)
{
    m_table.moveRow(2);
    const QByteArray whole = m_writer.bytes();
    const quint32 own = RowPlace{m_table.dataPages().first(), 2}.pointer();
    for (const quint32 target : {0u, 0xFFFFFFFFu}) {
        QByteArray bytes = whole;
        put32(bytes, rowStart(bytes, 2), target);
        expectOneLine(refusal(bytes), "danneggiato o incompleto");
    }
    // Itself, a row that stands in its own right, a row that the page lacks, a page of something else.
    for (const quint32 target : {own, own - 1, own + 200, 2u << 8}) {
        SCOPED_TRACE(target);
        QByteArray bytes = whole;
        put32(bytes, rowStart(bytes, 2), target);
        const QList<JetRow> rows = rowsOf(bytes);
        EXPECT_EQ(rows.size(), 5);
        EXPECT_THAT(numbers(rows), testing::UnorderedElementsAre(0, 1, 3, 4));
    }
}

// What the definition says cannot be believed: the whole file is refused.
TEST_F(DamagedRows, DefinitionThatCannotBeBelieved)
{
    const QByteArray whole = m_writer.bytes();
    const qsizetype definition = qsizetype(m_table.definitionPage()) * page;
    struct Case {
        const char *name;
        qsizetype at; // in the definition
        quint32 value;
    };
    const Case cases[]{{"no definition page", 0, 0},
                       {"no columns", 43, 0},
                       {"more columns than a page holds", 43, 0xFFFFFFFF},
                       {"a million indexes", 51, 1'000'000},
                       {"a usage map beyond the file", 55, 0xFFFFFF00},
                       {"a usage map that its page lacks", 55, 0x000003FF}};
    for (const Case &damage : cases) {
        SCOPED_TRACE(damage.name);
        QByteArray bytes = whole;
        put32(bytes, definition + damage.at, damage.value);
        expectOneLine(refusal(bytes), "danneggiato");
    }
}

} // namespace

} // namespace jetfile
