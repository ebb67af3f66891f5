// SPDX-License-Identifier: Apache-2.0
#include "data/engine/PostgresConnection.h"

#include "data/engine/SqlDialect.h"

#include <QSqlDriver>
#include <QSqlError>
#include <algorithm>
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

QString connectionLostText()
{
    return QStringLiteral("Il collegamento con il server dei database si è interrotto");
}

Error errorOf(const SqlDialect &dialect, const PGconn *connection, const PGresult *failed,
              const QString &shown)
{
    const char *message = failed ? PQresultErrorField(failed, PG_DIAG_MESSAGE_PRIMARY) : nullptr;
    const char *state = failed ? PQresultErrorField(failed, PG_DIAG_SQLSTATE) : nullptr;
    const char *constraint = failed ? PQresultErrorField(failed, PG_DIAG_CONSTRAINT_NAME) : nullptr;
    const QString text = QString::fromUtf8(message != nullptr ? message : PQerrorMessage(connection));
    return dialect.error(QSqlError(QString::fromUtf8(constraint), text.trimmed(), QSqlError::StatementError,
                                   QString::fromLatin1(state)),
                         shown);
}

} // namespace

void ClearPostgresResult::operator()(PGresult *result) const
{
    PQclear(result);
}

QString postgresSessionSettings()
{
    // A lock is waited for as shortly as in a file: whoever wants to try longer does so where the user can see it.
    // Nothing that a person waits for may take longer than the retries of a save, and a workstation that hangs in
    // the middle of a transaction must not keep the others from working.
    return QStringLiteral(
        "SET lock_timeout = '250ms'; SET statement_timeout = '10s'; "
        "SET idle_in_transaction_session_timeout = '60s'; SET extra_float_digits = 1; SET jit = off; "
        "SET client_min_messages = warning; SET datestyle = 'ISO'; "
        "SET bytea_output = 'hex'; SET standard_conforming_strings = on; "
        "SET search_path = pg_catalog, jet, public");
}

PostgresConnection::PostgresConnection(const SqlDialect &dialect, const QSqlDatabase &connection)
    : m_dialect(dialect)
    , m_connection(*static_cast<PGconn *const *>(connection.driver()->handle().constData()))
{
}

bool PostgresConnection::inTransaction() const
{
    const PGTransactionStatusType status = PQtransactionStatus(m_connection);
    return status == PQTRANS_INTRANS || status == PQTRANS_INERROR;
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
    if (PQstatus(m_connection) == CONNECTION_OK)
        return;
    PQreset(m_connection);
    if (PQstatus(m_connection) != CONNECTION_OK)
        throw Error(ConnectionLost, connectionLostText(), sql);
    PQsetClientEncoding(m_connection, "UTF8");
    send(postgresSessionSettings().toLatin1(), sql);
}

PostgresResult PostgresConnection::send(const QByteArray &sql, const QString &shown)
{
    PQsendQuery(m_connection, sql.constData());
    return results(shown);
}

// Waits for what the server answers to what was sent.
PostgresResult PostgresConnection::results(const QString &shown)
{
    PostgresResult useful;
    PostgresResult failed;
    while (PGresult *result = PQgetResult(m_connection)) {
        PostgresResult owned(result);
        const ExecStatusType status = PQresultStatus(result);
        if (status == PGRES_COPY_IN)
            return owned; // the rows are to come
        if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK && status != PGRES_EMPTY_QUERY)
            failed = std::move(owned);
        else if (!useful || status == PGRES_TUPLES_OK || *PQcmdTuples(result) != '\0')
            useful = std::move(owned);
    }
    if (PQstatus(m_connection) != CONNECTION_OK)
        throw Error(ConnectionLost, connectionLostText(), shown);
    if (!failed && useful)
        return useful;
    throw errorOf(m_dialect, m_connection, failed.get(), shown);
}

PostgresResult PostgresConnection::run(const QString &sql, const QVariantList &values)
{
    const QByteArray text = withValues(sql, values);
    if (!inTransaction()) {
        requireConnection(sql);
        return send(text, sql);
    }
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
        // The library takes no more than a whole number of bytes at once.
        constexpr qsizetype most = 1 << 20;
        for (qsizetype at = 0; at < rows.size(); at += most)
            PQputCopyData(m_connection, rows.constData() + at, int(std::min(most, rows.size() - at)));
        PQputCopyEnd(m_connection, nullptr);
        results(sql);
        if (inside)
            send(QByteArrayLiteral("RELEASE statement; SAVEPOINT statement"), sql);
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
    if (!inTransaction())
        requireConnection(sql);
    const bool opens = sql.startsWith(u"BEGIN") || sql.startsWith(u"SAVEPOINT ");
    const PostgresResult result = send(sql.toUtf8()
                                           + (opens                         ? keepState
                                              : sql.startsWith(u"RELEASE ") ? keepNewState
                                                                            : QByteArray()),
                                       sql);
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
    const SqlDialect &dialect;
    PGconn *connection;
    QString sql;
    bool isOver = false;
};

PostgresStream::PostgresStream(const SqlDialect &dialect, const QSqlDatabase &connection, const QString &sql)
    : d(new Private{dialect, *static_cast<PGconn *const *>(connection.driver()->handle().constData()), sql})
{
    PQsendQuery(d->connection, sql.toUtf8().constData());
    PQsetSingleRowMode(d->connection);
}

PostgresStream::~PostgresStream()
{
    if (d->isOver)
        return;
    // What is left is of no use to anybody.
    if (PGcancel *cancel = PQgetCancel(d->connection)) {
        char reason[256];
        PQcancel(cancel, reason, int(sizeof reason));
        PQfreeCancel(cancel);
    }
    while (PGresult *result = PQgetResult(d->connection))
        PQclear(result);
}

bool PostgresStream::next()
{
    m_row.reset();
    while (!d->isOver) {
        PostgresResult result(PQgetResult(d->connection));
        if (!result) {
            d->isOver = true;
            if (PQstatus(d->connection) != CONNECTION_OK)
                throw Error(ConnectionLost, connectionLostText(), d->sql);
            break;
        }
        const ExecStatusType status = PQresultStatus(result.get());
        if (status == PGRES_SINGLE_TUPLE) {
            m_row = std::make_unique<PostgresCursor>(std::move(result));
            return m_row->next();
        }
        if (status != PGRES_TUPLES_OK)
            throw errorOf(d->dialect, d->connection, result.get(), d->sql);
    }
    return false;
}

} // namespace dao
