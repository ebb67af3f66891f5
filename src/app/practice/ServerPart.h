// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/postgres/PostgresSchemas.h"

#include <QString>

namespace orvale {

// A practice in the making on a server: schemas beside those that they are to become, in the same database.
// They go away with this object unless they took their place, and with them the database if it was made for
// them; those that a killed program left behind are removed by the next one. Throws UserError and dao::Error.
class ServerPart {
public:
    // The practice's address, a password may stand in it. The server's database is made when it is not there;
    // a practice that is in it already is refused.
    explicit ServerPart(const QString &address);
    ~ServerPart();
    ServerPart(const ServerPart &) = delete;
    ServerPart &operator=(const ServerPart &) = delete;

    QString path() const; // of the practice in the making
    void place();

private:
    QStringList present(const QString &beginning) const;

    QString m_practice;
    dao::PostgresSchemas m_schemas;
    bool m_hadFunctions; // before this practice
    bool m_isPlaced = false;
};

} // namespace orvale
