// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteInsert.h"

#include "values/JetValues.h"

#include <sqlite3.h>

namespace dao {

SqliteInsert::SqliteInsert(const Storage &storage, sqlite3 *connection, const QString &sql,
                           const QList<ColumnInfo> &columns)
    : m_statement(storage, connection, sql)
    , m_columns(columns)
    , m_texts(size_t(columns.size()))
{
}

int SqliteInsert::bind(int column, const QVariant &value)
{
    sqlite3_stmt *statement = m_statement.get();
    const int position = column + 1;
    if (!value.isValid() || value.isNull())
        return sqlite3_bind_null(statement, position);
    QByteArray &bytes = m_texts[size_t(column)];
    switch (m_columns[column].type) {
    case FieldType::Boolean:
        return sqlite3_bind_int(statement, position, value.toBool() ? -1 : 0);
    case FieldType::Byte:
    case FieldType::Integer:
    case FieldType::Long:
    case FieldType::AutoNumber:
        return sqlite3_bind_int(statement, position, value.toInt());
    case FieldType::Currency:
    case FieldType::Single:
    case FieldType::Double:
        return sqlite3_bind_double(statement, position, value.toDouble());
    case FieldType::Binary:
        bytes = value.toByteArray();
        // Without an address SQLite would store Null.
        return sqlite3_bind_blob64(statement, position, bytes.isNull() ? "" : bytes.constData(),
                                   sqlite3_uint64(bytes.size()), SQLITE_STATIC);
    case FieldType::Date:
        bytes = clivara::jet::storedDate(value.toDateTime()).toLatin1();
        break;
    default:
        // In UTF-8: SQLite would drop a first U+FEFF of a text in UTF-16.
        bytes = value.toString().toUtf8();
    }
    return sqlite3_bind_text64(statement, position, bytes.isNull() ? "" : bytes.constData(),
                               sqlite3_uint64(bytes.size()), SQLITE_STATIC, SQLITE_UTF8);
}

void SqliteInsert::add(const QVariantList &values)
{
    m_statement.reset();
    for (int i = 0; i < values.size(); ++i) {
        if (bind(i, values[i]) != SQLITE_OK)
            m_statement.fail();
    }
    m_statement.step();
    m_statement.reset();
}

} // namespace dao
