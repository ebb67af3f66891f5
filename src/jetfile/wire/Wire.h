// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

#include <cstring>
#include <span>
#include <stdexcept>
#include <type_traits>

// What orvale-jet-reader and JetFileReader say to each other over the pipe. Both run on the same machine and are
// built together, so numbers travel as they lie in memory.
//
// The stream is a row of frames: the length of the payload (4 bytes), the kind (1 byte), the payload.
//
//   hello    magic (4), version of this protocol (2), version of the Jet file (1)
//   tables   all definitions (TableCoding.h)
//   rows     number of the table (4), number of rows (4), the rows (RowCoding.h)
//   tableEnd number of the table (4): all its rows have been sent
//   end      nothing more follows
//   failure  what is wrong with the file, as a part of an Italian sentence (UTF-8); nothing more follows
//
// hello and tables come first and once; then, for each table in order, any number of rows frames and its tableEnd.
namespace jetfile::wire {

constexpr quint32 magic = 0x524a564f;
constexpr quint16 version = 1;

constexpr qsizetype longestValue = 16 * 1024 * 1024; // bytes of a text (UTF-16) or a binary object
constexpr qsizetype longestRow = 32 * 1024 * 1024; // bytes of one encoded row
constexpr qsizetype fullBatch = 64 * 1024; // a frame of rows is sent once it is this long
constexpr qsizetype longestFrame = longestRow + fullBatch + 64 * 1024;
constexpr qsizetype longestProblem = 2000; // bytes of what is said about a row or a file

constexpr int mostRowsOfPage = 256; // a row is addressed by one byte within its page
constexpr int mostTables = 32768;
constexpr int mostColumns = 255;
constexpr int mostIndexes = 1000;

enum class Kind : quint8 { Hello = 1, Tables, Rows, TableEnd, End, Failure };
constexpr qsizetype headerSize = sizeof(quint32) + sizeof(Kind);

// The bytes received are not what this protocol allows.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Builds the payload of one frame.
class Writer {
public:
    template <typename Number>
    void put(Number number)
    {
        static_assert(std::is_arithmetic_v<Number> || std::is_enum_v<Number>);
        m_bytes.append(reinterpret_cast<const char *>(&number), sizeof number);
    }
    void put(const void *bytes, qsizetype size) { m_bytes.append(static_cast<const char *>(bytes), size); }
    // A length of four bytes and the text in UTF-8.
    void putText(QStringView text);

    qsizetype size() const { return m_bytes.size(); }
    void truncate(qsizetype size) { m_bytes.truncate(size); }
    // Overwrites a number that was put at that place.
    void patch(qsizetype place, quint32 number)
    {
        std::memcpy(m_bytes.data() + place, &number, sizeof number);
    }
    const QByteArray &bytes() const { return m_bytes; }
    // Empties it and keeps its room, but not that of a giant row.
    void clear();

private:
    QByteArray m_bytes;
};

// Takes a payload apart. Every call throws Error instead of reading past the end.
class Reader {
public:
    Reader() = default;
    explicit Reader(QByteArrayView bytes)
        : m_next(bytes.data())
        , m_end(bytes.data() + bytes.size())
    {
    }

    template <typename Number>
    Number take()
    {
        Number number;
        std::memcpy(&number, take(sizeof number), sizeof number);
        return number;
    }
    const char *take(qsizetype size)
    {
        if (size < 0 || size > m_end - m_next)
            throw Error("payload too short");
        const char *bytes = m_next;
        m_next += size;
        return bytes;
    }
    // A text written with putText; longer than that many bytes is an error.
    QString takeText(qsizetype mostBytes);
    // A number from 0 to `most`.
    int takeCount(int most);

    bool atEnd() const { return m_next == m_end; }

private:
    const char *m_next = nullptr;
    const char *m_end = nullptr;
};

} // namespace jetfile::wire
