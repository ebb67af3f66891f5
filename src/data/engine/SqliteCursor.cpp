// SPDX-License-Identifier: Apache-2.0
#include "data/engine/SqliteCursor.h"

#include "data/engine/SqlDialect.h"

#include <QSqlError>
#include <sqlite3.h>

namespace dao {

void SqliteCursor::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

SqliteCursor::SqliteCursor(const SqlDialect &dialect, sqlite3 *connection, const QString &sql)
    : m_dialect(dialect)
    , m_connection(connection)
    , m_sql(sql)
{
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(connection, text.constData(), int(text.size()), &statement, nullptr) != SQLITE_OK)
        fail();
    m_statement.reset(statement);
}

void SqliteCursor::fail() const
{
    throw m_dialect.error(QSqlError(QString(), QString::fromUtf8(sqlite3_errmsg(m_connection)),
                                    QSqlError::StatementError,
                                    QString::number(sqlite3_extended_errcode(m_connection))),
                          m_sql);
}

bool SqliteCursor::next()
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

QVariant SqliteCursor::value(int column) const
{
    sqlite3_stmt *statement = m_statement.get();
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return qlonglong(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
    case SQLITE_TEXT: {
        const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
        return QString::fromUtf8(text, sqlite3_column_bytes(statement, column));
    }
    case SQLITE_BLOB: {
        const auto *bytes = static_cast<const char *>(sqlite3_column_blob(statement, column));
        return QByteArray(bytes, sqlite3_column_bytes(statement, column));
    }
    default:
        return {};
    }
}

} // namespace dao
