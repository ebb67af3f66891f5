// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>
#include <QtEndian>

#include <memory>
#include <span>
#include <stdexcept>

#include <glib.h> // ahead of mdbtools.h, which includes it as if it were plain C

#include <mdbtools.h>

namespace jetreader {

// The file is damaged so badly that its contents cannot be trusted. The text is a part of an Italian
// sentence.
class Damage : public std::runtime_error {
public:
    explicit Damage(const QString &text)
        : std::runtime_error(text.toStdString())
    {
    }
};

using Bytes = std::span<const uchar>;

inline quint16 number16(Bytes bytes, std::size_t at)
{
    return qFromLittleEndian<quint16>(bytes.data() + at);
}
inline quint32 number32(Bytes bytes, std::size_t at)
{
    return qFromLittleEndian<quint32>(bytes.data() + at);
}

// Where a row lies: a page and the row's number on it. A Jet file packs the two into four bytes.
struct RowAddress {
    quint32 page = 0;
    int row = 0;

    static RowAddress unpack(quint32 packed) { return {packed >> 8, int(packed & 0xff)}; }
    quint32 packed() const { return page << 8 | quint32(row); }
};

// One place for a row on a page.
struct RowSlot {
    Bytes bytes; // empty when the place lies outside of the page
    bool deleted = false; // or stands in for a row of another page, which points here
    bool moved = false; // the bytes are the address of where the row went
};

// A Jet file through libmdb, with room for one page. What a call hands out is valid until the next call that
// reads a page.
class PageFile {
public:
    enum Owner : quint32 { LongValues = 0x4c41564c }; // "LVAL" instead of a table's page

    // Throws Damage when libmdb does not take the file.
    explicit PageFile(const QByteArray &path);

    bool isJet3() const { return m_handle->f->jet_version == MDB_VER_JET3; }
    int codePage() const
    {
        return m_handle->f->code_page;
    } // of the texts of a Jet 3 file; 0 when it is not said
    qint64 size() const { return m_size; }
    quint32 pages() const { return m_pages; }
    int pageSize() const { return int(m_handle->fmt->pg_size); }
    MdbHandle *handle() const { return m_handle.get(); }

    // Throws Damage when the file has no such page, as when it was cut off.
    Bytes page(quint32 number);
    void requirePage(quint32 number) const;

    // Of the page read last, which must be a data page.
    static bool isDataPage(Bytes page) { return page[0] == MDB_PAGE_DATA; }
    static quint32 owner(Bytes page) { return number32(page, 4); }
    int rowCount(Bytes page) const;
    RowSlot slot(int row) const;

private:
    struct Close {
        void operator()(MdbHandle *handle) const { mdb_close(handle); }
    };
    std::unique_ptr<MdbHandle, Close> m_handle;
    qint64 m_size = 0;
    quint32 m_pages = 0;
};

} // namespace jetreader
