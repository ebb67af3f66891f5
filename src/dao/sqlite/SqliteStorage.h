// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Storage.h"
#include "dao/sqlite/SqliteConnection.h"
#include "dao/sqlite/SqliteDialect.h"
#include "dao/sqlite/SqliteFile.h"

#include <QHash>

class QFileInfo;

namespace dao {

// Files of SQLite 3.40: one connection, each database attached under its schema name.
class SqliteStorage final : public Storage {
public:
    StorageKind kind() const override { return StorageKind::Files; }
    const Dialect &dialect() const override { return m_dialect; }
    Connection &connection() const override { return m_connection; }

    QString sameName(const QString &name) const override;
    QString linkedName(const QString &name, const QString &holder) const override;
    QString nameOfLinked(const QString &linked, const QString &holder) const override;
    QString attach(const QString &name, const QString &proposed, bool readOnly) override;
    void detach(const QString &schema) override;
    void requireInPlace() const override;
    void createDatabase(const QString &name) override;
    QStringList damage(const QString &schema, Thoroughness thoroughness, int most) const override;

    QStringList tables(const QString &schema) const override;
    TableInfo describe(const QString &schema, const QString &table) const override;
    qint64 definitionVersion(const QString &schema) const override;
    const IndexInfo *brokenIndex(const Error &error, const TableInfo &table) const override;
    void setLastAutoNumber(const QString &schema, const QString &table, qint64 number) override;
    qint64 lastAutoNumber(const QString &schema, const TableInfo &table) const override;
    void beginLoad(const QString &schema) override;
    void endLoad(const QString &schema) override;

private:
    void set(const QString &schema, const char *setting);
    void attachFile(const QFileInfo &file, const QString &options, const QString &schema);
    QList<IndexInfo> indexesOf(const QString &schema, const QString &table) const;

    SqliteDialect m_dialect;
    mutable SqliteConnection m_connection;
    QHash<QString, SqliteFile> m_files; // attached and written to, by schema
};

} // namespace dao
