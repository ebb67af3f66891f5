// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresFailure.h"

#include <QByteArray>
#include <libpq-fe.h>
#include <memory>
#include <vector>

namespace dao {
namespace {

struct FinishConnection {
    void operator()(PGconn *connection) const { PQfinish(connection); }
};
using Connection = std::unique_ptr<PGconn, FinishConnection>;

// The options as two lists that end with a null, the last ones in the place of earlier ones of the same name.
class OptionLists {
public:
    explicit OptionLists(const PostgresOptions &options)
    {
        for (const auto &[key, value] : options) {
            m_texts.push_back(key.toUtf8());
            m_texts.push_back(value.toUtf8());
        }
        for (size_t i = 0; i < m_texts.size(); i += 2) {
            m_keys.push_back(m_texts[i].constData());
            m_values.push_back(m_texts[i + 1].constData());
        }
        m_keys.push_back(nullptr);
        m_values.push_back(nullptr);
    }
    const char *const *keys() const { return m_keys.data(); }
    const char *const *values() const { return m_values.data(); }

private:
    std::vector<QByteArray> m_texts;
    std::vector<const char *> m_keys, m_values;
};

Connection connectTo(const PostgresOptions &options)
{
    const OptionLists lists(options);
    return Connection(PQconnectdbParams(lists.keys(), lists.values(), 0));
}

bool isOpen(const Connection &connection)
{
    return PQstatus(connection.get()) == CONNECTION_OK;
}

// Whether the server's list has the database; the account may see the list even if it may not open the database.
bool hasDatabase(const Connection &connection, const QString &name)
{
    const QByteArray text = name.toUtf8();
    const char *values[] = {text.constData()};
    PGresult *result = PQexecParams(connection.get(), "SELECT 1 FROM pg_database WHERE datname = $1", 1,
                                    nullptr, values, nullptr, nullptr, 0);
    const bool found = PQresultStatus(result) == PGRES_TUPLES_OK && PQntuples(result) == 1;
    PQclear(result);
    return found;
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

PGPing ping(const PostgresOptions &options)
{
    const OptionLists lists(options);
    return PQpingParams(lists.keys(), lists.values(), 0);
}

} // namespace

PostgresFailure PostgresFailure::find(const PostgresOptions &options, const QString &answer)
{
    const QString modeKey = QStringLiteral("sslmode");
    switch (ping(options)) {
    case PQPING_NO_RESPONSE:
        // Nothing is told to a server whose certificate is not the one that was asked for.
        if (ping(options + PostgresOptions{{modeKey, QStringLiteral("disable")}}) != PQPING_NO_RESPONSE)
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

    // The database that every server has, with the same account. Where TLS may be left out the library tries without
    // it too, and forgets then that a password was refused.
    const QString mode = valueOf(options, modeKey, qEnvironmentVariable("PGSSLMODE"));
    const PostgresOptions common =
        options + PostgresOptions{{QStringLiteral("dbname"), QStringLiteral("postgres")}};
    QList<PostgresOptions> tries{common};
    if (mode == u"prefer" || mode == u"allow")
        tries.prepend(common + PostgresOptions{{modeKey, QStringLiteral("require")}});
    for (const PostgresOptions &each : std::as_const(tries)) {
        const Connection connection = connectTo(each);
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
