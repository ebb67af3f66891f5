// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresCursor.h"

#include "dao/postgres/PostgresTypes.h"

#include <libpq-fe.h>

namespace dao {

PostgresCursor::PostgresCursor(PostgresResult result)
    : m_result(std::move(result))
    , m_rows(PQntuples(m_result.get()))
{
}

int PostgresCursor::columnCount() const
{
    return PQnfields(m_result.get());
}

QVariant PostgresCursor::value(int column) const
{
    const PGresult *result = m_result.get();
    if (PQgetisnull(result, m_row, column) == 1)
        return {};
    const char *text = PQgetvalue(result, m_row, column);
    const QByteArrayView bytes(text, PQgetlength(result, m_row, column));
    switch (PQftype(result, column)) {
    case BoolType:
        return *text == 't';
    case BigintType:
    case SmallintType:
    case IntegerType:
        return bytes.toLongLong();
    case RealType:
        return double(bytes.toFloat());
    case DoubleType:
    case NumericType:
        return bytes.toDouble();
    case ByteaType:
        return QByteArray::fromHex(bytes.sliced(2).toByteArray());
    default:
        break;
    }
    // Qt takes a first U+FEFF for a mark of the encoding and drops it; here it is a character.
    constexpr QByteArrayView mark("\xEF\xBB\xBF", 3);
    if (bytes.startsWith(mark))
        return QString(QChar(0xFEFF) + QString::fromUtf8(bytes.sliced(mark.size())));
    return QString::fromUtf8(bytes);
}

PostgresStream::PostgresStream(PostgresWire &wire, const QString &sql)
    : m_wire(wire)
    , m_sql(sql)
{
    m_wire.send(sql.toUtf8());
    PQsetSingleRowMode(m_wire.connection());
}

PostgresStream::~PostgresStream()
{
    if (m_isOver)
        return;
    // What is left is of no use to anybody.
    if (PGcancel *cancel = m_wire.isOpen() ? PQgetCancel(m_wire.connection()) : nullptr) {
        char reason[256];
        PQcancel(cancel, reason, int(sizeof reason));
        PQfreeCancel(cancel);
    }
    while (m_wire.result()) { }
    endSingleRows();
}

// libpq would read a pipeline that follows row by row, too; an ordinary statement ends that.
void PostgresStream::endSingleRows()
{
    if (!m_wire.isOpen())
        return;
    m_wire.send(QByteArray());
    while (m_wire.result()) { }
}

bool PostgresStream::next()
{
    m_row.reset();
    while (!m_isOver) {
        PostgresResult result = m_wire.result();
        if (!result) {
            m_isOver = true;
            if (!m_wire.isOpen())
                throw connectionLost(m_sql);
            endSingleRows();
            break;
        }
        const ExecStatusType status = PQresultStatus(result.get());
        if (status == PGRES_SINGLE_TUPLE) {
            m_row = std::make_unique<PostgresCursor>(std::move(result));
            return m_row->next();
        }
        if (status != PGRES_TUPLES_OK)
            throw postgresError(m_wire.connection(), result.get(), m_sql);
    }
    return false;
}

} // namespace dao
