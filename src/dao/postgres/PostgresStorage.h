// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Account.h"
#include "dao/native/Storage.h"
#include "dao/postgres/PostgresAddress.h"
#include "dao/postgres/PostgresConnection.h"
#include "dao/postgres/PostgresDialect.h"

#include <functional>

namespace dao {

// PostgreSQL 15: one connection to one database of a server, each database of the practice a schema in it.
class PostgresStorage final : public Storage {
public:
    // Connects to the database of that address, whatever its schema. Throws Error.
    PostgresStorage(const QString &address, const Account &account);

    StorageKind kind() const override { return StorageKind::Server; }
    const Dialect &dialect() const override { return m_dialect; }
    Connection &connection() const override { return m_connection; }

    QString sameName(const QString &name) const override;
    QString linkedName(const QString &name, const QString &holder) const override;
    QString nameOfLinked(const QString &linked, const QString &holder) const override;
    QString attach(const QString &name, const QString &proposed, bool readOnly) override;
    void detach(const QString &) override { }
    void createDatabase(const QString &name) override;

    QStringList tables(const QString &schema) const override;
    TableInfo describe(const QString &schema, const QString &table) const override;
    qint64 definitionVersion(const QString &schema) const override;
    const IndexInfo *brokenIndex(const Error &error, const TableInfo &table) const override;
    void setLastAutoNumber(const QString &schema, const QString &table, qint64 number) override;
    qint64 lastAutoNumber(const QString &schema, const TableInfo &table) const override;
    void beginLoad(const QString &schema) override;
    void endLoad(const QString &schema) override;

private:
    PostgresResult run(const QString &sql, const QVariantList &values = {}) const;
    // Does the work in a transaction of its own, wholly or not at all.
    void together(const std::function<void()> &work);
    void define();
    void renewDefinitions(const PostgresAddress &address);

    PostgresAddress m_address;
    PostgresDialect m_dialect;
    mutable PostgresConnection m_connection;
};

} // namespace dao
