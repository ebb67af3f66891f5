// SPDX-License-Identifier: Apache-2.0
#include "dao/sqlite/SqliteStatement.h"

#include "dao/sqlite/SqliteHandle.h"
#include "values/JetValues.h"

#include <QDateTime>
#include <sqlite3.h>

namespace dao {
namespace {

// A few kilobytes each; a form has about twenty.
constexpr int statementsKept = 200;

} // namespace

void SqliteStatement::Finalize::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

SqliteStatement::SqliteStatement(sqlite3 *connection, const QString &sql, unsigned flags)
    : m_connection(connection)
    , m_sql(sql)
{
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v3(connection, text.constData(), int(text.size()), flags, &statement, nullptr)
        != SQLITE_OK)
        fail();
    m_statement.reset(statement);
}

void SqliteStatement::fail() const
{
    throw sqliteError(m_connection, m_sql);
}

void SqliteStatement::bind(const QVariantList &values)
{
    m_texts.resize(size_t(values.size()));
    for (int i = 0; i < values.size(); ++i) {
        if (bind(i + 1, values[i]) != SQLITE_OK)
            fail();
    }
}

int SqliteStatement::bind(int position, const QVariant &value)
{
    sqlite3_stmt *statement = m_statement.get();
    QByteArray &bytes = m_texts[size_t(position - 1)];
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return sqlite3_bind_null(statement, position);
    case QMetaType::Bool:
        return sqlite3_bind_int(statement, position, value.toBool() ? -1 : 0);
    case QMetaType::Int:
    case QMetaType::LongLong:
        return sqlite3_bind_int64(statement, position, value.toLongLong());
    case QMetaType::Double:
        return sqlite3_bind_double(statement, position, value.toDouble());
    case QMetaType::QByteArray:
        bytes = value.toByteArray();
        // Without an address SQLite would store Null.
        return sqlite3_bind_blob64(statement, position, bytes.isNull() ? "" : bytes.constData(),
                                   sqlite3_uint64(bytes.size()), SQLITE_STATIC);
    case QMetaType::QDateTime:
        bytes = clivara::jet::storedDate(value.toDateTime()).toLatin1();
        break;
    default:
        // In UTF-8: SQLite would drop a first U+FEFF of a text in UTF-16.
        bytes = value.toString().toUtf8();
    }
    return sqlite3_bind_text64(statement, position, bytes.isNull() ? "" : bytes.constData(),
                               sqlite3_uint64(bytes.size()), SQLITE_STATIC, SQLITE_UTF8);
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

void SqliteStatement::run()
{
    while (step()) { }
}

void SqliteStatement::reset()
{
    sqlite3_reset(m_statement.get()); // repeats the last error, which has been thrown
    sqlite3_clear_bindings(m_statement.get());
}

QVariant SqliteStatement::value(int column) const
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

SqliteStatements::SqliteStatements(sqlite3 *connection)
    : m_connection(connection)
    , m_kept(statementsKept)
{
}

SqliteStatements::Lease SqliteStatements::take(const QString &sql)
{
    SqliteStatement *kept = m_kept.take(sql);
    return Lease(kept ? kept : new SqliteStatement(m_connection, sql, SQLITE_PREPARE_PERSISTENT), {this});
}

void SqliteStatements::GiveBack::operator()(SqliteStatement *statement) const
{
    statement->reset();
    to->m_kept.insert(statement->sql(), statement);
}

} // namespace dao
