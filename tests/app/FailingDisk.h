// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

// While it lives, the disk under SQLite takes so many bytes and then is full, or broken. For databases that
// are opened meanwhile.
class FailingDisk {
public:
    enum class Fault { Full, Broken };

    explicit FailingDisk(qint64 bytes, Fault fault = Fault::Full);
    ~FailingDisk();
    FailingDisk(const FailingDisk &) = delete;
    FailingDisk &operator=(const FailingDisk &) = delete;

    static qint64 bytesWritten(); // through SQLite since it was made
    static bool hasFailed();
};
