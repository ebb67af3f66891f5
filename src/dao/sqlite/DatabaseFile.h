// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

namespace dao {

// The first bytes of a file, fewer when it is shorter. Throws Error (Failed) when it cannot be read.
//
// They are asked of SQLite, and no program may open a file that can be a database in another way: the system
// drops every lock that a process holds on a file as soon as the process closes that file once, however it
// was opened. SQLite knows its own files and waits; for any other reader the next program that closes the
// database would take itself for the last one and delete the write-ahead log that this one goes on writing
// to.
QByteArray firstBytes(const QString &path, int most);

} // namespace dao
