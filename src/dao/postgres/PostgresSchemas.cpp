// SPDX-License-Identifier: Apache-2.0
#include "dao/postgres/PostgresSchemas.h"

#include "dao/postgres/PostgresCursor.h"
#include "dao/postgres/PostgresDialect.h"
#include "dao/postgres/PostgresOpening.h"

namespace dao {

namespace {

// The one that every server has, for what cannot be done from within a database.
const QString commonDatabase = QStringLiteral("postgres");

QString quotedName(const QString &name)
{
    return PostgresDialect().identifier(name);
}

} // namespace

struct PostgresSchemas::Private {
    PostgresAddress address;
    Account account;
    std::unique_ptr<PostgresChannel> channel;
    bool hasCreated = false;

    void open(const QString &database)
    {
        channel.reset(); // nobody may be left in a database that is to go
        channel = openPostgres(address, account, database);
    }
    PostgresResult run(const QString &sql) { return channel->run(sql); }
    void removeDatabase()
    {
        open(commonDatabase);
        run(QStringLiteral("DROP DATABASE ") + quotedName(address.database));
        channel.reset();
    }
    void runTogether(const QStringList &statements)
    {
        channel->beginLongWork(PostgresWire::LongWork::Session);
        run(QStringLiteral("BEGIN; ") + statements.join(QStringLiteral("; ")) + QStringLiteral("; COMMIT"));
    }
};

PostgresSchemas::PostgresSchemas(const QString &address, const Account &account, Missing missing)
    : d(std::make_unique<Private>())
{
    d->address = PostgresAddress::parse(address);
    d->account = account;
    try {
        d->open(d->address.database);
    } catch (const Error &error) {
        if (missing == Missing::Refused || error.sql() != missingDatabaseMark)
            throw;
        d->open(commonDatabase);
        d->run(QStringLiteral("CREATE DATABASE %1 TEMPLATE template0 ENCODING 'UTF8' LOCALE_PROVIDER icu "
                              "ICU_LOCALE 'und' LC_COLLATE 'C' LC_CTYPE 'C.UTF-8'")
                   .arg(quotedName(d->address.database)));
        try {
            d->open(d->address.database);
        } catch (const Error &) {
            d->removeDatabase();
            throw;
        }
        d->hasCreated = true;
    }
}

PostgresSchemas::~PostgresSchemas() = default;

bool PostgresSchemas::hasCreated() const
{
    return d->hasCreated;
}

void PostgresSchemas::removeCreated()
{
    d->removeDatabase();
}

QStringList PostgresSchemas::names() const
{
    PostgresCursor rows(d->run(QStringLiteral("SELECT nspname FROM pg_namespace WHERE nspname !~ '^pg_' "
                                              "AND nspname NOT IN ('information_schema', 'public')")));
    QStringList names;
    while (rows.next())
        names.append(rows.value(0).toString());
    return names;
}

bool PostgresSchemas::isInUse() const
{
    PostgresCursor row(
        d->run(QStringLiteral("SELECT count(*) FROM pg_stat_activity WHERE datname = current_database() "
                              "AND application_name = 'orvale' AND pid <> pg_backend_pid()")));
    return row.next() && row.value(0).toInt() > 0;
}

void PostgresSchemas::remove(const QStringList &schemas)
{
    QStringList statements;
    for (const QString &schema : schemas)
        statements.append(QStringLiteral("DROP SCHEMA %1 CASCADE").arg(quotedName(schema)));
    if (!statements.isEmpty())
        d->runTogether(statements);
}

void PostgresSchemas::rename(const QList<std::pair<QString, QString>> &names)
{
    QStringList statements;
    for (const auto &[from, to] : names)
        statements.append(
            QStringLiteral("ALTER SCHEMA %1 RENAME TO %2").arg(quotedName(from), quotedName(to)));
    d->runTogether(statements);
}

} // namespace dao
