// SPDX-License-Identifier: Apache-2.0
#include "app/practice/NetworkShare.h"
#include "app/practice/UserError.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orvale;

namespace {

TEST(NetworkShareTest, IsToldByTheFileSystem)
{
    struct Row {
        const char *fileSystem;
        const char *root;
        bool isShare;
    };
    for (const Row &row : {
             Row{"nfs", "/srv/studio", true},
             {"nfs4", "/srv/studio", true},
             {"cifs", "/mnt/nas", true},
             {"smb3", "/mnt/nas", true},
             {"SMBFS", "/mnt/nas", true},
             {"afs", "/afs", true},
             {"fuse.sshfs", "/home/anna/studio", true},
             {"fuse.gvfsd-fuse", "/run/user/1000/gvfs", true},
             {"fuse.glusterfs", "/mnt/volume", true},
             {"NTFS", "//server/studio", true}, // what a share is called on Windows, in both ways to write it
             {"NTFS", "\\\\server\\studio", true},
             {"ext4", "/", false},
             {"btrfs", "/home", false},
             {"NTFS", "C:/", false},
             {"fuseblk", "/media/disco", false}, // a disk of this computer, through a program
             {"fuse.gocryptfs", "/home/anna/cifrato", false},
             {"tmpfs", "/tmp", false},
             {"overlay", "/", false},
             {"9p", "/", false},
             {"virtiofs", "/", false},
             {"", "", false},
         })
        EXPECT_EQ(isNetworkShare({row.fileSystem, row.root}), row.isShare)
            << row.fileSystem << ' ' << row.root;
}

TEST(NetworkShareTest, IsRefusedInOneLineThatNamesTheWayOut)
{
    try {
        refuseNetworkShare("/mnt/nas/studio", {"cifs", "/mnt/nas"});
        FAIL() << "not refused";
    } catch (const UserError &error) {
        EXPECT_TRUE(error.text().startsWith("La cartella /mnt/nas/studio è condivisa in rete (cifs): "));
        EXPECT_TRUE(error.text().contains("PostgreSQL"));
        EXPECT_FALSE(error.text().contains(u'\n'));
    }
}

TEST(NetworkShareTest, AFolderThatIsStillToBeMadeStandsWhereTheOneAboveItDoes)
{
    const QTemporaryDir folder;
    const StoragePlace place = storagePlaceOf(folder.path());
    if (place.fileSystem.isEmpty())
        GTEST_SKIP() << "in a folder taken for the root (chroot) the system names no file system";
    const StoragePlace below = storagePlaceOf(folder.filePath("nuova/cartella"));
    EXPECT_EQ(below.fileSystem, place.fileSystem);
    EXPECT_EQ(below.root, place.root);
}

} // namespace
