// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>
#include <sys/types.h>

struct sqlite3;

namespace dao {

// A database file that a connection has open. Tells whether the file, its write-ahead log and the log's index
// are still the ones found under their names: what is written to deleted or replaced files is lost.
class SqliteFile {
public:
    // True when the file has a second name (a hard link) and somebody has it open, under whichever. Each name
    // has a write-ahead log of its own, so two who write under two names would lose each other's rows. Throws
    // Error (Failed) when the file cannot be read.
    static bool isOpenUnderTwoNames(const QString &path);

    SqliteFile() = default;
    // Of the database attached as `schema`, of which something was read already.
    SqliteFile(sqlite3 *connection, const QString &schema);

    bool isInPlace() const;
    QString path() const { return m_path; }

private:
    struct Identity {
        dev_t device = 0;
        ino_t number = 0; // 0: there is no such file
        bool operator==(const Identity &) const = default;
    };
    static Identity identityOf(const QString &path);

    sqlite3 *m_connection = nullptr;
    QByteArray m_schema;
    QString m_path; // that of the file itself where its name is a symbolic link
    Identity m_log, m_index;
};

} // namespace dao
