// SPDX-License-Identifier: Apache-2.0
#include "FailingDisk.h"

#include <map>
#include <memory>
#include <sqlite3.h>
#include <stdexcept>

namespace {

struct Disk {
    qint64 room = 0;
    qint64 written = 0;
    int fault = SQLITE_FULL;
    bool failed = false;
};
Disk disk;

// The system's methods of a kind of file, but for writing.
struct Methods {
    sqlite3_io_methods changed; // first: a file points here
    const sqlite3_io_methods *system;
};

int write(sqlite3_file *file, const void *bytes, int count, sqlite3_int64 offset)
{
    if (disk.written + count > disk.room) {
        disk.failed = true;
        return disk.fault;
    }
    disk.written += count;
    return reinterpret_cast<const Methods *>(file->pMethods)->system->xWrite(file, bytes, count, offset);
}

sqlite3_vfs *systemFiles()
{
    static sqlite3_vfs *const system = sqlite3_vfs_find(nullptr);
    return system;
}

int open(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *outFlags)
{
    static std::map<const sqlite3_io_methods *, std::unique_ptr<Methods>> known;
    const int result = systemFiles()->xOpen(systemFiles(), name, file, flags, outFlags);
    if (result == SQLITE_OK && file->pMethods) {
        auto &methods = known[file->pMethods];
        if (!methods) {
            methods = std::make_unique<Methods>(Methods{*file->pMethods, file->pMethods});
            methods->changed.xWrite = write;
        }
        file->pMethods = &methods->changed;
    }
    return result;
}

sqlite3_vfs &failingFiles()
{
    static sqlite3_vfs files = [] {
        sqlite3_vfs copy = *systemFiles();
        copy.pNext = nullptr;
        copy.zName = "failing";
        copy.xOpen = open;
        return copy;
    }();
    return files;
}

} // namespace

FailingDisk::FailingDisk(qint64 bytes, Fault fault)
{
    disk = {bytes, 0, fault == Fault::Full ? SQLITE_FULL : SQLITE_IOERR_WRITE, false};
    systemFiles();
    if (sqlite3_vfs_register(&failingFiles(), 1) != SQLITE_OK)
        throw std::runtime_error("SQLite does not take other files");
}

FailingDisk::~FailingDisk()
{
    sqlite3_vfs_register(systemFiles(), 1);
    sqlite3_vfs_unregister(&failingFiles());
}

qint64 FailingDisk::bytesWritten()
{
    return disk.written;
}

bool FailingDisk::hasFailed()
{
    return disk.failed;
}
