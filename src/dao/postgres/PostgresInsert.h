// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/NativeInsert.h"
#include "dao/postgres/PostgresChannel.h"
#include "dao/postgres/PostgresDialect.h"

namespace dao {

// Adds many rows by COPY; when the server refuses them they are given one by one, so that the one that cannot
// be written is known.
class PostgresInsert final : public NativeInsert {
public:
    PostgresInsert(PostgresChannel &channel, const QString &nativeTable, const QList<ColumnInfo> &columns);
    void add(const QVariantList &values) override;
    void addRows(const QList<QVariantList> &rows, const Refused &refused) override;

private:
    const PostgresDialect m_dialect;
    PostgresChannel &m_channel;
    QString m_insert, m_copy;
    QList<ColumnInfo> m_columns;
};

} // namespace dao
