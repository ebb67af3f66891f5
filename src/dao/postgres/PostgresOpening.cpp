// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresFailure.h"
#include "dao/postgres/PostgresFunctions.h"
#include "dao/postgres/PostgresSql.h"
#include "dao/postgres/PostgresStorage.h"
#include "jetsql/NameLookup.h"

#include <QSqlError>
#include <QUuid>

namespace dao {
namespace {

// A lock of the whole practice that everybody who has it open shares, by a number that nothing else uses there.
const QString useLock = QStringLiteral("1869769079, 2");

constexpr int lowestServer = 150000;

Error unsuitable(const QString &text)
{
    return Error(NotADatabase, text);
}

// Before anything is asked of a server that may not understand it.
void requireVersion(const QSqlDatabase &connection, const QString &name)
{
    const int version = PostgresConnection::serverVersion(connection);
    if (version >= lowestServer)
        return;
    // "9.6" and older have two numbers.
    const QString shown = version >= 100000
                              ? QString::number(version / 10000)
                              : QStringLiteral("%1.%2").arg(version / 10000).arg(version / 100 % 100);
    throw unsuitable(
        QStringLiteral("Il server del database '%1' è PostgreSQL %2: occorre la versione 15 o una "
                       "più recente")
            .arg(name, shown));
}

// Whether the database is such as a practice needs.
void requireSuitable(const Storage &storage, const QSqlDatabase &connection, const QString &name)
{
    PostgresCursor row(runPostgres(storage, connection,
                                   QStringLiteral("SELECT pg_encoding_to_char(encoding) = 'UTF8' AND "
                                                  "datlocprovider = 'i', "
                                                  "current_setting('transaction_read_only')::boolean "
                                                  "FROM pg_database WHERE datname = current_database()")));
    row.next();
    if (!row.value(0).toBool())
        throw unsuitable(
            QStringLiteral("Il database '%1' non ha la codifica UTF8 e le regole ICU che occorrono")
                .arg(name));
    if (row.value(1).toBool())
        throw Error(ReadOnly, QStringLiteral("Il server del database '%1' è di sola lettura").arg(name));
}

// A connection of its own that holds the lock which all others share.
class PostgresExclusiveUse final : public ExclusiveUse {
public:
    PostgresExclusiveUse(const Storage &storage, const QString &name)
        : m_connection(QUuid::createUuid().toString())
    {
        const PostgresAddress address = PostgresAddress::parse(name);
        QSqlDatabase connection = QSqlDatabase::addDatabase(storage.driverName(), m_connection);
        try {
            openPostgres(storage, connection, address, {}, address.database);
            PostgresCursor taken(runPostgres(storage, connection,
                                             QStringLiteral("SELECT pg_try_advisory_lock(%1)").arg(useLock)));
            if (!taken.next() || !taken.value(0).toBool())
                throw Error(
                    Locked,
                    QStringLiteral("Il database '%1' è in uso da un altro utente").arg(address.name()));
        } catch (const Error &) {
            connection = QSqlDatabase();
            QSqlDatabase::removeDatabase(m_connection);
            throw;
        }
    }
    ~PostgresExclusiveUse() override
    {
        QSqlDatabase::database(m_connection, false).close();
        QSqlDatabase::removeDatabase(m_connection);
    }
    void aboutToMove() override { }
    PostgresExclusiveUse(const PostgresExclusiveUse &) = delete;
    PostgresExclusiveUse &operator=(const PostgresExclusiveUse &) = delete;

private:
    QString m_connection;
};

// What the address, the account and the environment say, in this order; the environment is for the library to read.
PostgresOptions optionsOf(const PostgresAddress &address, const Account &account, const QString &database)
{
    PostgresOptions options{{QStringLiteral("connect_timeout"), QStringLiteral("3")},
                            {QStringLiteral("tcp_user_timeout"), QStringLiteral("10000")},
                            {QStringLiteral("keepalives_idle"), QStringLiteral("10")},
                            {QStringLiteral("keepalives_interval"), QStringLiteral("5")},
                            {QStringLiteral("application_name"), QStringLiteral("orvale")}};
    if (!qEnvironmentVariableIsSet("PGSSLMODE"))
        options.append({QStringLiteral("sslmode"), QStringLiteral("prefer")});
    options += address.options;
    const auto give = [&](const char *key, const QString &value) {
        if (!value.isEmpty())
            options.append({QString::fromLatin1(key), value});
    };
    give("host", address.host);
    give("port", address.port > 0 ? QString::number(address.port) : QString());
    give("dbname", database);
    const bool ownUser = !address.user.isEmpty();
    give("user", ownUser ? address.user : account.user);
    give("password", !address.password.isEmpty()                ? address.password
                     : !ownUser || address.user == account.user ? account.password
                                                                : QString());
    return options;
}

// What each new connection is told: how long it waits, and how it shows values.
QByteArray sessionSettings(int answerTimeout)
{
    // A lock is waited for as shortly as in a file: whoever wants to try longer does so where the user can see it.
    // Nothing that a person waits for may take longer than the retries of a save, and a workstation that hangs or has
    // gone in the middle of a transaction must not keep the others from working: the server looks for it, too.
    // To think of joins that merge costs a fifth of a laboratory query, and sorting texts for one more than hashing them.
    return QByteArrayLiteral("SET lock_timeout = '250ms'; SET statement_timeout = '")
           + QByteArray::number(answerTimeout)
           + QByteArrayLiteral(
               "s'; SET idle_in_transaction_session_timeout = '10s'; SET tcp_keepalives_idle = 10; "
               "SET tcp_keepalives_interval = 5; SET tcp_keepalives_count = 2; SET tcp_user_timeout = '10s'; "
               "SET extra_float_digits = 1; SET jit = off; SET enable_mergejoin = off; "
               "SET client_encoding = 'UTF8'; SET client_min_messages = warning; SET datestyle = 'ISO'; "
               "SET bytea_output = 'hex'; SET standard_conforming_strings = on; "
               "SET search_path = pg_catalog, jet, public");
}

// Of the text that the schema of the definitions is marked with; 0 when there is none.
int definitionsVersion(const QVariant &mark)
{
    return mark.toString().section(u' ', 1).toInt();
}

} // namespace

void openPostgres(const Storage &storage, QSqlDatabase &connection, const PostgresAddress &address,
                  const Account &account, const QString &database)
{
    const PostgresOptions options = optionsOf(address, account, database);
    // Qt's driver puts these into a text of its own, where the options are divided by semicolons.
    QStringList others;
    for (const auto &[key, value] : options) {
        if (key == u"host")
            connection.setHostName(value);
        else if (key == u"port")
            connection.setPort(value.toInt());
        else if (key == u"dbname")
            connection.setDatabaseName(value);
        else if (key == u"user")
            connection.setUserName(value);
        else if (key == u"password")
            connection.setPassword(value);
        else
            others.append(
                key + QStringLiteral("='")
                + QString(value).replace(u'\\', QStringLiteral("\\\\")).replace(u'\'', QStringLiteral("\\'"))
                + u'\'');
    }
    connection.setConnectOptions(others.join(u';'));
    const QByteArray host = address.host.isEmpty() ? qgetenv("PGHOST") : address.host.toUtf8();
    if (!isNameAnswered(host))
        throw Error(
            CannotFindFile,
            QStringLiteral("Impossibile aprire il database '%1': la rete non dice dove si trova il server")
                .arg(address.server()));
    if (!connection.open()) {
        const auto failure = PostgresFailure::find(options, connection.lastError().databaseText().trimmed());
        throw Error(
            CannotFindFile,
            QStringLiteral("Impossibile aprire il database '%1': %2").arg(address.server(), failure.text),
            failure.reason == PostgresFailure::Reason::NoSuchDatabase ? missingDatabaseMark : QString());
    }
    requireVersion(connection, address.server());
    PostgresWire &wire = PostgresWire::of(connection);
    wire.setStatementLimit(address.answerTimeout);
    wire.addToGreeting(sessionSettings(address.answerTimeout));
    runPostgres(storage, connection, QString::fromLatin1(wire.greeting()));
}

void PostgresStorage::openConnection(QSqlDatabase &connection, const QString &name,
                                     const Account &account) const
{
    const PostgresAddress address = PostgresAddress::parse(name);
    openPostgres(*this, connection, address, account, address.database);
    requireSuitable(*this, connection, address.server());
    // Somebody who has the practice for himself alone is waited for as shortly as for any lock.
    const QString share = QStringLiteral("SELECT pg_advisory_lock_shared(%1)").arg(useLock);
    runPostgres(*this, connection, share);
    PostgresWire::of(connection).addToGreeting("; " + share.toLatin1());
}

QString PostgresStorage::fullName(const QString &name) const
{
    return PostgresAddress::parse(name).name();
}

QString PostgresStorage::sameName(const QString &name) const
{
    return fullName(name);
}

QString PostgresStorage::attach(QSqlDatabase &connection, const QString &name, const QString &, bool) const
{
    const PostgresAddress address = PostgresAddress::parse(name);
    if (address.database != connection.databaseName() || address.host != connection.hostName())
        throw Error(CannotFindFile,
                    QStringLiteral("Il database '%1' non è quello aperto").arg(address.name()));
    PostgresCursor found(
        runPostgres(*this, connection,
                    QStringLiteral("SELECT obj_description(to_regnamespace('jet'), 'pg_namespace'), "
                                   "has_schema_privilege(oid, 'USAGE') "
                                   "FROM pg_namespace WHERE nspname = ?"),
                    {address.schema}));
    if (!found.next())
        throw Error(CannotFindFile,
                    QStringLiteral("Impossibile trovare il database '%1'").arg(address.name()));
    const int version = definitionsVersion(found.value(0));
    if (version > postgresDefinitionsVersion)
        throw Error(NotADatabase,
                    QStringLiteral("Il database '%1' è di una versione più recente del programma")
                        .arg(address.name()));
    if (!found.value(1).toBool())
        throw Error(NoPermission,
                    QStringLiteral("Manca il permesso di usare il database '%1'").arg(address.name()));
    if (version > 0 && version < postgresDefinitionsVersion)
        renewDefinitions(connection, address);
    return address.schema;
}

QString PostgresStorage::linkedName(const QString &name, const QString &holder) const
{
    // Workstations reach the same practice by several addresses, and it may be restored under another name.
    const PostgresAddress address = PostgresAddress::parse(name);
    return address.server() == PostgresAddress::parse(holder).server() ? u'#' + address.schema
                                                                       : address.name();
}

QString PostgresStorage::nameOfLinked(const QString &linked, const QString &holder) const
{
    if (!linked.startsWith(u'#'))
        return linked;
    PostgresAddress address = PostgresAddress::parse(holder);
    address.schema = linked.mid(1);
    return address.name();
}

void PostgresStorage::detach(QSqlDatabase &, const QString &) const { }

void PostgresStorage::define(const QSqlDatabase &connection) const
{
    for (const QString &statement : postgresDefinitions())
        runPostgres(*this, connection, statement);
}

// What an earlier version of the program has defined gives way to this one's. Programs that begin at once wait for one
// another; to define the same again does no harm.
void PostgresStorage::renewDefinitions(QSqlDatabase &connection, const PostgresAddress &address) const
{
    if (inTransaction(connection))
        return; // when the next database is opened
    begin(connection);
    try {
        define(connection);
        control(connection, QStringLiteral("COMMIT"));
    } catch (const Error &error) {
        if (inTransaction(connection))
            control(connection, QStringLiteral("ROLLBACK"));
        if (error.number() != NoPermission)
            throw;
        throw Error(NoPermission,
                    QStringLiteral("Il database '%1' è di una versione precedente del programma: "
                                   "deve aprirlo per primo il suo proprietario")
                        .arg(address.name()));
    }
}

void PostgresStorage::createDatabase(QSqlDatabase &connection, const QString &name) const
{
    const PostgresAddress address = PostgresAddress::parse(name);
    if (address.schema.isEmpty())
        throw Error(CannotFindFile, QStringLiteral("Manca il nome del database in '%1'").arg(address.name()));
    // Two programs that begin at once wait for one another.
    begin(connection);
    try {
        PostgresCursor found(
            runPostgres(*this, connection,
                        QStringLiteral("SELECT to_regnamespace(quote_ident(?)) IS NOT NULL, "
                                       "obj_description(to_regnamespace('jet'), 'pg_namespace')"),
                        {address.schema}));
        found.next();
        if (found.value(0).toBool())
            throw Error(TableExists, QStringLiteral("Il database '%1' esiste già").arg(address.name()));
        if (definitionsVersion(found.value(1)) < postgresDefinitionsVersion)
            define(connection);
        runPostgres(*this, connection, QStringLiteral("CREATE SCHEMA ") + quotedName(address.schema));
        control(connection, QStringLiteral("COMMIT"));
    } catch (const Error &) {
        if (inTransaction(connection))
            control(connection, QStringLiteral("ROLLBACK"));
        throw;
    }
}

std::unique_ptr<ExclusiveUse> PostgresStorage::useExclusively(const QString &name) const
{
    return std::make_unique<PostgresExclusiveUse>(*this, name);
}

} // namespace dao
