// SPDX-License-Identifier: Apache-2.0
#include "data/engine/PostgresSchemas.h"

#include "data/engine/PostgresConnection.h"
#include "data/engine/PostgresDialect.h"

#include <QUuid>
#include <libpq-fe.h>

namespace dao {

struct PostgresSchemas::Private {
    PostgresDialect dialect;
    QString name = QUuid::createUuid().toString();
    QSqlDatabase connection;

    void open(const PostgresAddress &address, const QString &database)
    {
        connection = QSqlDatabase::addDatabase(dialect.driverName(), name);
        try {
            openPostgres(dialect, connection, address, {}, database);
        } catch (const Error &) {
            close();
            throw;
        }
    }
    void close()
    {
        connection.close();
        connection = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    }
    PostgresResult run(const QString &sql) { return PostgresConnection(dialect, connection).run(sql); }
    void runTogether(const QStringList &statements)
    {
        run(QStringLiteral("SET statement_timeout = 0"));
        run(QStringLiteral("BEGIN; ") + statements.join(QStringLiteral("; ")) + QStringLiteral("; COMMIT"));
    }
};

PostgresSchemas::PostgresSchemas(const QString &address, Missing missing)
    : d(std::make_unique<Private>())
{
    const PostgresAddress parsed = PostgresAddress::parse(address);
    try {
        d->open(parsed, parsed.database);
    } catch (const Error &error) {
        if (missing == Missing::Refused || error.sql() != missingDatabaseMark)
            throw;
        d->open(parsed, QStringLiteral("postgres"));
        d->run(QStringLiteral("CREATE DATABASE %1 TEMPLATE template0 ENCODING 'UTF8' LOCALE_PROVIDER icu "
                              "ICU_LOCALE 'und' LC_COLLATE 'C' LC_CTYPE 'C.UTF-8'")
                   .arg(d->dialect.identifier(parsed.database)));
        d->close();
        d->open(parsed, parsed.database);
    }
}

PostgresSchemas::~PostgresSchemas()
{
    d->close();
}

QStringList PostgresSchemas::names() const
{
    PostgresCursor rows(d->run(QStringLiteral("SELECT nspname FROM pg_namespace WHERE nspname !~ '^pg_' "
                                              "AND nspname NOT IN ('information_schema', 'public', 'jet')")));
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
        statements.append(QStringLiteral("DROP SCHEMA %1 CASCADE").arg(d->dialect.identifier(schema)));
    if (!statements.isEmpty())
        d->runTogether(statements);
}

void PostgresSchemas::rename(const QList<std::pair<QString, QString>> &names)
{
    QStringList statements;
    for (const auto &[from, to] : names)
        statements.append(QStringLiteral("ALTER SCHEMA %1 RENAME TO %2")
                              .arg(d->dialect.identifier(from), d->dialect.identifier(to)));
    d->runTogether(statements);
}

} // namespace dao
