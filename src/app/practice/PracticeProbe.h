// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace orvale {

class Schema;

// Looks at a practice's folder without changing anything on disk, not even a lock or a journal: that the
// folder and its files are there and can be written, that each is a whole SQLite file with the tables of a
// practice, and that its schema version is not newer than the program's. Throws UserError with one line. What
// a look at the headers and the catalog cannot tell (damaged rows) is left to the data engine.
void probePractice(const QString &folder, const Schema &schema);

// Throws UserError when a practice's schema version is newer than the program's, or none.
void checkVersion(const QString &folder, int version, const Schema &schema);

} // namespace orvale
