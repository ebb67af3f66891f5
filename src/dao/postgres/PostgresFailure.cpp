// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresFailure.h"

#include <QByteArray>
#include <libpq-fe.h>

namespace dao {
namespace {

bool isOpen(const PostgresHandle &connection)
{
    return PQstatus(connection.get()) == CONNECTION_OK;
}

// Whether the server's list has the database; the account may see the list even if it may not open the
// database.
bool hasDatabase(const PostgresHandle &connection, const QString &name)
{
    const QByteArray text = name.toUtf8();
    const char *values[] = {text.constData()};
    const PostgresResult result(PQexecParams(connection.get(), "SELECT 1 FROM pg_database WHERE datname = $1",
                                             1, nullptr, values, nullptr, nullptr, 0));
    return PQresultStatus(result.get()) == PGRES_TUPLES_OK && PQntuples(result.get()) == 1;
}

// The library tries several ways and addresses; what it says of the first one is what was meant.
QString firstLine(const QString &answer)
{
    return answer.trimmed().section(u'\n', 0, 0).simplified();
}

QString valueOf(const PostgresOptions &options, const QString &key, const QString &missing)
{
    QString found = missing;
    for (const auto &[name, value] : options) {
        if (name == key)
            found = value;
    }
    return found;
}

} // namespace

PostgresFailure PostgresFailure::find(const PostgresOptions &options, const QString &answer)
{
    const QString modeKey = QStringLiteral("sslmode");
    switch (pingPostgres(options)) {
    case PQPING_NO_RESPONSE:
        // Nothing is told to a server whose certificate is not the one that was asked for.
        if (pingPostgres(options + PostgresOptions{{modeKey, QStringLiteral("disable")}})
            != PQPING_NO_RESPONSE)
            return {Reason::Other, QStringLiteral("il collegamento cifrato con il server non riesce (%1)")
                                       .arg(firstLine(answer))};
        return {Reason::NoAnswer, QStringLiteral("a questo indirizzo non risponde nessun server")};
    case PQPING_REJECT:
        return {Reason::NoAnswer, QStringLiteral("il server si sta avviando o fermando: riprovare fra poco")};
    case PQPING_NO_ATTEMPT:
        return {Reason::Other,
                QStringLiteral("l'indirizzo ha un'opzione sbagliata (%1)").arg(firstLine(answer))};
    case PQPING_OK:
        break;
    }

    // The database that every server has, with the same account. Where TLS may be left out the library tries
    // without it too, and forgets then that a password was refused.
    const QString mode = valueOf(options, modeKey, qEnvironmentVariable("PGSSLMODE"));
    const PostgresOptions common =
        options + PostgresOptions{{QStringLiteral("dbname"), QStringLiteral("postgres")}};
    QList<PostgresOptions> tries{common};
    if (mode == u"prefer" || mode == u"allow")
        tries.prepend(common + PostgresOptions{{modeKey, QStringLiteral("require")}});
    for (const PostgresOptions &each : std::as_const(tries)) {
        const PostgresHandle connection = connectPostgres(each);
        if (isOpen(connection)) {
            if (!hasDatabase(connection, valueOf(options, QStringLiteral("dbname"), {})))
                return {Reason::NoSuchDatabase, QStringLiteral("il server non ha questo database")};
            return {Reason::NoRight,
                    QStringLiteral("il server non permette a questo utente di aprire il database (%1)")
                        .arg(firstLine(answer))};
        }
        if (PQconnectionNeedsPassword(connection.get()) == 1)
            return {Reason::WrongAccount, QStringLiteral("manca la password")};
        if (PQconnectionUsedPassword(connection.get()) == 1)
            return {Reason::WrongAccount,
                    QStringLiteral("il nome o la password non sono quelli di un utente del server")};
    }
    return {Reason::Other, QStringLiteral("il server rifiuta il collegamento (%1)").arg(firstLine(answer))};
}

} // namespace dao
