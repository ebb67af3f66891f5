// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFile>
#include <QStringList>
#include <gtest/gtest.h>

namespace clivara {

// The statements that make an empty database of a practice ("clinical"), from the program's schema files.
inline QStringList schemaStatements(const QString &database)
{
    QFile file(QStringLiteral(SCHEMA_FOLDER "/0001_") + database + QStringLiteral(".sql"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(file.fileName());
    QString sql;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (!line.startsWith("--"))
            sql += QString::fromUtf8(line) + u'\n';
    }
    QStringList statements;
    for (const QString &statement : sql.split(";\n")) {
        if (!statement.trimmed().isEmpty())
            statements.append(statement.trimmed());
    }
    return statements;
}

} // namespace clivara
