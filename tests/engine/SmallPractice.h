// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "data/engine/Catalog.h"
#include "data/engine/SqlDialect.h"
#include "data/engine/Translator.h"

#include <QSqlDatabase>
#include <map>
#include <memory>

// A few tables of a practice in an SQLite database in memory, created with native SQL, and their catalog:
// what the translation needs, without the rest of the engine.
class SmallPractice : public dao::Catalog {
public:
    SmallPractice();
    ~SmallPractice() override;
    SmallPractice(const SmallPractice &) = delete;
    SmallPractice &operator=(const SmallPractice &) = delete;

    const dao::TableInfo *table(QStringView name) const override;

    dao::Translation translate(const QString &sql) const;
    // The visible fields of the result as text: fields separated by '|', rows by '\n'; Null is "Null", a
    // number as short as it reads back. Errors of the functions come as dao::Error.
    QString rows(const QString &sql) const;
    // The number of rows written.
    int execute(const QString &sql) const;
    // The one value of "SELECT <expression> FROM one" as rows() shows it.
    QString value(const QString &expression) const;
    // The lines of EXPLAIN QUERY PLAN.
    QString plan(const QString &sql) const;
    // The number of the error that the statement gives; 0 when it gives none. `text` gets the error's text.
    int errorNumber(const QString &sql, QString *text = nullptr) const;

    void nativeExec(const QString &sql) const;

private:
    QString run(const QString &native, int columns) const;

    QString m_connection;
    std::unique_ptr<dao::SqlDialect> m_dialect;
    std::map<QString, dao::TableInfo> m_tables; // by lower-case name
    std::unique_ptr<dao::Translator> m_translator;
};
