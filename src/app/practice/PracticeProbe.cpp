// SPDX-License-Identifier: Apache-2.0
#include "app/practice/PracticeProbe.h"

#include "app/practice/NetworkShare.h"
#include "app/practice/Schema.h"
#include "app/practice/UserError.h"
#include "dao/sqlite/DatabaseFile.h"
#include "dao/sqlite/SqliteHandle.h"
#include "dao/sqlite/SqliteStatement.h"
#include "jetsql/Error.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QtEndian>
#include <utility>

namespace orvale {

namespace {

UserError notAPractice(const QString &path)
{
    return UserError(QStringLiteral("%1 non è un archivio di Orvale.").arg(path));
}

UserError damaged(const QString &path)
{
    return UserError(QStringLiteral("Il file %1 è danneggiato.").arg(path));
}

// Pages that stand in the journal only (another workstation has the practice open, or lost its power) are no
// damage, but the file alone does not tell what the practice holds.
bool hasJournal(const QString &path)
{
    return QFileInfo(path + QStringLiteral("-wal")).size() > 0;
}

// The file's header, as SQLite's file format lays it down: magic text, page size at 16 (1 stands for 65536),
// change counter at 24, pages at 28, the counter that the pages were counted at, at 92.
void probeHeader(const QString &path)
{
    QByteArray header;
    try {
        header = dao::firstBytes(path, 100);
    } catch (const dao::Error &) {
        throw UserError(QStringLiteral("Il file %1 non si può leggere.").arg(path));
    }
    if (!header.startsWith(QByteArrayLiteral("SQLite format 3\0")))
        throw notAPractice(path);
    if (header.size() < 100)
        throw damaged(path);
    const auto word = [&](int offset) { return qFromBigEndian<quint32>(header.constData() + offset); };
    quint32 pageSize = qFromBigEndian<quint16>(header.constData() + 16);
    if (pageSize == 1)
        pageSize = 65536;
    if (pageSize < 512 || (pageSize & (pageSize - 1)) != 0)
        throw damaged(path);
    const bool counted = word(24) == word(92);
    const bool isAlone = !hasJournal(path);
    // Asked after the journal: one that has just gone has been written into the file.
    const qint64 size = QFileInfo(path).size();
    if (isAlone && (size % pageSize != 0 || (counted && qint64(word(28)) * pageSize > size)))
        throw damaged(path);
}

// Reads the file as it stands and never writes. Throws dao::Error when it cannot be read so far.
void readTables(const QString &path, const QString &database, const Schema &schema)
{
    const auto file = dao::SqliteHandle::asItStands(path);
    dao::SqliteStatement names(file.get(),
                               QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"));
    QStringList tables;
    while (names.step())
        tables.append(names.value(0).toString());
    if (database == QLatin1String("clinical")) {
        if (!tables.contains(QStringLiteral("orvale_properties"), Qt::CaseInsensitive))
            throw notAPractice(path);
        int version = 0;
        dao::SqliteStatement properties(file.get(),
                                        QStringLiteral("SELECT name, value FROM orvale_properties"));
        while (properties.step()) {
            if (properties.value(0).toString() == QLatin1String("schema_version"))
                version = properties.value(1).toInt();
        }
        checkVersion(QFileInfo(path).path(), version, schema);
    }
    const QStringList expected = schema.firstTables(database);
    for (const QString &table : expected) {
        if (!tables.contains(table, Qt::CaseInsensitive))
            throw notAPractice(path);
    }
}

void probeTables(const QString &path, const QString &database, const Schema &schema)
{
    try {
        readTables(path, database, schema);
    } catch (const dao::Error &) {
        throw damaged(path);
    }
}

} // namespace

void checkVersion(const QString &folder, int version, const Schema &schema)
{
    if (version < 1)
        throw notAPractice(folder);
    if (version > schema.version())
        throw UserError(
            QStringLiteral("L'archivio %1 è di una versione più nuova (%2) di questo programma (%3): "
                           "aggiornare Orvale.")
                .arg(folder)
                .arg(version)
                .arg(schema.version()));
}

void probePractice(const QString &folder, const Schema &schema)
{
    const QFileInfo info(folder);
    if (!info.exists())
        throw UserError(QStringLiteral("La cartella %1 non esiste.").arg(folder));
    if (!info.isDir())
        throw UserError(
            QStringLiteral("%1 non è una cartella: un archivio di Orvale è una cartella.").arg(folder));
    refuseNetworkShare(folder);
    for (const PracticeFile &file : practiceFiles()) {
        const QString path = QDir(folder).filePath(file.fileName);
        const QFileInfo fileInfo(path);
        if (!fileInfo.exists())
            throw UserError(QStringLiteral("%1 non è un archivio di Orvale: manca il file %2.")
                                .arg(folder, file.fileName));
        if (!fileInfo.isFile())
            throw notAPractice(path);
        if (fileInfo.isSymLink())
            refuseNetworkShare(path);
        probeHeader(path);
        if (!fileInfo.isWritable())
            throw UserError(QStringLiteral("Manca il permesso di scrittura sul file %1.").arg(path));
    }
    if (!info.isWritable())
        throw UserError(QStringLiteral("Manca il permesso di scrittura nella cartella %1.").arg(folder));
    for (const PracticeFile &file : practiceFiles()) {
        const QString path = QDir(folder).filePath(file.fileName);
        if (hasJournal(path))
            continue;
        const QFileInfo before(path);
        const auto state = std::pair(before.size(), before.lastModified());
        try {
            probeTables(path, file.database, schema);
        } catch (const UserError &) {
            // Another workstation has begun, or has just written its journal into the file: what was read was
            // half of it.
            const QFileInfo now(path);
            if (!hasJournal(path) && state == std::pair(now.size(), now.lastModified()))
                throw;
        }
    }
}

} // namespace orvale
