// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QTemporaryDir>

namespace orvale {

// A folder in the making, beside the one that it is to become: "P.part-XXXXXX". It goes away with this object
// unless it took its place. Those that a killed program left behind for the same P are removed by the next
// one: as long as its program lives, a lock file in the folder is locked. Failures are thrown as UserError.
class PartFolder {
public:
    // `target` is an absolute path; folders above it are made.
    explicit PartFolder(const QString &target);
    ~PartFolder();
    PartFolder(const PartFolder &) = delete;
    PartFolder &operator=(const PartFolder &) = delete;

    QString path() const { return m_folder.path(); }

    // Everything in it is on the disk afterwards.
    void sync() const;
    // Takes the place of the target, which does not exist or is an empty folder.
    void place();
    // Takes the place of the target in one step and leaves what was there where the result says, beside it.
    QString placeInstead();

private:
    void unlock();

    QString m_target;
    QTemporaryDir m_folder;
    int m_lock = -1;
};

} // namespace orvale
