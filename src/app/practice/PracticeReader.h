// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"

#include <QString>
#include <map>
#include <memory>

namespace orvale {

// The databases of a practice as they stand at one time, for proofs and copies: read through a connection of
// its own that sees nothing of what others write meanwhile. Throws dao::Error.
class PracticeReader {
public:
    // `path` is where the practice stands, `given` how the user named it (an address may hold the password).
    PracticeReader(const QString &path, const QString &given);

    dao::Database &database(const QString &role) { return *m_databases.at(role); }

private:
    dao::DBEngine m_engine;
    std::map<QString, std::shared_ptr<dao::Database>> m_databases; // by role
};

} // namespace orvale
