// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetTableWriter.h"

#include <algorithm>

namespace jetfile {

namespace {

constexpr quint32 jet4Magic = 0x0659; // stands before each part of a Jet 4 definition
constexpr quint32 jet4IndexMagic = 0x0783;
constexpr quint32 sortOrder = 0x0409;
constexpr quint32 codePage = 1252;
constexpr int indexFields = 10; // that a real index has room for
constexpr quint32 noField = 0xFFFF;

constexpr quint32 fixedFlag = 0x01;
constexpr quint32 nullableFlag = 0x02;
constexpr quint32 autoNumberFlag = 0x04;
constexpr quint32 uniqueFlag = 0x01;
constexpr quint32 requiredFlag = 0x08;
constexpr quint32 jet4IndexFlag = 0x80;

} // namespace

int JetTableWriter::realIndexes() const
{
    int count = 0;
    for (const Index &index : m_indexes)
        count = std::max(count, index.real + 1);
    return count;
}

void JetTableWriter::appendName(ByteSink &out, const QString &name) const
{
    const QByteArray bytes = encodeText(name, m_pages.version(), false);
    m_pages.isJet3() ? out.u8(quint32(bytes.size())) : out.u16(quint32(bytes.size()));
    out.raw(bytes);
}

void JetTableWriter::appendColumns(ByteSink &out) const
{
    const bool jet3 = m_pages.isJet3();
    for (const Column &column : m_columns) {
        const JetColumn &design = column.design;
        const bool text = design.type == JetType::Text || design.type == JetType::Memo;
        const bool fixed = !isVariable(design.type);
        const quint32 flags = (fixed ? fixedFlag : 0) | nullableFlag
                              | (design.type == JetType::AutoNumber ? autoNumberFlag : 0);
        out.u8(quint32(design.type) & 0x7F);
        if (!jet3)
            out.u32(jet4Magic);
        out.u16(quint32(column.number)).u16(quint32(column.variableIndex)).u16(quint32(column.number));
        if (design.type == JetType::Numeric)
            out.u8(quint32(design.size == 0 ? 18 : design.size)).u8(quint32(design.scale)).u16(0);
        else
            out.u16(text ? sortOrder : 0).u16(jet3 && text ? codePage : 0);
        if (jet3)
            out.u16(0).u8(flags);
        else
            out.u8(flags).u8(text && design.compressed ? 1 : 0).u32(0);
        out.u16(fixed ? quint32(column.fixedOffset) : 0);
        out.u16(quint32(declaredSize(design, m_pages.version())));
    }
    for (const Column &column : m_columns)
        appendName(out, column.design.name);
}

void JetTableWriter::appendIndexes(ByteSink &out, JetPages &pages, QList<quint32> &mapPages) const
{
    const bool jet3 = pages.isJet3();
    for (int real = 0; real < realIndexes(); ++real) {
        const auto index = std::find_if(m_indexes.begin(), m_indexes.end(),
                                        [real](const Index &candidate) { return candidate.real == real; });
        const quint32 leaf = pages.allocate();
        pages.page(leaf)[0] = 4;
        pages.page(leaf)[1] = 1;
        pages.put16(leaf, 2, quint32(pages.pageSize() - (jet3 ? 0xF8 : 0x1E0)));
        pages.put32(leaf, 4, m_definitionPage);
        if (!jet3)
            out.u32(jet4IndexMagic);
        for (int field = 0; field < indexFields; ++field) {
            const bool used = field < index->columns.size();
            out.u16(used ? quint32(index->columns[field]) : noField).u8(used ? 1 : 0);
        }
        out.u32(pages.addUsageMap(mapPages, {leaf}).pointer()).u32(leaf);
        quint32 flags = jet3 ? 0 : jet4IndexFlag;
        if (index->kind == IndexKind::Primary)
            flags |= uniqueFlag | requiredFlag;
        if (index->kind == IndexKind::Unique)
            flags |= uniqueFlag;
        jet3 ? out.u8(flags) : out.u32(0).u8(flags).zeros(5);
    }
    for (int number = 0; number < m_indexes.size(); ++number) {
        const Index &index = m_indexes[number];
        if (!jet3)
            out.u32(jet4Magic);
        out.u32(quint32(number)).u32(quint32(index.real));
        out.u8(0).u32(0xFFFFFFFF).u32(0).u8(0).u8(0); // relation: of none
        out.u8(index.kind == IndexKind::Primary ? 1 : index.kind == IndexKind::Foreign ? 2 : 0);
        if (!jet3)
            out.u32(0);
    }
    for (const Index &index : m_indexes)
        appendName(out, index.name);
}

QByteArray JetTableWriter::definition(JetPages &pages) const
{
    const bool jet3 = pages.isJet3();
    QList<quint32> mapPages;
    const RowPlace ownedPages = pages.addUsageMap(mapPages, m_dataPages);
    const RowPlace pagesWithRoom =
        pages.addUsageMap(mapPages, m_dataPages.isEmpty() ? m_dataPages : m_dataPages.last(1));
    const quint32 live = quint32(liveRows());
    const quint32 declared = m_declaredRows ? quint32(*m_declaredRows) : live;

    ByteSink out; // without its length, which comes before it
    if (!jet3)
        out.u32(jet4Magic);
    out.u32(declared).u32(quint32(m_lastAutoNumber.value_or(m_highestNumber)));
    if (!jet3)
        out.u8(1).zeros(15);
    out.u8(m_kind == Kind::User ? 0x4E : 0x53);
    out.u16(quint32(m_columnsEver)).u16(quint32(m_variablesEver)).u16(quint32(m_columns.size()));
    out.u32(quint32(m_indexes.size())).u32(quint32(realIndexes()));
    out.u32(ownedPages.pointer()).u32(pagesWithRoom.pointer());
    for (int real = 0; real < realIndexes(); ++real)
        jet3 ? out.u32(0).u32(live) : out.u32(0).u32(live).u32(0);
    appendColumns(out);
    appendIndexes(out, pages, mapPages);
    for (const Column &column : m_columns) {
        if (!isLongValue(column.design.type))
            continue;
        const QList<quint32> owned = column.longValuePages + column.sharedPages;
        out.u16(quint32(column.number));
        out.u32(pages.addUsageMap(mapPages, owned).pointer());
        out.u32(pages.addUsageMap(mapPages, column.sharedPages).pointer());
    }
    return out.u16(noField).bytes();
}

void JetTableWriter::writeDefinition(JetPages &pages) const
{
    const QByteArray text = definition(pages);
    const QByteArray bytes = ByteSink().u32(quint32(text.size() + 12)).raw(text).bytes();
    // A definition that is too long for a page goes on in others, each behind a header of 8 bytes.
    const int room = pages.pageSize() - 8;
    quint32 page = m_definitionPage;
    for (int start = 0; start < bytes.size(); start += room) {
        const QByteArray part = bytes.mid(start, room);
        const quint32 next = start + room < bytes.size() ? pages.allocate() : 0;
        pages.page(page).replace(8, part.size(), part);
        pages.page(page)[0] = 2;
        pages.page(page)[1] = 1;
        pages.put16(page, 2,
                    pages.isJet3() ? 0x4356 /* "VC" */ : quint32(std::max(0, room - int(part.size()))));
        pages.put32(page, 4, next);
        page = next;
    }
}

} // namespace jetfile
