// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Connection.h"
#include "dao/postgres/PostgresChannel.h"
#include "dao/postgres/PostgresCommit.h"

#include <functional>

namespace dao {

// The connection to a server's database as the data engine uses it.
class PostgresConnection final : public Connection {
public:
    explicit PostgresConnection(std::unique_ptr<PostgresChannel> channel);

    PostgresChannel &channel() { return *m_channel; }

    std::unique_ptr<NativeCursor> select(const QString &sql, const QVariantList &values) override;
    std::unique_ptr<NativeCursor> selectFirst(int rows, const QString &sql,
                                              const QVariantList &values) override;
    std::unique_ptr<NativeCursor> stream(const QString &sql) override;
    int execute(const QString &sql, const QVariantList &values) override;
    qint64 insertRow(const QString &sql, const QVariantList &values, const QString &autoNumber) override;
    std::unique_ptr<NativeInsert> openInsert(const QString &nativeTable,
                                             const QList<ColumnInfo> &columns) override;
    void begin() override;
    void beginReading() override;
    void commit() override;
    void control(const QString &sql) override;
    bool inTransaction() const override;
    Error goneTransaction() const override;

private:
    // Does `write` in the transaction that is open, or in one of its own, so that its commit can be told from
    // one that was not done.
    void write(const std::function<void()> &write);

    std::unique_ptr<PostgresChannel> m_channel;
    PostgresCommit m_commit;
    bool m_isWriting = false; // the open transaction may write
};

} // namespace dao
