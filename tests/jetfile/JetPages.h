// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QList>

namespace jetfile {

enum class JetVersion { Jet3 = 3, Jet4 = 4 };

// Appends little-endian numbers to bytes.
class ByteSink {
public:
    ByteSink &u8(quint32 value);
    ByteSink &u16(quint32 value);
    ByteSink &u32(quint32 value);
    ByteSink &u64(quint64 value);
    ByteSink &zeros(int count);
    ByteSink &raw(const QByteArray &bytes);

    int size() const { return int(m_bytes.size()); }
    const QByteArray &bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

// Where a row stands.
struct RowPlace {
    quint32 page = 0;
    int slot = 0;

    // As pointers to rows are stored.
    quint32 pointer() const { return page << 8 | quint32(slot); }
};

// The pages of a file in the making, and what all pages that hold rows have in common.
class JetPages {
public:
    static constexpr quint16 slotPointer = 0x4000; // the row has moved: only a pointer stands here
    static constexpr quint16 slotMoved = 0x8000; // a row that a pointer leads to
    static constexpr quint16 slotDeleted = slotPointer | slotMoved;
    static constexpr quint32 longValueOwner = 0x4C41564C; // "LVAL"

    explicit JetPages(JetVersion version);

    JetVersion version() const { return m_version; }
    bool isJet3() const { return m_version == JetVersion::Jet3; }
    int pageSize() const { return isJet3() ? 2048 : 4096; }
    quint32 count() const { return quint32(m_pages.size()); }

    quint32 allocate(); // a page of zeros
    QByteArray &page(quint32 number) { return m_pages[int(number)]; }
    const QByteArray &page(quint32 number) const { return m_pages[int(number)]; }
    void put16(quint32 page, int offset, quint32 value);
    void put32(quint32 page, int offset, quint32 value);
    quint32 get16(quint32 page, int offset) const;

    // Pages of rows. `owner` is the table's definition page, longValueOwner, or 0 for usage maps.
    quint32 allocateRowPage(quint32 owner);
    int freeSpace(quint32 page) const; // for one more row, its slot taken off
    int largestRow() const; // that an empty page takes
    // The caller has made sure that it fits.
    RowPlace addRow(quint32 page, const QByteArray &row, quint16 flags = 0);
    // Puts the row into the last of `pages`, or into a new one added to them.
    RowPlace addRow(QList<quint32> &pages, quint32 owner, const QByteArray &row, quint16 flags = 0);
    QByteArray row(RowPlace place) const;
    void overwriteRow(RowPlace place, const QByteArray &start); // its first bytes
    void flagRow(RowPlace place, quint16 flags);

    // Writes a usage map of these pages as a row of one of `mapPages`, where they span too much by way of map
    // pages of their own.
    RowPlace addUsageMap(QList<quint32> &mapPages, const QList<quint32> &pages);

private:
    int rowCountOffset() const { return isJet3() ? 8 : 12; }
    int slotOffset(int slot) const { return rowCountOffset() + 2 + 2 * slot; }
    int rowStart(RowPlace place) const;

    JetVersion m_version;
    QList<QByteArray> m_pages;
};

// RC4, as the header's mask and encrypted files use it; encrypting twice gives the text back.
QByteArray rc4(const QByteArray &key, const QByteArray &text);

} // namespace jetfile
