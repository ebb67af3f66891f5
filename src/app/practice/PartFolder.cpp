// SPDX-License-Identifier: Apache-2.0
#include "app/practice/PartFolder.h"

#include "app/practice/UserError.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace orvale {

namespace {

const QString lockName = QStringLiteral(".lock");

// Locks the folder's lock file; -1 when another program holds it, or when the file is not there and is not to
// be made.
int lockFolder(const QString &folder, int flags)
{
    const QByteArray name = QFile::encodeName(QDir(folder).filePath(lockName));
    const int file = ::open(name.constData(), O_RDWR | O_CLOEXEC | flags, 0666);
    if (file < 0)
        return -1;
    if (::flock(file, LOCK_EX | LOCK_NB) == 0)
        return file;
    ::close(file);
    return -1;
}

// A folder without its lock file belongs to a program that is about to make it, or to nobody.
void removeAbandonedParts(const QString &target)
{
    const QFileInfo info(target);
    const QDir beside(info.path());
    const QString pattern = info.fileName() + QStringLiteral(".part-");
    const QFileInfoList folders = beside.entryInfoList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo &folder : folders) {
        if (!folder.fileName().startsWith(pattern) || folder.fileName().size() != pattern.size() + 6
            || folder.isSymLink())
            continue;
        const int lock = lockFolder(folder.filePath(), 0);
        if (lock >= 0) {
            QDir(folder.filePath()).removeRecursively();
            ::close(lock);
        } else if (folder.lastModified().secsTo(QDateTime::currentDateTime()) > 60) {
            QDir().rmdir(folder.filePath()); // only an empty one goes
        }
    }
}

QString partTemplate(const QString &target)
{
    const QString parent = QFileInfo(target).path();
    if (!QDir().mkpath(parent))
        throw UserError(QStringLiteral("La cartella %1 non si può creare.").arg(parent));
    return target + QStringLiteral(".part-XXXXXX");
}

bool renameTo(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

UserError cannotPlace(const QString &target)
{
    return UserError(
        QStringLiteral("L'archivio %1 non si può creare: %2").arg(target, qt_error_string(errno)));
}

QString placeBeside(const QString &target)
{
    const QString path = target + QStringLiteral(".prima-")
                         + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString free = path;
    for (int i = 2; QFileInfo::exists(free); ++i)
        free = QStringLiteral("%1-%2").arg(path).arg(i);
    return free;
}

// A folder, but not what is in it, or a file reaches the disk. False when the system reports an error. Never
// for a database that this program may have open: closing the file would drop its locks.
bool syncToDisk(const QString &path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool isDone = ::fsync(file) == 0;
    ::close(file);
    return isDone;
}

} // namespace

PartFolder::PartFolder(const QString &target)
    : m_target(target)
    , m_folder(partTemplate(target))
{
    if (!m_folder.isValid())
        throw UserError(QStringLiteral("Manca il permesso di scrittura nella cartella %1: %2")
                            .arg(QFileInfo(target).path(), m_folder.errorString()));
    m_lock = lockFolder(path(), O_CREAT);
    if (m_lock < 0)
        throw UserError(QStringLiteral("Non si può scrivere nella cartella %1.").arg(path()));
    removeAbandonedParts(target);
}

PartFolder::~PartFolder()
{
    unlock();
}

void PartFolder::unlock()
{
    if (m_lock >= 0)
        ::close(m_lock);
    m_lock = -1;
}

void PartFolder::sync() const
{
    // Its databases are closed: nobody else knows the folder yet.
    bool isDone = true;
    const QFileInfoList files = QDir(path()).entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo &file : files)
        isDone &= syncToDisk(file.filePath());
    if (!isDone || !syncToDisk(path()))
        throw UserError(
            QStringLiteral("I dati non arrivano sul disco in %1: %2").arg(path(), qt_error_string(errno)));
}

void PartFolder::place()
{
    if ((QFileInfo::exists(m_target) && ::rmdir(QFile::encodeName(m_target).constData()) != 0)
        || !renameTo(path(), m_target))
        throw cannotPlace(m_target);
    m_folder.setAutoRemove(false);
    QFile::remove(QDir(m_target).filePath(lockName));
    unlock();
    syncToDisk(QFileInfo(m_target).path());
}

QString PartFolder::placeInstead()
{
    const QString previous = placeBeside(m_target);
    const QByteArray from = QFile::encodeName(path());
    const QByteArray to = QFile::encodeName(m_target);
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE) == 0) {
        if (!renameTo(path(), previous)) {
            const UserError error = cannotPlace(m_target);
            ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_EXCHANGE);
            throw error;
        }
    } else {
        // A file system that cannot exchange: for a moment the practice is only beside its place.
        if (!renameTo(m_target, previous))
            throw cannotPlace(m_target);
        if (!renameTo(path(), m_target)) {
            const UserError error = cannotPlace(m_target);
            renameTo(previous, m_target);
            throw error;
        }
    }
    m_folder.setAutoRemove(false);
    QFile::remove(QDir(m_target).filePath(lockName));
    unlock();
    syncToDisk(QFileInfo(m_target).path());
    return previous;
}

} // namespace orvale
