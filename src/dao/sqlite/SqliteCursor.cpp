// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteCursor.h"

#include <sqlite3.h>

namespace dao {

SqliteCursor::SqliteCursor(const Storage &storage, sqlite3 *connection, const QString &sql)
    : m_statement(storage, connection, sql)
{
}

bool SqliteCursor::next()
{
    return m_statement.step();
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
        const int size = sqlite3_column_bytes(statement, column);
        // Qt takes a first U+FEFF for a mark of the encoding and drops it; here it is a character.
        constexpr QByteArrayView mark("\xEF\xBB\xBF", 3);
        if (QByteArrayView(text, size).startsWith(mark))
            return QString(QChar(0xFEFF) + QString::fromUtf8(text + mark.size(), size - int(mark.size())));
        return QString::fromUtf8(text, size);
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
