// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresStorage.h"

#include "dao/native/FunctionErrors.h"
#include "dao/postgres/PostgresFirstRows.h"
#include "dao/postgres/PostgresSql.h"

#include <QSqlError>

namespace dao {
namespace {

// A lock of the whole practice, by a number that nothing else uses there, which each transaction holds.
const QString writeLock = QStringLiteral("pg_advisory_xact_lock(1869769079, 1)");

} // namespace

QString PostgresStorage::driverName() const
{
    return QStringLiteral("QPSQL");
}

int PostgresStorage::execute(QSqlDatabase &connection, const QString &sql, const QVariantList &values) const
{
    int affected = 0;
    write(connection, [&] {
        affected = PostgresConnection::affected(runPostgres(*this, connection, sql, values).get());
    });
    return affected;
}

qint64 PostgresStorage::insertRow(QSqlDatabase &connection, const QString &sql, const QVariantList &values,
                                  const QString &autoNumber) const
{
    if (autoNumber.isEmpty()) {
        execute(connection, sql, values);
        return 0;
    }
    qint64 number = 0;
    write(connection, [&] {
        PostgresCursor row(runPostgres(*this, connection,
                                       sql + QStringLiteral(" RETURNING ") + quotedName(autoNumber), values));
        number = row.next() ? row.value(0).toLongLong() : 0;
    });
    return number;
}

void PostgresStorage::write(QSqlDatabase &connection, const std::function<void()> &write) const
{
    PostgresConnection native(*this, connection);
    if (native.inTransaction()) {
        write();
        return;
    }
    try {
        native.control(QStringLiteral("BEGIN; SELECT ") + m_commit.lock());
        write();
        m_commit.commit(native);
    } catch (const Error &) {
        if (native.inTransaction())
            native.control(QStringLiteral("ROLLBACK"));
        throw;
    }
}

void PostgresStorage::begin(QSqlDatabase &connection) const
{
    // Takes the practice's write lock at once: a number that is the highest plus one stays the next one until
    // the transaction has written it.
    PostgresConnection native(*this, connection);
    try {
        native.control(QStringLiteral("BEGIN; SELECT %1, %2").arg(writeLock, m_commit.lock()));
        m_writing = true;
    } catch (const Error &) {
        if (native.inTransaction())
            native.control(QStringLiteral("ROLLBACK"));
        throw;
    }
}

void PostgresStorage::beginReading(QSqlDatabase &connection) const
{
    m_writing = false;
    PostgresConnection native(*this, connection);
    native.control(QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"));
    native.beginLongWork(PostgresWire::LongWork::Transaction);
}

void PostgresStorage::control(QSqlDatabase &connection, const QString &sql) const
{
    PostgresConnection native(*this, connection);
    if (sql == u"COMMIT" && std::exchange(m_writing, false))
        m_commit.commit(native);
    else
        native.control(sql);
}

bool PostgresStorage::inTransaction(QSqlDatabase &connection) const
{
    return PostgresConnection(*this, connection).inTransaction();
}

Error PostgresStorage::goneTransaction() const
{
    // A statement that fails is undone alone: only the end of the connection takes the transaction with it.
    return Error(TransactionLost, connectionLost().text());
}

std::unique_ptr<NativeCursor> PostgresStorage::openCursor(QSqlDatabase &connection, const QString &sql,
                                                          const QVariantList &values) const
{
    return std::make_unique<PostgresCursor>(runPostgres(*this, connection, sql, values));
}

std::unique_ptr<NativeCursor> PostgresStorage::openFirstRows(QSqlDatabase &connection, const QString &sql,
                                                             const QVariantList &values, int rows) const
{
    return std::make_unique<PostgresFirstRows>(*this, connection, sql, values, rows);
}

int PostgresStorage::errorNumber(const QSqlError &error) const
{
    if (const auto function = functionError(error.databaseText()))
        return function->first;
    const QString state = error.nativeErrorCode();
    static const std::pair<QLatin1String, int> numbers[] = {
        {QLatin1String("23505"), DuplicateKey},     {QLatin1String("23502"), FieldRequired},
        {QLatin1String("55P03"), Locked},           {QLatin1String("40P01"), Locked},
        {QLatin1String("40001"), Locked},           {QLatin1String("57014"), Locked},
        {QLatin1String("25006"), ReadOnly},         {QLatin1String("42501"), NoPermission},
        {QLatin1String("22003"), Overflow},         {QLatin1String("22012"), DivisionByZero},
        {QLatin1String("42P01"), ObjectNotFound},   {QLatin1String("3F000"), ObjectNotFound},
        {QLatin1String("42703"), TooFewParameters}, {QLatin1String("42P07"), TableExists},
        {QLatin1String("54000"), RecordTooLarge},   {QLatin1String("53100"), DiskFull},
        {QLatin1String("58030"), DiskError},        {QLatin1String("XX001"), Corrupt},
        {QLatin1String("XX002"), Corrupt},
    };
    for (const auto &[code, number] : numbers) {
        if (state == code)
            return number;
    }
    if (state.startsWith(QLatin1String("08")) || state.startsWith(QLatin1String("57P")))
        return ConnectionLost;
    return Failed;
}

QString PostgresStorage::errorText(const QSqlError &error) const
{
    const auto function = functionError(error.databaseText());
    if (function)
        return function->second;
    // In whatever language the server speaks, the index that a value would be twice in is named at the end.
    const QString index = quotedName(error.driverText());
    const bool isNamed = error.databaseText().endsWith(index);
    return error.nativeErrorCode() != u"23505" || isNamed ? error.databaseText()
                                                          : error.databaseText() + u' ' + index;
}

} // namespace dao
