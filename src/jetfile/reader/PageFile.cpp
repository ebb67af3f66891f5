// SPDX-License-Identifier: Apache-2.0
#include "jetfile/reader/PageFile.h"

#include <QFile>
#include <QFileInfo>

namespace jetreader {

namespace {

// A row's place is given by where it begins; the upper bits say what became of it.
constexpr int offsetMask = 0x1fff;
constexpr int movedFlag = 0x4000;
constexpr int deletedFlag = 0x8000;

} // namespace

PageFile::PageFile(const QByteArray &path)
    : m_handle(mdb_open(path.constData(), MDB_NOFLAGS))
{
    if (!m_handle || m_handle->f->jet_version > MDB_VER_JET4)
        throw Damage(QStringLiteral("la prima pagina non si può interpretare"));
    m_size = QFileInfo(QFile::decodeName(path)).size();
    m_pages = quint32(m_size / pageSize());
}

void PageFile::requirePage(quint32 number) const
{
    if (number == 0 || number >= m_pages)
        throw Damage(QStringLiteral("un rimando porta alla pagina %1, che non esiste").arg(number));
}

Bytes PageFile::page(quint32 number)
{
    requirePage(number);
    if (mdb_read_pg(m_handle.get(), number) != m_handle->fmt->pg_size)
        throw Damage(QStringLiteral("la pagina %1 non si può leggere").arg(number));
    return {m_handle->pg_buf, std::size_t(pageSize())};
}

int PageFile::rowCount(Bytes page) const
{
    return number16(page, m_handle->fmt->row_count_offset);
}

RowSlot PageFile::slot(int row) const
{
    int start = 0;
    std::size_t size = 0;
    RowSlot slot;
    const bool found = mdb_find_row(m_handle.get(), row, &start, &size) == 0;
    slot.deleted = (start & deletedFlag) != 0;
    slot.moved = (start & movedFlag) != 0;
    const std::size_t begin = std::size_t(start & offsetMask);
    if (found && begin + size <= std::size_t(pageSize()))
        slot.bytes = Bytes(m_handle->pg_buf + begin, size);
    return slot;
}

} // namespace jetreader
