// SPDX-License-Identifier: Apache-2.0
#include "jetfile/reader/TableDefinition.h"
#include "jetfile/reader/TextDecoder.h"
#include "jetfile/wire/Wire.h"

#include <algorithm>
#include <array>
#include <optional>

namespace jetreader {

namespace {

constexpr int mostPrecision = 28;
constexpr int exactDigits = 15; // of a double

[[noreturn]] void damagedTable(const QString &table, const QString &what)
{
    throw Damage(QStringLiteral("la definizione della tabella %1 %2").arg(table, what));
}

// Bytes of a value of fixed size by its type; nothing for texts and binary data, whose size is the column's.
std::optional<std::size_t> sizeOfType(int type)
{
    switch (type) {
    case MDB_BOOL:
        return 0;
    case MDB_BYTE:
        return 1;
    case MDB_INT:
        return 2;
    case MDB_LONGINT:
    case MDB_FLOAT:
        return 4;
    case MDB_MONEY:
    case MDB_DOUBLE:
    case MDB_DATETIME:
        return 8;
    case MDB_REPID:
        return 16;
    case MDB_NUMERIC:
        return 17;
    default:
        return {};
    }
}

std::optional<dao::FieldType> fieldType(const MdbColumn &column, int precision)
{
    using dao::FieldType;
    switch (column.col_type) {
    case MDB_BOOL:
        return FieldType::Boolean;
    case MDB_BYTE:
        return FieldType::Byte;
    case MDB_INT:
        return FieldType::Integer;
    case MDB_LONGINT:
        return column.is_long_auto ? FieldType::AutoNumber : FieldType::Long;
    case MDB_MONEY:
        return FieldType::Currency;
    case MDB_FLOAT:
        return FieldType::Single;
    case MDB_DOUBLE:
        return FieldType::Double;
    case MDB_DATETIME:
        return FieldType::Date;
    case MDB_TEXT:
        return FieldType::Text;
    case MDB_MEMO:
        return FieldType::Memo;
    case MDB_BINARY:
    case MDB_OLE:
        return FieldType::Binary;
    case MDB_REPID:
        return FieldType::Guid;
    case MDB_NUMERIC:
        return precision <= exactDigits ? FieldType::Double : FieldType::Text;
    default:
        return {};
    }
}

void addColumn(TableDefinition &definition, const MdbColumn &native, bool jet3)
{
    // libmdb's headers and its documentation disagree about which of two bytes is the precision; it is never
    // the smaller one.
    const int precision = std::max(native.col_prec, native.col_scale);
    const auto type = fieldType(native, precision);
    const QString name = QString::fromUtf8(native.name);
    const QString &table = definition.table.name;
    if (!type)
        damagedTable(table, QStringLiteral("ha un campo di tipo sconosciuto: %1").arg(name));
    if (!isName(name))
        damagedTable(table, QStringLiteral("ha un campo dal nome impossibile"));
    if (native.col_type == MDB_NUMERIC && precision > mostPrecision)
        damagedTable(table, QStringLiteral("ha un campo con troppe cifre: %1").arg(name));

    Column column;
    column.type = native.col_type;
    column.number = native.col_num;
    column.fixed = native.is_fixed;
    column.offset = std::size_t(native.fixed_offset);
    column.size = sizeOfType(native.col_type).value_or(std::size_t(native.col_size));
    column.least = sizeOfType(native.col_type).value_or(0);
    column.variableIndex = native.var_col_num;
    column.scale = std::min(native.col_prec, native.col_scale);
    column.asText = native.col_type == MDB_NUMERIC && *type == dao::FieldType::Text;
    column.name = name;
    definition.columns.push_back(column);

    dao::ColumnInfo info;
    info.name = name;
    info.type = *type;
    if (native.col_type == MDB_TEXT)
        info.size = jet3 ? native.col_size : native.col_size / 2;
    else if (column.asText)
        info.size = precision + 2; // sign and point
    definition.table.columns += info;
}

// Reads on through the pages of a definition, which are linked with one another.
class DefinitionCursor {
public:
    DefinitionCursor(PageFile &file, quint32 page, std::size_t at)
        : m_file(file)
        , m_bytes(file.page(page))
        , m_at(at)
        , m_pagesLeft(file.pages())
    {
    }

    void take(uchar *out, std::size_t size)
    {
        while (size > 0) {
            if (m_at >= m_bytes.size()) {
                m_at -= m_bytes.size() - linkedHeader;
                turn();
                continue;
            }
            const std::size_t piece = std::min(size, m_bytes.size() - m_at);
            if (out)
                out = std::copy_n(m_bytes.data() + m_at, piece, out);
            m_at += piece;
            size -= piece;
        }
    }
    template <std::size_t size>
    std::array<uchar, size> take()
    {
        std::array<uchar, size> bytes;
        take(bytes.data(), size);
        return bytes;
    }

private:
    static constexpr std::size_t linkedHeader = 8;

    void turn()
    {
        if (m_pagesLeft-- == 0)
            throw Damage(QStringLiteral("la definizione di una tabella gira in tondo"));
        m_bytes = m_file.page(number32(m_bytes, 4));
        if (m_bytes[0] != MDB_PAGE_TABLE)
            throw Damage(QStringLiteral("la definizione di una tabella si interrompe"));
    }

    PageFile &m_file;
    Bytes m_bytes;
    std::size_t m_at;
    quint32 m_pagesLeft;
};

// What an index holds in the file, apart from what the table calls it.
struct StoredIndex {
    QStringList fields;
    bool unique = false;
};

// Takes one, and marks the columns that it forbids to be Null.
StoredIndex takeStoredIndex(DefinitionCursor &cursor, TableDefinition &definition, bool jet3)
{
    constexpr std::size_t fieldSize = 3;
    constexpr uchar uniqueFlag = 0x01;
    constexpr uchar requiredFlag = 0x08;
    if (!jet3)
        cursor.take<4>();
    const auto fields = cursor.take<MDB_MAX_IDX_COLS * fieldSize>();
    cursor.take<8>(); // its pages
    if (!jet3)
        cursor.take<4>();
    const uchar flags = cursor.take<1>()[0];
    if (!jet3)
        cursor.take<5>();

    StoredIndex index;
    index.unique = flags & uniqueFlag;
    for (std::size_t i = 0; i < fields.size(); i += fieldSize) {
        const int number = number16(fields, i);
        if (number == 0xffff)
            continue;
        const auto column = std::find_if(definition.columns.begin(), definition.columns.end(),
                                         [&](const Column &c) { return c.number == number; });
        if (column == definition.columns.end())
            damagedTable(definition.table.name, QStringLiteral("ha un indice su un campo che non c'è"));
        index.fields += column->name;
        if (flags & requiredFlag)
            definition.table.columns[column - definition.columns.begin()].required = true;
    }
    return index;
}

struct NamedIndex {
    quint32 stored = 0; // which of the stored ones
    int kind = 0;
};

NamedIndex takeNamedIndex(DefinitionCursor &cursor, bool jet3)
{
    if (jet3) {
        const auto bytes = cursor.take<20>();
        return {number32(bytes, 4), bytes[19]};
    }
    const auto bytes = cursor.take<28>();
    return {number32(bytes, 8), bytes[23]};
}

// libmdb's own list of indexes pairs names and fields by their order, which is not always that of the file.
void readIndexes(TableDefinition &definition, PageFile &file)
{
    constexpr int primaryKind = 1;
    constexpr int relationKind = 2;
    const bool jet3 = file.isJet3();
    const MdbTableDef &native = *definition.native;
    if (native.num_real_idxs + native.num_idxs == 0)
        return; // and there may be no page left to go on to
    DefinitionCursor cursor(file, file.handle()->cur_pg, std::size_t(native.index_start));
    std::vector<StoredIndex> stored;
    for (unsigned i = 0; i < native.num_real_idxs; ++i)
        stored.push_back(takeStoredIndex(cursor, definition, jet3));
    std::vector<NamedIndex> named;
    for (unsigned i = 0; i < native.num_idxs; ++i)
        named.push_back(takeNamedIndex(cursor, jet3));
    for (const NamedIndex &entry : named) {
        const std::size_t size = jet3 ? cursor.take<1>()[0] : number16(cursor.take<2>(), 0);
        std::vector<uchar> name(size);
        cursor.take(name.data(), size);
        if (entry.kind == relationKind)
            continue;
        if (entry.stored >= stored.size() || stored[entry.stored].fields.isEmpty())
            damagedTable(definition.table.name, QStringLiteral("ha un indice senza campi"));
        dao::IndexInfo index;
        index.name = TextDecoder(file).decode(name).value_or(QString()).left(64);
        index.fields = stored[entry.stored].fields;
        index.primary = entry.kind == primaryKind;
        index.unique = index.primary || stored[entry.stored].unique;
        definition.table.indexes += index;
    }
}

} // namespace

TableDefinition TableDefinition::read(PageFile &file, quint32 page, const QString &name)
{
    TableDefinition definition;
    definition.page = page;
    definition.table.name = name;
    file.requirePage(page);
    definition.entry = std::make_unique<MdbCatalogEntry>();
    definition.entry->mdb = file.handle();
    definition.entry->object_type = MDB_TABLE;
    definition.entry->table_pg = page;
    definition.native.reset(mdb_read_table(definition.entry.get()));
    if (!definition.native || !definition.native->usage_map)
        damagedTable(name, QStringLiteral("è illeggibile"));

    MdbTableDef &native = *definition.native;
    if (native.num_cols == 0 || native.num_cols > unsigned(jetfile::wire::mostColumns)
        || native.num_idxs > unsigned(jetfile::wire::mostIndexes)
        || native.num_real_idxs > unsigned(jetfile::wire::mostIndexes))
        damagedTable(name, QStringLiteral("conta campi o indici impossibili"));
    const std::size_t autoNumberAt = file.isJet3() ? 16 : 20;
    definition.table.declaredRows = native.num_rows;
    // Below 0 where the numbers are given at random.
    const qint64 lastAutoNumber = std::max(0, qint32(number32(file.page(page), autoNumberAt)));

    if (!mdb_read_columns(&native))
        damagedTable(name, QStringLiteral("è incompleta"));
    for (unsigned i = 0; i < native.num_cols; ++i)
        addColumn(definition, *static_cast<MdbColumn *>(g_ptr_array_index(native.columns, i)), file.isJet3());
    const bool numbered = std::any_of(definition.table.columns.begin(), definition.table.columns.end(),
                                      [](const auto &c) { return c.type == dao::FieldType::AutoNumber; });
    definition.table.lastAutoNumber = numbered ? lastAutoNumber : 0;
    readIndexes(definition, file);
    return definition;
}

} // namespace jetreader
