// SPDX-License-Identifier: Apache-2.0
#include "jetfile/reader/LongValues.h"
#include "jetfile/wire/Wire.h"

#include <algorithm>

namespace jetreader {

namespace {

constexpr std::size_t headSize = 12; // length and place, 4 bytes of the first piece's address, 4 unused
constexpr quint32 inRow = 0x80000000;
constexpr quint32 onePiece = 0x40000000;
constexpr quint32 lengthMask = 0x3fffffff;

} // namespace

Bytes LongValues::fetch(Bytes field)
{
    if (field.empty())
        return field;
    if (field.size() < headSize)
        throw Unreadable(QStringLiteral("è troppo corto"));
    const quint32 head = number32(field, 0);
    const std::size_t size = head & lengthMask;
    if (size == 0)
        return {};
    if (size > std::size_t(jetfile::wire::longestValue))
        throw Unreadable(QStringLiteral("dichiara %1 byte, più di quanti se ne leggono").arg(size));
    if (head & inRow) {
        if (field.size() - headSize < size)
            throw Unreadable(QStringLiteral("è più corto di quanto dichiara"));
        return field.subspan(headSize, size);
    }
    const auto address = RowAddress::unpack(number32(field, 4));
    if (!(head & onePiece))
        return chain(address, size);
    const Bytes bytes = piece(address);
    if (bytes.size() < size)
        throw Unreadable(QStringLiteral("è più corto di quanto dichiara"));
    charge(size);
    return bytes.first(size);
}

Bytes LongValues::piece(RowAddress address)
{
    const Bytes page = m_pages.page(address.page);
    if (!PageFile::isDataPage(page) || PageFile::owner(page) != PageFile::LongValues
        || address.row >= m_pages.rowCount(page))
        throw Unreadable(QStringLiteral("rimanda a una pagina che non lo contiene (%1)").arg(address.page));
    return m_pages.slot(address.row).bytes;
}

Bytes LongValues::chain(RowAddress address, std::size_t size)
{
    constexpr std::size_t linkSize = 4;
    QSet<quint32> seen;
    m_joined.resize(0);
    while (std::size_t(m_joined.size()) < size) {
        if (address.page == 0)
            throw Unreadable(QStringLiteral("finisce prima di quanto dichiara"));
        if (seen.contains(address.packed()))
            throw Unreadable(QStringLiteral("gira in tondo"));
        seen.insert(address.packed());
        const Bytes bytes = piece(address);
        if (bytes.size() <= linkSize)
            throw Unreadable(QStringLiteral("ha un pezzo vuoto"));
        const std::size_t taken = std::min(bytes.size() - linkSize, size - std::size_t(m_joined.size()));
        charge(taken);
        m_joined.append(reinterpret_cast<const char *>(bytes.data()) + linkSize, qsizetype(taken));
        address = RowAddress::unpack(number32(bytes, 0));
    }
    return {reinterpret_cast<const uchar *>(m_joined.constData()), size};
}

void LongValues::charge(std::size_t size)
{
    m_fetched += qint64(size);
    if (m_fetched > m_pages.size())
        throw Damage(QStringLiteral("più campi rimandano agli stessi testi lunghi"));
}

} // namespace jetreader
