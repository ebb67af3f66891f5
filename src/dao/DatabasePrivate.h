// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"
#include "dao/DatabaseCatalog.h"
#include "dao/Translator.h"

namespace dao {

struct Database::Private {
    Private(const std::shared_ptr<Attachment> &file, const QString &path, bool isReadOnly);

    void requireOpen() const;
    void requireWritable() const;
    // Names may have become wrong because another process changed a definition: once more with the
    // definitions read anew, but only when they really changed.
    template <typename Work>
    auto withCurrentNames(Work work) const;
    Translation translate(const QString &sql, const BoundParameters &parameters) const;
    QVariantList nativeValues(const Translation &translation, const BoundParameters &parameters) const;
    Translation wholeTable(const TableInfo &table) const;
    int execute(const Query &query);

    // --- definitions
    QString nativeName(const QString &table) const;
    void define(const Translation &statement);
    void createTable(const QString &table, const QList<ColumnInfo> &columns, const QList<IndexInfo> &indexes);
    void createIndex(const TableInfo &table, const IndexInfo &index);
    // Makes the table anew with these columns, its rows and indexes kept: SQL has no statement for what is
    // asked.
    void rebuild(const TableInfo &table, const QList<ColumnInfo> &columns);

    std::shared_ptr<Session> session;
    std::shared_ptr<Attachment> attachment;
    std::shared_ptr<DatabaseCatalog> catalog;
    QString name;
    bool readOnly;
    bool open = true;
    int affected = 0;
};

template <typename Work>
auto Database::Private::withCurrentNames(Work work) const
{
    try {
        return work();
    } catch (const Error &error) {
        // What was on its way when the connection was lost may have been done.
        if (error.number() == ConnectionLost || !catalog->isOutdated())
            throw;
    }
    catalog->invalidate();
    return work();
}

} // namespace dao
