// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QBuffer>
#include <QDataStream>

#include <stdexcept>

// The protocol between orvale-jet-reader and JetFileReader. A frame is the length of its payload (4 bytes),
// its kind (1 byte) and the payload, a QDataStream.
//
//   hello    magic (4), version of this protocol (2), version of the Jet file (1)
//   tables   all definitions (TableCoding.h)
//   rows     number of the table (4), number of rows (4), the rows (RowCoding.h)
//   tableEnd number of the table (4): all its rows have been sent
//   end      nothing more follows
//   failure  what is wrong with the file, as a part of an Italian sentence; nothing more follows
//
// hello and tables come first and once; then, for each table in order, any number of rows frames and its
// tableEnd.
namespace jetfile::wire {

constexpr quint32 magic = 0x524a564f;
constexpr quint16 version = 2;

constexpr qsizetype longestValue = 16 * 1024 * 1024; // bytes of a text (UTF-16) or a binary object
constexpr qsizetype longestRow = 32 * 1024 * 1024; // bytes of one encoded row
constexpr qsizetype fullBatch = 64 * 1024; // a frame of rows is sent once it is this long
constexpr qsizetype longestFrame = longestRow + fullBatch + 64 * 1024;
constexpr qsizetype longestProblem = 2000; // characters of what is said about a row or a file

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

// The payload of one frame while it is being written.
class Writer : public QDataStream {
public:
    Writer();

    qsizetype size() const { return m_buffer.size(); }
    void truncate(qsizetype size);
    // Overwrites a number that was written at that place.
    void patch(qsizetype place, quint32 number);
    const QByteArray &bytes() const { return m_buffer.data(); }
    // Empties it and keeps its memory, but not that of a giant row.
    void clear();

private:
    QBuffer m_buffer;
};

// Takes a payload apart. Every call throws Error instead of reading past the end.
class Reader : public QDataStream {
public:
    explicit Reader(const QByteArray &bytes);

    template <typename Value>
    Value take()
    {
        Value value{};
        *this >> value;
        if (status() != Ok)
            throw Error("payload too short");
        return value;
    }
    // A text; more than that many characters are an error.
    QString takeText(qsizetype longest);
    // A number from 0 to `most`, which precedes that many elements of a list.
    int takeCount(int most);
};

} // namespace jetfile::wire
