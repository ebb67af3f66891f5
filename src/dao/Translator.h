// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Bound.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <functional>

namespace dao {

class Dialect;

struct Translation {
    StatementKind kind = StatementKind::Select;
    QString sql; // native SQL, "?" where a parameter stands; empty for definitions
    QList<sql::ParameterUse> parameters; // for each "?"
    QList<ResultColumn> columns; // SELECT: the visible fields, first in the native result, in order
    QList<RowSource> sources; // SELECT: the tables; hidden identity columns follow the visible ones
    const TableInfo *target = nullptr; // INSERT, UPDATE, DELETE: the table written
    Definition definition;
    // The SQL holds the time of the translation (date(), now()): it must not be kept for later.
    bool usesClock = false;
};

// Turns Jet SQL into the native SQL of a dialect. Knows the types of fields and expressions, so that texts,
// numbers, dates and Yes/No values compare and compute as Jet does them. Constants are computed here; what
// stays for the native engine can use its indexes. SQL that cannot be translated is an error that quotes the
// place.
class Translator {
public:
    // `now` gives the local time for date() and now().
    Translator(const Dialect &dialect, const Catalog &catalog, std::function<QDateTime()> now);

    // Throws Error: SyntaxError with the offending place, ObjectNotFound for an unknown table,
    // TooFewParameters for a name that is neither a field nor a parameter, ItemNotFound for a parameter that does not
    // stand in the SQL, AmbiguousField for a name that is both.
    Translation translate(const QString &jetSql, const sql::ParameterTypes &parameters = {}) const;

private:
    const Dialect &m_dialect;
    const Catalog &m_catalog;
    std::function<QDateTime()> m_now;
};

} // namespace dao
