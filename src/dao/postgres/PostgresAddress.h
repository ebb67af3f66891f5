// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QString>
#include <utility>

namespace dao {

// Where a database on a server is: "postgresql://[user[:password]@][host[:port]]/database[?option=value&...]
// [#schema]"; host, port, user and password may also stand among the options, the host as the folder of a
// socket. A practice is one such database, each of its databases a schema in it. What is left out (host,
// port, user, password) comes from the account that the host names or from the usual environment of the
// server's clients (PGHOST, PGUSER, PGPASSWORD, the password file).
struct PostgresAddress {
    QString user;
    QString password;
    QString host;
    int port = 0; // 0: not given
    QString database;
    QString schema; // empty when the address is that of a whole practice
    QList<std::pair<QString, QString>> options; // of the connection: sslmode, for example
    int answerTimeout = 10; // seconds that a statement may take; the option answer_timeout, at least 1

    // Throws Error (CannotFindFile) when it is none that can be used.
    static PostgresAddress parse(const QString &address);

    // The address without its password, which is never stored or shown.
    QString name() const;
    // The same without the schema: what tells one connection from another.
    QString server() const;
};

// True for a name that begins as the address of a server's database does, in any case.
bool isServerAddress(const QString &name);

} // namespace dao
