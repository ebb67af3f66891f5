// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QString>

namespace dao {

// One statement and the file that it stands in.
struct PostgresDefinition {
    QString file;
    QString sql;
};

// What the server is given once for each practice, in the schema "jet": the type of texts without regard to
// case, a domain for each of the language's field types, and the language's functions. The statements can be
// given again. A function that does not accept its arguments fails with the message "JET:<number>:<text>".
QList<PostgresDefinition> postgresDefinitions();

// Raised with every change of the definitions; kept in the practice.
constexpr int postgresDefinitionsVersion = 2;

} // namespace dao
