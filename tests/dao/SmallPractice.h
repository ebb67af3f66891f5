// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"
#include "dao/Translator.h"
#include "dao/native/Dialect.h"

#include <QTemporaryDir>
#include <map>
#include <memory>

// A few tables of a practice, created with native SQL in a database of the engine that the run is for, and
// their catalog: what the translation needs, without the rest of the data engine.
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
    // What the native function of that name makes of Nulls of these types, as rows() shows it.
    QString ofNulls(const QString &function, const QList<dao::FieldType> &types) const;
    // The lines of the native engine's plan.
    QString plan(const QString &sql) const;
    // The number of the error that the statement gives; 0 when it gives none. `text` gets the error's text.
    int errorNumber(const QString &sql, QString *text = nullptr) const;

    void nativeExec(const QString &sql) const;

private:
    const dao::Dialect &dialect() const;
    template <typename Work>
    auto natively(const QString &native, Work work) const;
    QString run(const QString &native, int columns) const;

    QTemporaryDir m_folder;
    dao::DBEngine m_engine;
    std::unique_ptr<dao::Workspace> m_workspace;
    std::shared_ptr<dao::Database> m_database;
    std::map<QString, dao::TableInfo> m_tables; // by lower-case name
    std::unique_ptr<dao::Translator> m_translator;
};
