// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/native/Account.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <memory>
#include <utility>

namespace dao {

// The schemas of a server's database, through a connection of its own: for hosts that make, replace and
// remove whole practices. Everything throws Error.
class PostgresSchemas {
public:
    enum class Missing { Refused, Created };

    // `address` is a practice's; a password may stand in it. With Missing::Created the server makes the
    // database when it does not have it.
    PostgresSchemas(const QString &address, const Account &account, Missing missing);
    ~PostgresSchemas();
    PostgresSchemas(const PostgresSchemas &) = delete;
    PostgresSchemas &operator=(const PostgresSchemas &) = delete;

    bool hasCreated() const; // the database
    QStringList names() const; // without the server's own; "jet" is the data engine's
    // Whether another program has the practice open.
    bool isInUse() const;
    // With all that is in them; all of them or none.
    void remove(const QStringList &schemas);
    // The whole database, when it was created here; nothing else can be done with this object afterwards.
    void removeCreated();
    // From the first to the second name; all of them or none.
    void rename(const QList<std::pair<QString, QString>> &names);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace dao
