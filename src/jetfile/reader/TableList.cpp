// SPDX-License-Identifier: Apache-2.0
#include "jetfile/reader/TableList.h"
#include "jetfile/wire/RowCoding.h"

namespace jetreader {

using namespace jetfile;

namespace {

constexpr quint32 catalogPage = 2;

// What the catalogue says about one object of the file.
struct CatalogRow {
    quint32 page = 0;
    QString name;
    bool userTable = false;
};

// The catalogue is a table like any other; of its columns only a few are read.
class Catalog {
public:
    explicit Catalog(PageFile &file)
        : m_table(TableDefinition::read(file, catalogPage, QStringLiteral("MSysObjects")))
    {
        std::vector<Column> columns;
        QList<dao::ColumnInfo> infos;
        for (const auto &[name, type] : wanted) {
            const qsizetype index = column(name, type);
            columns.push_back(m_table.columns[std::size_t(index)]);
            infos += m_table.table.columns[index];
        }
        m_table.columns = columns;
        m_table.table.columns = infos;
    }

    const TableDefinition &table() const { return m_table; }

    CatalogRow take(const wire::Writer &writer) const
    {
        constexpr int localTable = MDB_TABLE;
        constexpr int typeMask = 0x7f;
        constexpr quint32 systemFlags = 0x80000002;
        constexpr quint32 pageMask = 0x00ffffff;
        wire::Reader reader(writer.bytes());
        JetRow row;
        wire::takeRow(reader, m_table.table.columns, row);
        if (!row.problem.isEmpty())
            throw Damage(QStringLiteral("il catalogo delle tabelle è illeggibile (%1)").arg(row.problem));
        CatalogRow entry;
        entry.page = quint32(row.values[Id].toInt()) & pageMask;
        entry.name = row.values[Name].toString();
        entry.userTable = (row.values[Type].toInt() & typeMask) == localTable
                          && (quint32(row.values[Flags].toInt()) & systemFlags) == 0;
        return entry;
    }

private:
    enum Wanted { Id, Name, Type, Flags };
    static constexpr std::pair<QStringView, dao::FieldType> wanted[] = {{u"Id", dao::FieldType::Long},
                                                                        {u"Name", dao::FieldType::Text},
                                                                        {u"Type", dao::FieldType::Integer},
                                                                        {u"Flags", dao::FieldType::Long}};

    qsizetype column(QStringView name, dao::FieldType type) const
    {
        const auto &columns = m_table.table.columns;
        for (qsizetype i = 0; i < columns.size(); ++i) {
            if (columns[i].name == name && columns[i].type == type)
                return i;
        }
        throw Damage(QStringLiteral("il catalogo delle tabelle non ha il campo %1").arg(name));
    }

    TableDefinition m_table;
};

} // namespace

std::vector<TableDefinition> readTableList(TableScan &scan)
{
    QList<CatalogRow> entries;
    const Catalog catalog(scan.file());
    wire::Writer writer;
    scan.run(catalog.table(), writer, [&] {
        const CatalogRow entry = catalog.take(writer);
        if (entry.userTable)
            entries += entry;
        writer.clear();
    });

    std::vector<TableDefinition> tables;
    QSet<quint32> pages;
    for (const CatalogRow &entry : entries) {
        if (!isName(entry.name) || pages.contains(entry.page))
            throw Damage(
                QStringLiteral("il catalogo elenca una tabella impossibile («%1»)").arg(entry.name.left(64)));
        pages.insert(entry.page);
        tables.push_back(TableDefinition::read(scan.file(), entry.page, entry.name));
        if (tables.size() > std::size_t(wire::mostTables))
            throw Damage(QStringLiteral("il catalogo elenca troppe tabelle"));
    }
    return tables;
}

} // namespace jetreader
