// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

namespace orvale {

// Where a file stands, as the system tells it.
struct StoragePlace {
    QByteArray fileSystem; // its type, as QStorageInfo names it: "ext4", "nfs4", "fuse.sshfs"
    QString root; // where it is mounted; "//server/share" for a share that is spoken of by its own name
};
// Of the path, or of the nearest folder above it that exists.
StoragePlace storagePlaceOf(const QString &path);

// True when other machines reach the same files through a server of files. SQLite's workstations share memory
// and rely on locks that hold, which only programs on one machine have: with a share a save can be lost and
// the files damaged. False for a file system that is not known, and for the folders that a computer lends to
// its own virtual machines and containers (9p, virtiofs, overlay).
bool isNetworkShare(const StoragePlace &place);

// Throws UserError when a practice of files would stand on a network share.
void refuseNetworkShare(const QString &path, const StoragePlace &place);
inline void refuseNetworkShare(const QString &path)
{
    refuseNetworkShare(path, storagePlaceOf(path));
}

} // namespace orvale
