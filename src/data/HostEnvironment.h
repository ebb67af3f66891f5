// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "dao/Dao.h"

#include <QString>
#include <memory>

namespace clivara {

// What the host hands to the chart: its open databases and its folders. The chart keeps it for its whole life
// and never closes the databases.
struct HostEnvironment {
    std::shared_ptr<dao::Database> clinical; // "D" in table linking
    std::shared_ptr<dao::Database> codes; // "S"
    std::shared_ptr<dao::Database> third; // "T"
    std::shared_ptr<dao::Database> doctors;
    std::shared_ptr<dao::Database> local; // tables are linked into it and joined queries run there
    std::shared_ptr<dao::Database> events;
    dao::Workspace *workspace = nullptr; // the one that the databases are open in
    QString programFolder;
    QString dataFolder;
};

} // namespace clivara
