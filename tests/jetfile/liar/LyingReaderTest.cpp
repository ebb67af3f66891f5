// SPDX-License-Identifier: Apache-2.0
// This program lies in a folder with an orvale-jet-reader that sends whatever a test wants.
#include "jetfile/JetFileFixture.h"
#include "jetfile/wire/RowCoding.h"
#include "jetfile/wire/TableCoding.h"

#include <functional>
#include <random>

namespace jetfile {

namespace {

using wire::Kind;
using wire::Writer;

class Stream {
public:
    Stream &frame(Kind kind, const std::function<void(Writer &)> &fill)
    {
        Writer payload;
        fill(payload);
        return frame(kind, quint32(payload.size()), payload.bytes());
    }
    Stream &frame(Kind kind, quint32 size, const QByteArray &payload)
    {
        Writer header;
        header << size << kind;
        m_bytes += header.bytes() + payload;
        return *this;
    }
    Stream &hello(quint8 jetVersion = 4, quint16 version = wire::version)
    {
        return frame(Kind::Hello, [&](Writer &writer) { writer << wire::magic << version << jetVersion; });
    }
    // Tables of one whole number each.
    Stream &tables(int count = 1)
    {
        return frame(Kind::Tables, [&](Writer &writer) {
            JetTable table;
            table.name = "t";
            table.columns = {{"n", dao::FieldType::Long}};
            putTables(writer, QList<JetTable>(count, table));
        });
    }
    Stream &rows(quint32 table, quint32 said, int sent)
    {
        return frame(Kind::Rows, [&](Writer &writer) {
            writer << table << said;
            for (int i = 0; i < sent; ++i)
                writer << wire::Tag::Integer << i << QString();
        });
    }
    Stream &tableEnd(quint32 table)
    {
        return frame(Kind::TableEnd, [&](Writer &writer) { writer << table; });
    }
    Stream &end()
    {
        return frame(Kind::End, [](Writer &) {});
    }
    const QByteArray &bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

class LyingReader : public JetFileFixture {
protected:
    // A file with a sound first page, which is all that this program reads of it by itself.
    QByteArray fileOf(const QByteArray &stream) const
    {
        QByteArray bytes = JetFileWriter().bytes().left(4096) + stream;
        return bytes.append((4096 - bytes.size() % 4096) % 4096, '\0');
    }
};

TEST_F(LyingReader, IsBelievedWhenItKeepsToTheProtocol)
{
    const QByteArray stream =
        Stream().hello().tables(2).rows(0, 2, 2).rows(0, 1, 1).tableEnd(0).tableEnd(1).end().bytes();
    const QList<ReadTable> tables = read(save(fileOf(stream)));
    ASSERT_EQ(tables.size(), 2);
    EXPECT_THAT(numbers(tables[0].rows), testing::ElementsAre(0, 1, 0));
    EXPECT_TRUE(tables[1].rows.isEmpty());
}

TEST_F(LyingReader, IsFoundOut)
{
    const std::pair<const char *, QByteArray> lies[] = {
        {"nothing", {}},
        {"no hello", Stream().tables().bytes()},
        {"another version of the file", Stream().hello(3).tables().bytes()},
        {"no tables", Stream().hello().rows(0, 1, 1).bytes()},
        {"an end before its time", Stream().hello().tables().end().bytes()},
        {"rows of a table that there is not", Stream().hello().tables().rows(7, 1, 1).bytes()},
        {"rows of a table that is done", Stream().hello().tables(2).tableEnd(0).rows(0, 1, 1).bytes()},
        {"fewer rows than said", Stream().hello().tables().rows(0, 3, 2).tableEnd(0).end().bytes()},
        {"more rows than said", Stream().hello().tables().rows(0, 2, 3).tableEnd(0).end().bytes()},
        {"more rows than six pages hold",
         Stream().hello().tables().rows(0, 2000, 2000).tableEnd(0).end().bytes()},
        {"billions of rows", Stream().hello().tables().rows(0, 0xffffffff, 1).bytes()},
        {"an endless frame", Stream().hello().frame(Kind::Tables, 0xffffffff, {}).bytes()},
        {"a frame without its payload", Stream().hello().frame(Kind::Tables, 1 << 20, "x").bytes()},
        {"an unknown frame", Stream().hello().tables().frame(Kind(99), 4, QByteArray(4, '\0')).bytes()},
        {"no end", Stream().hello().tables().tableEnd(0).bytes()},
    };
    for (const auto &[name, stream] : lies) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(refusal(fileOf(stream)).contains("danneggiato"));
    }
    EXPECT_TRUE(refusal(fileOf(Stream().hello(4, wire::version + 1).bytes())).contains("versione"));
    const QByteArray failure =
        Stream().hello().frame(Kind::Failure, [](Writer &w) { w << QStringLiteral("due\nrighe"); }).bytes();
    EXPECT_TRUE(refusal(fileOf(failure)).endsWith("è danneggiato o incompleto: due righe."));
}

// Whatever comes, it ends in rows or in a line; the sanitizers see to the rest.
TEST_F(LyingReader, AnyBytesEndInAResult)
{
    const QByteArray sound = Stream().hello().tables(3).rows(0, 20, 20).tableEnd(0).rows(1, 9, 9).bytes();
    std::mt19937 random(20261121);
    int refused = 0;
    for (int run = 0; run < 150; ++run) {
        QByteArray stream = sound;
        for (int i = run % 7; i >= 0; --i)
            stream[qsizetype(random() % std::size_t(stream.size()))] = char(random());
        refused += !refusal(fileOf(stream)).isEmpty();
    }
    EXPECT_EQ(refused, 150); // the stream lacks its end
}

} // namespace

} // namespace jetfile
