// SPDX-License-Identifier: Apache-2.0
#include "app/practice/NetworkShare.h"

#include "app/practice/UserError.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

namespace orvale {

StoragePlace storagePlaceOf(const QString &path)
{
    QFileInfo nearest(path);
    while (!nearest.exists() && nearest.absolutePath() != nearest.absoluteFilePath())
        nearest.setFile(nearest.absolutePath());
    const QStorageInfo storage(nearest.canonicalFilePath());
    return {storage.fileSystemType(), storage.rootPath()};
}

bool isNetworkShare(const StoragePlace &place)
{
    // File systems of the kernel, and after them programs that show what is elsewhere as a file system.
    static const QByteArrayList types{
        "nfs",    "nfs3",      "nfs4",  "cifs",    "smb",    "smb2",     "smb3",      "smbfs",  "afs",
        "ncp",    "ncpfs",     "coda",  "ceph",    "gfs",    "gfs2",     "ocfs2",     "gpfs",   "lustre",
        "beegfs", "glusterfs", "davfs", "davfs2",  "sshfs",  "smbnetfs", "curlftpfs", "rclone", "gvfsd-fuse",
        "s3fs",   "ceph-fuse", "mfs",   "juicefs", "webdav", "ftpfs",
    };
    QByteArray type = place.fileSystem.toLower();
    if (type.startsWith("fuse."))
        type.remove(0, 5);
    return types.contains(type) || place.root.startsWith(QLatin1String("//"))
           || place.root.startsWith(QLatin1String("\\\\"));
}

void refuseNetworkShare(const QString &path, const StoragePlace &place)
{
    if (isNetworkShare(place))
        throw UserError(
            QStringLiteral(
                "La cartella %1 è condivisa in rete (%2): un archivio di file si usa solo sul disco di un "
                "computer, altrimenti i salvataggi di più postazioni possono perdersi. Per lavorare da più "
                "computer metterlo su un server PostgreSQL.")
                .arg(QDir::toNativeSeparators(path),
                     place.fileSystem.isEmpty() ? place.root : QString::fromLatin1(place.fileSystem)));
}

} // namespace orvale
