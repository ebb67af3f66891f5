// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Error.h"

#include <QList>
#include <QString>
#include <memory>
#include <utility>

typedef struct pg_conn PGconn;
typedef struct pg_result PGresult;

namespace dao {

// What libpq hands out, owned.
struct FinishPostgres {
    void operator()(PGconn *connection) const;
};
using PostgresHandle = std::unique_ptr<PGconn, FinishPostgres>;
struct ClearPostgresResult {
    void operator()(PGresult *result) const;
};
using PostgresResult = std::unique_ptr<PGresult, ClearPostgresResult>;

// The options of a connection as libpq takes them: "host", "dbname", "password"... The last one of a name
// counts.
using PostgresOptions = QList<std::pair<QString, QString>>;

// Tries to connect; the handle says whether that succeeded.
PostgresHandle connectPostgres(const PostgresOptions &options);
// What PQping() says of the server, as a PGPing.
int pingPostgres(const PostgresOptions &options);

// The error of a result, or of the connection when there is none; `sql` is what it failed on.
Error postgresError(const PGconn *connection, const PGresult *failed, const QString &sql);

} // namespace dao
