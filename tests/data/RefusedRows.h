// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"
#include "dao/native/Connection.h"

// While it lives no row of the table can be added or changed. Only for databases in files.
class RefusedRows {
public:
    RefusedRows(dao::Database &database, const char *table)
        : m_database(database)
    {
        for (const char *event : {"INSERT", "UPDATE"})
            run(QStringLiteral(
                    "CREATE TRIGGER \"%1\".refuse_%2 BEFORE %2 ON %3 BEGIN SELECT RAISE(ABORT, 'no'); "
                    "END")
                    .arg(m_database.nativeSchema(), event, table));
    }
    ~RefusedRows()
    {
        for (const char *event : {"INSERT", "UPDATE"})
            run(QStringLiteral("DROP TRIGGER \"%1\".refuse_%2").arg(m_database.nativeSchema(), event));
    }
    RefusedRows(const RefusedRows &) = delete;
    RefusedRows &operator=(const RefusedRows &) = delete;

private:
    void run(const QString &sql) { m_database.nativeConnection().execute(sql); }
    dao::Database &m_database;
};
