// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetfile/JetTableWriter.h"

#include <memory>
#include <vector>

namespace jetfile {

// Writes small but well-formed Jet files byte by byte, so that tests can bring about every shape that a file
// may have without keeping binary files. It shares no code with the reader.
//
// A file is a row of pages of 4096 (Jet 4) or 2048 bytes (Jet 3); numbers are little-endian.
//   page 0   format name and version; from byte 0x18 on a part masked with a fixed RC4 key: code page at 0x3C,
//            database key at 0x3E, password at 0x42, creation date at 0x72
//   page 1   map of the pages that are free
//   page 2   definition of MSysObjects, the catalogue; one row of it for each table
//   then     definitions of tables (type 2), their data pages (1), index leaves (4), usage maps (rows of a
//            data page, and pages of type 5 where one row does not suffice), long values (data pages whose
//            owner reads "LVAL")
// Rows fill a page from its end; the slots after the page's header say where each begins, and the upper bits
// of a slot say what it is: 0x4000 only a pointer to where the row has moved, 0x8000 a row that such a
// pointer leads to, both a deleted row.
//
// Pages are taken as rows are added, so rows of several tables come to lie among each other as in a used
// file.
class JetFileWriter {
public:
    explicit JetFileWriter(JetVersion version = JetVersion::Jet4);
    ~JetFileWriter();
    JetFileWriter(const JetFileWriter &) = delete;
    JetFileWriter &operator=(const JetFileWriter &) = delete;

    // A new, empty user table; the reference stays valid as long as the writer.
    JetTableWriter &table(const QString &name, const QList<JetColumn> &columns);
    // Catalogue entries that are no tables of this file.
    void addLinkedTable(const QString &name, const QString &database, const QString &foreignName);
    void addQuery(const QString &name);

    // Up to 20 characters; Jet 3 takes only those of its code page.
    void setPassword(const QString &password);
    // Every page but the first is encrypted with this key; 0 for none.
    void setDatabaseKey(quint32 key);
    // The byte that tells the format's version: 0 (Jet 3), 1 (Jet 4), 2 and above for newer ones. Without
    // this it is the version's own.
    void setVersionByte(quint8 version);

    // The file as it stands now.
    QByteArray bytes() const;
    // Writes it; throws std::runtime_error when that fails.
    void save(const QString &path) const;

private:
    struct CatalogueEntry;

    void writeCatalogue(JetPages &pages) const;
    QByteArray headerPage() const;

    JetPages m_pages;
    std::vector<std::unique_ptr<JetTableWriter>> m_tables;
    std::vector<CatalogueEntry> m_otherEntries;
    QString m_password;
    quint32 m_databaseKey = 0;
    quint8 m_versionByte = 0;
};

} // namespace jetfile
