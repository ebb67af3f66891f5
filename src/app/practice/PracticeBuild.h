// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/practice/PartFolder.h"
#include "app/practice/Practice.h"
#include "app/practice/ServerPart.h"
#include "dao/BulkLoad.h"
#include "dao/native/ExclusiveUse.h"

#include <map>
#include <vector>

namespace orvale {

// A practice in the making: built aside, in a folder beside its place or in schemas of the same database, and
// put in its place as a whole. Without place() nothing of it is left. Everything throws UserError, or
// dao::Error where the practice itself is written.
class PracticeBuild {
public:
    enum class Existing { Refused, Replaced };
    enum class Tables { Current, None }; // those of the current schema version, or none yet

    // On a server the database must not hold a practice. A folder must not exist or be empty; with
    // Existing::Replaced it may be a practice that nobody has open, which is kept from being opened as long
    // as this object lives.
    explicit PracticeBuild(const QString &path, Existing existing = Existing::Refused,
                           Tables tables = Tables::Current);
    ~PracticeBuild();

    QString target() const { return m_target; }
    // Where it stands meanwhile: a folder, or an address on the server.
    QString folder() const { return m_part ? m_part->path() : m_serverPart->path(); }
    bool replaces() const { return !m_previous.empty(); }

    // Until finish(). Nothing that is written reaches the disk yet, so it is fast.
    Practice &practice() { return *m_practice; }
    dao::Database &database(const QString &role);
    dao::BulkLoad &load(const QString &role) { return *m_loads.at(role); }

    // Links the tables that the lists join and closes the practice; its files are complete and on the disk.
    void finish();

    enum class Previous { Removed, Kept };
    // Puts the finished practice in its place. The path where the practice that was there is kept: asked for,
    // or because the folder also holds files that are none of a practice's; empty otherwise.
    QString place(Previous previous = Previous::Removed);

private:
    void begin(const QString &given, Tables tables);
    void linkOnServer(); // where links name schemas as they are called in the end

    QString m_target;
    QString m_given; // may hold a password
    std::vector<std::unique_ptr<dao::ExclusiveUse>> m_previous;
    // What is declared later is closed before the folder goes.
    std::unique_ptr<PartFolder> m_part; // one of the two
    std::unique_ptr<ServerPart> m_serverPart;
    std::unique_ptr<Practice> m_practice;
    std::map<QString, std::unique_ptr<dao::BulkLoad>> m_loads; // by role
};

} // namespace orvale
