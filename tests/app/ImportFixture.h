// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PracticeFixture.h"
#include "app/import/Import.h"
#include "dao/Dao.h"
#include "jetfile/JetFileWriter.h"

#include <algorithm>

// Imports of Jet files that the test writes itself.
class ImportFixture : public PracticeFixture {
protected:
    using Rows = QList<QVariantList>;

    ImportFixture() { QDir().mkdir(source()); }

    QString source() const { return path("source"); }
    QString target() const { return path("practice"); }
    jetfile::JetFileWriter &file(const QString &name = "Orvale.mdb")
    {
        auto &writer = m_files[name];
        if (!writer)
            writer = std::make_unique<jetfile::JetFileWriter>();
        return *writer;
    }
    void saveFiles()
    {
        file(); // there must be one
        for (const auto &[name, writer] : m_files)
            writer->save(QDir(source()).filePath(name));
    }
    orvale::ImportOptions options() const { return {source(), target(), {}, false}; }
    orvale::ImportReport import()
    {
        saveFiles();
        return orvale::importPractice(options());
    }
    // All rows of a query on the imported practice's clinical database.
    Rows rows(const QString &sql) const
    {
        const auto practice = orvale::Practice::open(target());
        const auto set = practice->environment().clinical->OpenRecordset(sql);
        Rows all;
        for (; !set->Eof(); set->MoveNext()) {
            QVariantList row;
            for (int i = 0; i < set->FieldCount(); ++i)
                row.append(set->Fields(i).Value());
            all.append(row);
        }
        return all;
    }
    // What of the report speaks of a table.
    static const orvale::TableProof &proof(const orvale::ImportReport &report, const QString &table)
    {
        const auto found = std::find_if(report.tables.begin(), report.tables.end(),
                                        [&](const orvale::TableProof &t) { return t.table == table; });
        EXPECT_NE(found, report.tables.end()) << table.toStdString();
        return *found;
    }
    QStringList entriesBeside() const
    {
        return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private:
    std::map<QString, std::unique_ptr<jetfile::JetFileWriter>> m_files;
};
