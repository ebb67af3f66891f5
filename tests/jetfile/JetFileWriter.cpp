// SPDX-License-Identifier: Apache-2.0
#include "jetfile/JetFileWriter.h"

#include <QDateTime>
#include <QFile>
#include <bit>
#include <stdexcept>

namespace jetfile {

namespace {

constexpr quint32 tablesContainer = 0x0F000001;
constexpr quint32 rootContainer = 0x0F000000;
constexpr quint32 systemObject = 0x80000000;
constexpr int typeTable = 1, typeContainer = 3, typeQuery = 5, typeLinkedTable = 6;
constexpr quint32 cataloguePage = 2;

QDateTime creationDate()
{
    return QDateTime(QDate(2004, 6, 7), QTime(13, 5, 38), Qt::UTC);
}

// MSysObjects has the same columns in every file.
QList<JetColumn> catalogueColumns()
{
    const auto text = [](const QString &name) { return JetColumn{name, JetType::Text, 255, 0, false}; };
    const auto memo = [](const QString &name) { return JetColumn{name, JetType::Memo, 0, 0, false}; };
    return {{"Id", JetType::Long},
            {"ParentId", JetType::Long},
            text("Name"),
            {"Type", JetType::Integer},
            {"DateCreate", JetType::Date},
            {"DateUpdate", JetType::Date},
            {"Owner", JetType::Binary, 510},
            {"Flags", JetType::Long},
            memo("Database"),
            memo("Connect"),
            text("ForeignName"),
            {"RmtInfoShort", JetType::Binary, 510},
            {"RmtInfoLong", JetType::Ole},
            {"Lv", JetType::Ole},
            {"LvProp", JetType::Ole},
            {"LvModule", JetType::Ole},
            {"LvExtra", JetType::Ole}};
}

} // namespace

struct JetFileWriter::CatalogueEntry {
    quint32 id = 0;
    quint32 parent = tablesContainer;
    QString name;
    int type = typeTable;
    quint32 flags = 0;
    QString database, foreignName; // of a linked table
};

JetFileWriter::JetFileWriter(JetVersion version)
    : m_pages(version)
    , m_versionByte(version == JetVersion::Jet3 ? 0 : 1)
{
    m_pages.allocate(); // the header
    m_pages.allocateRowPage(0); // the map of free pages
    m_pages.allocate(); // the definition of the catalogue
}

JetFileWriter::~JetFileWriter() = default;

JetTableWriter &JetFileWriter::table(const QString &name, const QList<JetColumn> &columns)
{
    m_tables.push_back(std::make_unique<JetTableWriter>(m_pages, m_pages.allocate(), name, columns));
    return *m_tables.back();
}

void JetFileWriter::addLinkedTable(const QString &name, const QString &database, const QString &foreignName)
{
    const quint32 id = 0x80000000 + quint32(m_otherEntries.size()) + 1;
    m_otherEntries.push_back({id, tablesContainer, name, typeLinkedTable, 0x200000, database, foreignName});
}

void JetFileWriter::addQuery(const QString &name)
{
    const quint32 id = 0x80000000 + quint32(m_otherEntries.size()) + 1;
    m_otherEntries.push_back({id, tablesContainer, name, typeQuery, 0, {}, {}});
}

void JetFileWriter::setPassword(const QString &password)
{
    m_password = password;
}

void JetFileWriter::setDatabaseKey(quint32 key)
{
    m_databaseKey = key;
}

void JetFileWriter::setVersionByte(quint8 version)
{
    m_versionByte = version;
}

void JetFileWriter::writeCatalogue(JetPages &pages) const
{
    JetTableWriter catalogue(pages, cataloguePage, "MSysObjects", catalogueColumns(),
                             JetTableWriter::Kind::System);
    std::vector<CatalogueEntry> entries{
        {tablesContainer, rootContainer, "Tables", typeContainer, systemObject, {}, {}},
        {0x0F000002, rootContainer, "Databases", typeContainer, systemObject, {}, {}},
        {0x0F000003, rootContainer, "Relationships", typeContainer, systemObject, {}, {}},
        {cataloguePage, tablesContainer, "MSysObjects", typeTable, systemObject, {}, {}}};
    for (const auto &table : m_tables)
        entries.push_back({table->definitionPage(), tablesContainer, table->name(), typeTable, 0, {}, {}});
    entries.insert(entries.end(), m_otherEntries.begin(), m_otherEntries.end());

    const auto text = [](const QString &value) { return value.isEmpty() ? QVariant() : QVariant(value); };
    for (const CatalogueEntry &entry : entries) {
        catalogue.addRow({int(entry.id), int(entry.parent), entry.name, entry.type, creationDate(),
                          creationDate(), QByteArray("\xA7\x31", 2), int(entry.flags), text(entry.database),
                          QVariant(), text(entry.foreignName), QVariant(), QVariant(), QVariant(), QVariant(),
                          QVariant(), QVariant()});
    }
    catalogue.writeDefinition(pages);
}

QByteArray JetFileWriter::headerPage() const
{
    const bool jet3 = m_pages.isJet3();
    QByteArray page(m_pages.pageSize(), '\0');
    page[1] = 1;
    page.replace(4, 15, "Standard Jet DB");
    page[0x14] = char(m_versionByte);

    const auto put = [&page](int offset, const QByteArray &bytes) {
        page.replace(offset, bytes.size(), bytes);
    };
    put(0x18, ByteSink().u32(0x0100).u32(0x0101).u32(2).u32(3).u32(4).u32(5).bytes());
    put(0x3C, ByteSink().u16(1252).u32(m_databaseKey).bytes());
    if (jet3) {
        put(0x3A, ByteSink().u16(0x0409).bytes());
        put(0x42, encodeText(m_password.left(20), JetVersion::Jet3, false));
    } else {
        // The password is further masked with the whole days of the creation date.
        const double created = jetDate(creationDate());
        QByteArray password = encodeText(m_password.left(20), JetVersion::Jet4, false);
        password.resize(40, '\0');
        const QByteArray mask = ByteSink().u32(quint32(created)).bytes();
        for (int i = 0; i < password.size(); ++i)
            password[i] = char(password[i] ^ mask[i % 4]);
        put(0x42, password);
        put(0x6E, ByteSink().u16(0x0409).bytes());
        put(0x72, ByteSink().u64(std::bit_cast<quint64>(created)).bytes());
    }
    const int masked = jet3 ? 126 : 128;
    put(0x18, rc4(QByteArray::fromHex("C7DA396B"), page.mid(0x18, masked)));
    if (!jet3)
        put(0x9C, "4.0");
    return page;
}

QByteArray JetFileWriter::bytes() const
{
    // Everything that is only known at the end goes into a copy, so that the writer can go on afterwards.
    JetPages pages = m_pages;
    for (const auto &table : m_tables)
        table->writeDefinition(pages);
    writeCatalogue(pages);
    // No page is free: the map speaks of none.
    pages.addRow(1, QByteArray(5 + (pages.isJet3() ? 128 : 64), '\0'));

    QByteArray file = headerPage();
    for (quint32 number = 1; number < pages.count(); ++number) {
        const QByteArray key = ByteSink().u32(m_databaseKey ^ number).bytes();
        file += m_databaseKey == 0 ? pages.page(number) : rc4(key, pages.page(number));
    }
    return file;
}

void JetFileWriter::save(const QString &path) const
{
    QFile file(path);
    const QByteArray content = bytes();
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        throw std::runtime_error(QStringLiteral("cannot write %1").arg(path).toStdString());
}

} // namespace jetfile
