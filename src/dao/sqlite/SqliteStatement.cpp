// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteStatement.h"

#include "dao/native/Storage.h"

#include <QSqlError>
#include <sqlite3.h>

namespace dao {

void SqliteStatement::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

SqliteStatement::SqliteStatement(const Storage &storage, sqlite3 *connection, const QString &sql)
    : m_storage(storage)
    , m_connection(connection)
    , m_sql(sql)
{
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(connection, text.constData(), int(text.size()), &statement, nullptr) != SQLITE_OK)
        fail();
    m_statement.reset(statement);
}

void SqliteStatement::fail() const
{
    throw m_storage.error(QSqlError(QString(), QString::fromUtf8(sqlite3_errmsg(m_connection)),
                                    QSqlError::StatementError,
                                    QString::number(sqlite3_extended_errcode(m_connection))),
                          m_sql);
}

bool SqliteStatement::step()
{
    switch (sqlite3_step(m_statement.get())) {
    case SQLITE_ROW:
        return true;
    case SQLITE_DONE:
        return false;
    default:
        fail();
    }
}

void SqliteStatement::reset()
{
    sqlite3_reset(m_statement.get()); // repeats the last error, which has been thrown
}

} // namespace dao
