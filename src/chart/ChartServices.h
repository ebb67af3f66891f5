// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "data/ChangeJournal.h"
#include "data/HostEnvironment.h"
#include "data/RecordsetOperations.h"
#include "support/Clock.h"
#include "support/Log.h"
#include "support/Prompts.h"
#include "support/Seams.h"
#include "support/SettingsStore.h"

namespace clivara {

// The services that come from outside, by reference: the real ones in a host, others in a test.
struct Services {
    SettingsStore &settings;
    Clock &clock;
    Prompts &prompts;
    Pauses &pauses;
    GuidSource &guids;
    Middleware &middleware;
    RegionalConnector *connector = nullptr; // null: none is installed
};

// What the component works with, whoever its patient is: the services from outside, the log, and the host's databases.
struct ChartServices {
    explicit ChartServices(const Services &services);

    SettingsStore &settings;
    Clock &clock;
    Prompts &prompts;
    Pauses &pauses;
    GuidSource &guids;
    Middleware &middleware;
    RegionalConnector &connector;
    Log log;
    RecordsetOperations operations;

    const QString componentName = QStringLiteral("Clivara");
    const HostEnvironment *environment = nullptr; // null until InitDbConn
    dao::DBEngine *engine = nullptr; // set with the environment, kept until unload
    bool unreachableTold = false; // the doctor knows that the server cannot be reached

    // The host's databases; dao::Error (InvalidOperation) when the host has not handed them over.
    dao::Database &clinical() const { return database(&HostEnvironment::clinical); }
    dao::Database &codes() const { return database(&HostEnvironment::codes); }
    dao::Database &doctors() const { return database(&HostEnvironment::doctors); }
    dao::Database &local() const { return database(&HostEnvironment::local); }
    dao::Database &events() const { return database(&HostEnvironment::events); }

    // What tells the host of a change; throws as the databases do.
    ChangeJournal changeJournal();

private:
    AbsentConnector m_absentConnector;

    dao::Database &database(std::shared_ptr<dao::Database> HostEnvironment::*member) const;
};

} // namespace clivara
