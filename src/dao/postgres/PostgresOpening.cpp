// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresOpening.h"

#include "dao/postgres/PostgresFailure.h"
#include "jetsql/NameLookup.h"

#include <libpq-fe.h>

namespace dao {
namespace {

constexpr int lowestServer = 150000;

// Before anything is asked of a server that may not understand it.
void requireVersion(const PGconn *connection, const QString &name)
{
    const int version = PQserverVersion(connection);
    if (version >= lowestServer)
        return;
    // "9.6" and older have two numbers.
    const QString shown = version >= 100000
                              ? QString::number(version / 10000)
                              : QStringLiteral("%1.%2").arg(version / 10000).arg(version / 100 % 100);
    throw Error(NotADatabase,
                QStringLiteral("Il server del database '%1' è PostgreSQL %2: occorre la versione 15 o una "
                               "più recente")
                    .arg(name, shown));
}

// What the address, the account and the environment say, in this order; the environment is for the library to
// read.
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
    // A lock is waited for as shortly as in a file: whoever wants to try longer does so where the user can
    // see it. Nothing that a person waits for may take longer than the retries of a save, and a workstation
    // that hangs or has gone in the middle of a transaction must not keep the others from working: the server
    // looks for it, too. To think of joins that merge costs a fifth of a laboratory query, and sorting texts
    // for one more than hashing them.
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

} // namespace

std::unique_ptr<PostgresChannel> openPostgres(const PostgresAddress &address, const Account &account,
                                              const QString &database)
{
    const PostgresOptions options = optionsOf(address, account, database);
    const QByteArray host = address.host.isEmpty() ? qgetenv("PGHOST") : address.host.toUtf8();
    if (!isNameAnswered(host))
        throw Error(
            CannotFindFile,
            QStringLiteral("Impossibile aprire il database '%1': la rete non dice dove si trova il server")
                .arg(address.server()));
    PostgresHandle connection = connectPostgres(options);
    if (PQstatus(connection.get()) != CONNECTION_OK) {
        const auto failure =
            PostgresFailure::find(options, QString::fromUtf8(PQerrorMessage(connection.get())).trimmed());
        throw Error(
            CannotFindFile,
            QStringLiteral("Impossibile aprire il database '%1': %2").arg(address.server(), failure.text),
            failure.reason == PostgresFailure::Reason::NoSuchDatabase ? missingDatabaseMark : QString());
    }
    requireVersion(connection.get(), address.server());
    auto channel = std::make_unique<PostgresChannel>(std::move(connection), address.answerTimeout);
    channel->wire().addToGreeting(sessionSettings(address.answerTimeout));
    channel->run(QString::fromLatin1(channel->wire().greeting()));
    return channel;
}

} // namespace dao
