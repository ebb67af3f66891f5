// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetTableWriter.h"

#include <algorithm>
#include <stdexcept>

namespace jetfile {

namespace {

constexpr int longestInline = 64; // bytes of a long value that Jet leaves in its row
constexpr quint32 inlineFlag = 0x80000000;
constexpr quint32 singlePageFlag = 0x40000000;
// A memo longer than this is never compressed.
constexpr int longestCompressed = 1024;

void setMaskBit(QByteArray &mask, int bit)
{
    mask[bit / 8] = char(quint8(mask[bit / 8]) | 1u << bit % 8);
}

} // namespace

JetTableWriter::JetTableWriter(JetPages &pages, quint32 definitionPage, const QString &name,
                               const QList<JetColumn> &columns, Kind kind)
    : m_pages(pages)
    , m_name(name)
    , m_kind(kind)
    , m_definitionPage(definitionPage)
{
    for (const JetColumn &column : columns)
        addColumn(column);
}

void JetTableWriter::addColumn(const JetColumn &design)
{
    Column column{design, m_columnsEver++, m_fixedBytes, m_variablesEver, {}, {}};
    if (isVariable(design.type))
        ++m_variablesEver;
    else
        m_fixedBytes += fixedSize(design.type);
    m_columns.append(column);
}

void JetTableWriter::dropColumn(const QString &name)
{
    if (m_columns.removeIf([&name](const Column &column) { return column.design.name == name; }) == 0)
        throw std::invalid_argument("no such column");
}

void JetTableWriter::index(const QString &name, const QStringList &fields, IndexKind kind)
{
    Index index{name, {}, kind, realIndexes()};
    for (const QString &field : fields) {
        const auto found = std::find_if(m_columns.begin(), m_columns.end(), [&field](const Column &column) {
            return column.design.name == field;
        });
        if (found == m_columns.end())
            throw std::invalid_argument("no such column");
        index.columns.append(found->number);
    }
    if (kind == IndexKind::Foreign) {
        for (const Index &other : std::as_const(m_indexes)) {
            if (other.columns == index.columns)
                index.real = other.real;
        }
    }
    m_indexes.append(index);
}

JetTableWriter &JetTableWriter::addRow(const QVariantList &values)
{
    m_rows.append({m_pages.addRow(m_dataPages, m_definitionPage, encodeRow(values)), {}, true});
    return *this;
}

void JetTableWriter::deleteRow(int number)
{
    Row &row = m_rows[number];
    m_pages.flagRow(row.place, JetPages::slotDeleted);
    if (row.moved)
        m_pages.flagRow(*row.moved, JetPages::slotDeleted);
    row.live = false;
}

void JetTableWriter::moveRow(int number)
{
    Row &row = m_rows[number];
    const RowPlace from = row.moved.value_or(row.place);
    const QByteArray bytes = m_pages.row(from);
    // Never onto the page where the row stands: the pages that follow it, or a new one.
    QList<quint32> target;
    if (m_dataPages.last() != row.place.page && m_dataPages.last() != from.page)
        target.append(m_dataPages.last());
    const RowPlace to = m_pages.addRow(target, m_definitionPage, bytes, JetPages::slotMoved);
    if (to.page != m_dataPages.last())
        m_dataPages.append(to.page);
    if (row.moved)
        m_pages.flagRow(from, JetPages::slotDeleted);
    m_pages.overwriteRow(row.place, ByteSink().u32(to.pointer()).bytes());
    m_pages.flagRow(row.place, JetPages::slotPointer);
    row.moved = to;
}

void JetTableWriter::deletePointer(int number)
{
    Row &row = m_rows[number];
    if (!row.moved)
        throw std::logic_error("the row has not moved");
    m_pages.flagRow(row.place, JetPages::slotDeleted);
    row.live = false;
}

int JetTableWriter::liveRows() const
{
    return int(std::count_if(m_rows.begin(), m_rows.end(), [](const Row &row) { return row.live; }));
}

QByteArray JetTableWriter::longValue(Column &column, const QByteArray &value)
{
    LongForm form = m_longForm;
    if (form == LongForm::ByLength) {
        form = value.size() <= longestInline          ? LongForm::Inline
               : value.size() <= m_pages.largestRow() ? LongForm::SinglePage
                                                      : LongForm::Chained;
    }
    ByteSink header;
    const quint32 length = quint32(value.size());
    if (form == LongForm::Inline)
        return header.u32(length | inlineFlag).zeros(8).raw(value).bytes();

    if (form == LongForm::SinglePage) {
        const RowPlace place = m_pages.addRow(column.sharedPages, JetPages::longValueOwner, value);
        return header.u32(length | singlePageFlag).u32(place.pointer()).zeros(4).bytes();
    }

    // Each piece begins with the pointer to the next, so that the last one is written first.
    const int piece = m_pages.largestRow() - 4;
    quint32 next = 0;
    for (qsizetype start = (value.size() - 1) / piece * piece; start >= 0; start -= piece) {
        column.longValuePages.append(m_pages.allocateRowPage(JetPages::longValueOwner));
        const QByteArray bytes = ByteSink().u32(next).raw(value.mid(start, piece)).bytes();
        next = m_pages.addRow(column.longValuePages.last(), bytes).pointer();
    }
    return header.u32(length).u32(next).zeros(4).bytes();
}

QByteArray JetTableWriter::encodeRow(const QVariantList &values)
{
    if (values.size() != m_columns.size())
        throw std::invalid_argument("not one value for each column");
    RowParts parts;
    parts.columnCount = m_columnsEver;
    parts.fixed = QByteArray(m_fixedBytes, '\0');
    parts.variable.resize(m_variablesEver);
    parts.hasVariable = m_variablesEver > 0;
    parts.mask = QByteArray((m_columnsEver + 7) / 8, '\0');
    for (int i = 0; i < m_columns.size(); ++i) {
        Column &column = m_columns[i];
        const QVariant &value = values[i];
        if (column.design.type == JetType::Boolean) {
            if (value.toBool())
                setMaskBit(parts.mask, column.number);
            continue;
        }
        if (!value.isValid())
            continue;
        setMaskBit(parts.mask, column.number);
        QByteArray bytes = encodeValue(column.design, value, m_pages.version());
        if (column.design.type == JetType::AutoNumber)
            m_highestNumber = std::max(m_highestNumber, value.toInt());
        if (column.design.type == JetType::Memo && bytes.size() > longestCompressed)
            bytes = encodeText(value.toString(), m_pages.version(), false);
        if (isLongValue(column.design.type))
            bytes = longValue(column, bytes);
        if (isVariable(column.design.type))
            parts.variable[column.variableIndex] = bytes;
        else
            parts.fixed.replace(column.fixedOffset, bytes.size(), bytes);
    }
    return assembleRow(parts, m_pages.version());
}

} // namespace jetfile
