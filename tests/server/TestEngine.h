// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QString>

// The native engine that a run of the tests is for: files, or the server that with-postgres has started. The
// same tests hold for both.
namespace testengine {

inline QString server()
{
    return qEnvironmentVariable("CLIVARA_TEST_SERVER");
}

inline bool isServer()
{
    return !server().isEmpty();
}

// The name of the database for a file in a test's folder. On the server its schema is named after both.
inline QString databaseName(const QString &folder, const QString &file)
{
    if (!isServer())
        return QDir::toNativeSeparators(QDir(folder).filePath(file));
    return server() + QLatin1Char('#') + QFileInfo(folder).fileName() + QLatin1Char('_')
           + QFileInfo(file).completeBaseName();
}

} // namespace testengine
