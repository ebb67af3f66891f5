// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetPages.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <stdexcept>

namespace jetfile {

namespace {

constexpr int offsetMask = 0x1FFF;
// Bytes of bits in a usage map that stands in a row.
constexpr int mapBytes(JetVersion version)
{
    return version == JetVersion::Jet3 ? 128 : 64;
}

void setBit(QByteArray &bits, int firstByte, quint32 bit)
{
    char &byte = bits[firstByte + int(bit / 8)];
    byte = char(quint8(byte) | 1u << bit % 8);
}

} // namespace

ByteSink &ByteSink::u8(quint32 value)
{
    m_bytes.append(char(value & 0xFF));
    return *this;
}

ByteSink &ByteSink::u16(quint32 value)
{
    return u8(value).u8(value >> 8);
}

ByteSink &ByteSink::u32(quint32 value)
{
    return u16(value).u16(value >> 16);
}

ByteSink &ByteSink::u64(quint64 value)
{
    return u32(quint32(value)).u32(quint32(value >> 32));
}

ByteSink &ByteSink::zeros(int count)
{
    m_bytes.append(count, '\0');
    return *this;
}

ByteSink &ByteSink::raw(const QByteArray &bytes)
{
    m_bytes.append(bytes);
    return *this;
}

JetPages::JetPages(JetVersion version)
    : m_version(version)
{
}

quint32 JetPages::allocate()
{
    m_pages.append(QByteArray(pageSize(), '\0'));
    return count() - 1;
}

void JetPages::put16(quint32 number, int offset, quint32 value)
{
    QByteArray &bytes = page(number);
    bytes[offset] = char(value & 0xFF);
    bytes[offset + 1] = char(value >> 8 & 0xFF);
}

void JetPages::put32(quint32 number, int offset, quint32 value)
{
    put16(number, offset, value);
    put16(number, offset + 2, value >> 16);
}

quint32 JetPages::get16(quint32 number, int offset) const
{
    const QByteArray &bytes = page(number);
    return quint8(bytes[offset]) | quint32(quint8(bytes[offset + 1])) << 8;
}

quint32 JetPages::allocateRowPage(quint32 owner)
{
    const quint32 number = allocate();
    page(number)[0] = 1;
    page(number)[1] = 1;
    put32(number, 4, owner);
    put16(number, 2, quint32(pageSize() - slotOffset(0)));
    return number;
}

int JetPages::freeSpace(quint32 number) const
{
    return int(get16(number, 2)) - 2;
}

int JetPages::largestRow() const
{
    // Four bytes stay unused, as in files that Jet itself wrote.
    return pageSize() - slotOffset(1) - 4;
}

int JetPages::rowStart(RowPlace place) const
{
    return int(get16(place.page, slotOffset(place.slot))) & offsetMask;
}

RowPlace JetPages::addRow(quint32 number, const QByteArray &row, quint16 flags)
{
    const RowPlace place{number, int(get16(number, rowCountOffset()))};
    const int end = place.slot == 0 ? pageSize() : rowStart({number, place.slot - 1});
    const int start = end - int(row.size());
    if (start < slotOffset(place.slot + 1))
        throw std::logic_error("the row does not fit into its page");
    std::copy(row.begin(), row.end(), page(number).begin() + start);
    put16(number, slotOffset(place.slot), quint32(start) | flags);
    put16(number, rowCountOffset(), quint32(place.slot + 1));
    put16(number, 2, quint32(start - slotOffset(place.slot + 1)));
    return place;
}

RowPlace JetPages::addRow(QList<quint32> &pages, quint32 owner, const QByteArray &row, quint16 flags)
{
    // A pointer to a row has one byte for the slot.
    if (pages.isEmpty() || freeSpace(pages.last()) < row.size()
        || get16(pages.last(), rowCountOffset()) == 255)
        pages.append(allocateRowPage(owner));
    return addRow(pages.last(), row, flags);
}

QByteArray JetPages::row(RowPlace place) const
{
    const int start = rowStart(place);
    const int end = place.slot == 0 ? pageSize() : rowStart({place.page, place.slot - 1});
    return page(place.page).mid(start, end - start);
}

void JetPages::overwriteRow(RowPlace place, const QByteArray &start)
{
    if (row(place).size() < start.size())
        throw std::logic_error("the row is too short to be overwritten");
    page(place.page).replace(rowStart(place), start.size(), start);
}

void JetPages::flagRow(RowPlace place, quint16 flags)
{
    put16(place.page, slotOffset(place.slot), quint32(rowStart(place)) | flags);
}

RowPlace JetPages::addUsageMap(QList<quint32> &mapPages, const QList<quint32> &pages)
{
    const int size = mapBytes(m_version);
    const auto [first, last] = std::minmax_element(pages.begin(), pages.end());
    const bool empty = pages.isEmpty();
    QByteArray map(5 + size, '\0');
    if (empty || *last - *first < quint32(8 * size)) {
        // Type 0: the first page it speaks of, then a bit for each page.
        const quint32 start = empty ? 0 : *first;
        map.replace(1, 4, ByteSink().u32(start).bytes());
        for (const quint32 number : pages)
            setBit(map, 5, number - start);
    } else {
        // Type 1: numbers of pages of bits that begin with page 0.
        const quint32 perPage = quint32(pageSize() - 4) * 8;
        map[0] = 1;
        for (quint32 index = 0; index <= *last / perPage; ++index) {
            const quint32 bits = allocate();
            page(bits)[0] = 5;
            page(bits)[1] = 1;
            for (const quint32 number : pages) {
                if (number / perPage == index)
                    setBit(page(bits), 4, number % perPage);
            }
            map.replace(1 + 4 * int(index), 4, ByteSink().u32(bits).bytes());
        }
    }
    return addRow(mapPages, 0, map);
}

QByteArray rc4(const QByteArray &key, const QByteArray &text)
{
    std::array<quint8, 256> state;
    std::iota(state.begin(), state.end(), quint8(0));
    quint8 j = 0;
    for (int i = 0; i < 256; ++i) {
        j = quint8(j + state[size_t(i)] + quint8(key[i % int(key.size())]));
        std::swap(state[size_t(i)], state[j]);
    }
    QByteArray out;
    out.reserve(text.size());
    quint8 i = 0;
    j = 0;
    for (const char byte : text) {
        j = quint8(j + state[++i]);
        std::swap(state[i], state[j]);
        out.append(char(quint8(byte) ^ state[quint8(state[i] + state[j])]));
    }
    return out;
}

} // namespace jetfile
