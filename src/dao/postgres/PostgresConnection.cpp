// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresConnection.h"

#include "dao/native/Storage.h"

#include <QSqlDriver>
#include <QSqlError>
#include <cstdlib>
#include <libpq-fe.h>

namespace dao {
namespace {

// The numbers by which the server names its own types.
enum ServerType : Oid {
    BoolType = 16,
    ByteaType = 17,
    BigintType = 20,
    SmallintType = 21,
    IntegerType = 23,
    RealType = 700,
    DoubleType = 701,
    NumericType = 1700,
};

// Inside a transaction the state before the next statement is always kept, so that a statement that fails is undone
// alone: the server itself would give up the whole transaction.
const QByteArray keepState = QByteArrayLiteral("; SAVEPOINT statement");
const QByteArray keepNewState = QByteArrayLiteral("; RELEASE statement; SAVEPOINT statement");
const QByteArray returnToState = QByteArrayLiteral("ROLLBACK TO statement");

Error errorOf(const Storage &storage, const PGconn *connection, const PGresult *failed, const QString &shown)
{
    const char *message = failed ? PQresultErrorField(failed, PG_DIAG_MESSAGE_PRIMARY) : nullptr;
    const char *state = failed ? PQresultErrorField(failed, PG_DIAG_SQLSTATE) : nullptr;
    const char *constraint = failed ? PQresultErrorField(failed, PG_DIAG_CONSTRAINT_NAME) : nullptr;
    const QString text = QString::fromUtf8(message != nullptr ? message : PQerrorMessage(connection));
    return storage.error(QSqlError(QString::fromUtf8(constraint), text.trimmed(), QSqlError::StatementError,
                                   QString::fromLatin1(state)),
                         shown);
}

} // namespace

Error connectionLost(const QString &sql)
{
    return Error(ConnectionLost, QStringLiteral("Il collegamento con il server dei database si è interrotto"),
                 sql);
}

void ClearPostgresResult::operator()(PGresult *result) const
{
    PQclear(result);
}

PostgresConnection::PostgresConnection(const Storage &storage, const QSqlDatabase &connection)
    : m_storage(storage)
    , m_connection(*static_cast<PGconn *const *>(connection.driver()->handle().constData()))
    , m_wire(PostgresWire::of(connection))
{
}

bool PostgresConnection::inTransaction() const
{
    return m_wire.isInTransaction();
}

void PostgresConnection::beginLongWork(PostgresWire::LongWork work)
{
    const QString scope = work == PostgresWire::LongWork::Transaction ? QStringLiteral("LOCAL") : QString();
    const QString sql = QStringLiteral("SET %1 statement_timeout = 0; "
                                       "SET %1 idle_in_transaction_session_timeout = 0")
                            .arg(scope);
    run(sql);
    m_wire.setLongWork(work);
}

void PostgresConnection::endLongWork()
{
    run(QString::fromUtf8(m_wire.greeting()));
    m_wire.setLongWork(PostgresWire::LongWork::None);
}

int PostgresConnection::affected(const PGresult *result)
{
    return std::atoi(PQcmdTuples(const_cast<PGresult *>(result)));
}

QByteArray PostgresConnection::literal(const QVariant &value) const
{
    if (!value.isValid() || value.isNull())
        return QByteArrayLiteral("NULL");
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? QByteArrayLiteral("true") : QByteArrayLiteral("false");
    case QMetaType::Int:
    case QMetaType::LongLong:
        return value.toLongLong() < 0 ? '(' + QByteArray::number(value.toLongLong()) + ')'
                                      : QByteArray::number(value.toLongLong());
    case QMetaType::Double:
        return "'" + QByteArray::number(value.toDouble(), 'g', QLocale::FloatingPointShortest) + "'::float8";
    case QMetaType::QByteArray:
        return "'\\x" + value.toByteArray().toHex() + "'::bytea";
    default: {
        const QByteArray text = value.toString().toUtf8();
        if (text.contains('\0'))
            throw Error(ConversionError,
                        QStringLiteral("Il testo contiene un carattere nullo, che il server non accetta"));
        QByteArray quoted;
        quoted.reserve(text.size() + 2);
        quoted += '\'';
        for (const char c : text) {
            if (c == '\'')
                quoted += '\'';
            quoted += c;
        }
        return quoted + '\'';
    }
    }
}

QByteArray PostgresConnection::withValues(const QString &sql, const QVariantList &values) const
{
    const QByteArray text = sql.toUtf8();
    if (values.isEmpty())
        return text;
    QByteArray result;
    result.reserve(text.size() + values.size() * 16);
    qsizetype next = 0;
    char quote = 0;
    for (const char c : text) {
        if (quote != 0)
            quote = c == quote ? 0 : quote;
        else if (c == '\'' || c == '"')
            quote = c;
        if (c == '?' && quote == 0)
            result += literal(values.value(next++));
        else
            result += c;
    }
    return result;
}

void PostgresConnection::requireConnection(const QString &sql)
{
    if (m_wire.isOpen())
        return;
    if (!m_wire.open())
        throw connectionLost(sql);
    try {
        send(m_wire.greeting(), sql);
    } catch (const Error &) {
        m_wire.giveUp(); // it is not to be used without
        throw;
    }
}

PostgresResult PostgresConnection::send(const QByteArray &sql, const QString &shown)
{
    m_wire.send(sql);
    return results(shown);
}

// That a connection is gone is often found out only by using it. What has certainly changed nothing is sent again over
// a new one, so that nobody hears of a server that is back already.
PostgresResult PostgresConnection::sendOutside(const QByteArray &sql, const QString &shown)
{
    requireConnection(shown);
    try {
        return send(sql, shown);
    } catch (const Error &error) {
        const bool changesNothing = sql.startsWith("SELECT ") || sql.startsWith("BEGIN");
        // Whoever has waited for a silent server is not made to wait for it a second time.
        if (error.number() != ConnectionLost || !changesNothing || m_wire.wasSilent())
            throw;
    }
    requireConnection(shown);
    return send(sql, shown);
}

// Waits for what the server answers to what was sent.
PostgresResult PostgresConnection::results(const QString &shown)
{
    PostgresResult useful;
    PostgresResult failed;
    while (PGresult *result = m_wire.result()) {
        PostgresResult owned(result);
        const ExecStatusType status = PQresultStatus(result);
        if (status == PGRES_COPY_IN) {
            if (!m_wire.isOpen())
                break;
            return owned; // the rows are to come
        }
        if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK && status != PGRES_EMPTY_QUERY)
            failed = std::move(owned);
        else if (!useful || status == PGRES_TUPLES_OK || *PQcmdTuples(result) != '\0')
            useful = std::move(owned);
    }
    if (!m_wire.isOpen())
        throw connectionLost(shown);
    if (!failed && useful)
        return useful;
    throw errorOf(m_storage, m_connection, failed.get(), shown);
}

PostgresResult PostgresConnection::run(const QString &sql, const QVariantList &values)
{
    const QByteArray text = withValues(sql, values);
    if (!inTransaction())
        return sendOutside(text, sql);
    try {
        return send(text + keepNewState, sql);
    } catch (const Error &) {
        if (PQtransactionStatus(m_connection) == PQTRANS_INERROR)
            send(returnToState, sql);
        throw;
    }
}

void PostgresConnection::copyIn(const QString &sql, const QByteArray &rows)
{
    const bool inside = inTransaction();
    if (!inside)
        requireConnection(sql);
    try {
        send(sql.toUtf8(), sql);
        m_wire.sendCopy(rows);
        results(sql);
        if (inside)
            send(keepNewState, sql);
    } catch (const Error &) {
        if (PQtransactionStatus(m_connection) == PQTRANS_INERROR)
            send(returnToState, sql);
        throw;
    }
}

int PostgresConnection::serverVersion(const QSqlDatabase &connection)
{
    return PQserverVersion(*static_cast<PGconn *const *>(connection.driver()->handle().constData()));
}

void PostgresConnection::control(const QString &sql)
{
    const bool opens = sql.startsWith(u"BEGIN") || sql.startsWith(u"SAVEPOINT ");
    const QByteArray text = sql.toUtf8()
                            + (opens                         ? keepState
                               : sql.startsWith(u"RELEASE ") ? keepNewState
                                                             : QByteArray());
    const PostgresResult result = inTransaction() ? send(text, sql) : sendOutside(text, sql);
    // A transaction that cannot be committed any more is rolled back without an error.
    if (sql == u"COMMIT" && qstrcmp(PQcmdStatus(result.get()), "COMMIT") != 0)
        throw Error(TransactionError,
                    QStringLiteral("La transazione è stata annullata da un errore precedente"));
}

void PostgresConnection::commit(const QString &mark)
{
    if (PQtransactionStatus(m_connection) == PQTRANS_INTRANS) {
        try {
            send(mark.toLatin1() + "; COMMIT", mark);
            return;
        } catch (const Error &) {
            if (PQtransactionStatus(m_connection) != PQTRANS_INERROR)
                throw; // not the mark: the commit was refused, or the connection is gone
            send(returnToState, mark);
        }
    }
    control(QStringLiteral("COMMIT"));
}

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

struct PostgresStream::Private {
    const Storage &storage;
    PGconn *connection;
    PostgresWire &wire;
    QString sql;
    bool isOver = false;
};

PostgresStream::PostgresStream(const Storage &storage, const QSqlDatabase &connection, const QString &sql)
    : d(new Private{storage, *static_cast<PGconn *const *>(connection.driver()->handle().constData()),
                    PostgresWire::of(connection), sql})
{
    d->wire.send(sql.toUtf8());
    PQsetSingleRowMode(d->connection);
}

PostgresStream::~PostgresStream()
{
    if (d->isOver)
        return;
    // What is left is of no use to anybody.
    if (PGcancel *cancel = d->wire.isOpen() ? PQgetCancel(d->connection) : nullptr) {
        char reason[256];
        PQcancel(cancel, reason, int(sizeof reason));
        PQfreeCancel(cancel);
    }
    while (PGresult *result = d->wire.result())
        PQclear(result);
}

bool PostgresStream::next()
{
    m_row.reset();
    while (!d->isOver) {
        PostgresResult result(d->wire.result());
        if (!result) {
            d->isOver = true;
            if (!d->wire.isOpen())
                throw connectionLost(d->sql);
            break;
        }
        const ExecStatusType status = PQresultStatus(result.get());
        if (status == PGRES_SINGLE_TUPLE) {
            m_row = std::make_unique<PostgresCursor>(std::move(result));
            return m_row->next();
        }
        if (status != PGRES_TUPLES_OK)
            throw errorOf(d->storage, d->connection, result.get(), d->sql);
    }
    return false;
}

} // namespace dao
