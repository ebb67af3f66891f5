// SPDX-License-Identifier: Apache-2.0
#include "dao/Engines.h"

#include "dao/postgres/PostgresExclusiveUse.h"
#include "dao/postgres/PostgresStorage.h"
#include "dao/sqlite/SqliteExclusiveUse.h"
#include "dao/sqlite/SqliteStorage.h"

#include <QFileInfo>

namespace dao {

StorageKind storageKind(const QString &name)
{
    return isServerAddress(name) ? StorageKind::Server : StorageKind::Files;
}

QString fullName(const QString &name)
{
    return storageKind(name) == StorageKind::Server ? PostgresAddress::parse(name).name()
                                                    : QFileInfo(name).absoluteFilePath();
}

bool isSameDatabase(const QString &one, const QString &other)
{
    if (storageKind(other) == StorageKind::Server)
        return one.compare(other, Qt::CaseInsensitive) == 0;
    const QString file = QFileInfo(one).canonicalFilePath();
    return !file.isEmpty() && file == QFileInfo(other).canonicalFilePath();
}

std::unique_ptr<Storage> openStorage(const QString &name, const Account &account)
{
    if (storageKind(name) == StorageKind::Server)
        return std::make_unique<PostgresStorage>(name, account);
    return std::make_unique<SqliteStorage>();
}

std::unique_ptr<ExclusiveUse> useExclusively(const QString &name)
{
    if (storageKind(name) == StorageKind::Server)
        return std::make_unique<PostgresExclusiveUse>(name);
    return std::make_unique<SqliteExclusiveUse>(name);
}

} // namespace dao
