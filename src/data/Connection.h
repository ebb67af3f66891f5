// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "data/HostEnvironment.h"

#include <QStringList>
#include <memory>

namespace clivara {

class Middleware;
class SettingsStore;

// The workgroup file's name.
QString workgroupFileName();

// Sets workgroup file, account and password of the engine. The account exists only at run time and is not
// kept. An error ends it silently.
void prepareEngine(dao::DBEngine &engine, const HostEnvironment &environment, Middleware &middleware);

// True when the database has a table of that name, without regard to case.
bool tableExists(dao::Database &database, const QString &name);

// Links tables of a host database into the local one. list[0] is the source letter ("D", "S", "T"), the rest
// are table names. Entries whose link was right already are emptied. An error ends it silently: a form whose
// tables could not be linked fails on its own query, also where an older link leads to another database.
void AttachTables(const HostEnvironment &environment, QStringList &list);

// The databases that the chart opens itself have the extension of the practice's clinical database
// ("ORV_WORK.sqlite" beside "Orvale.sqlite"). Both throw dao::Error. The per-workstation work database
// ORV_WORK, in the folder of the host setting "Orvale_Work".
std::shared_ptr<dao::Database> openWorkDatabase(dao::DBEngine &engine, const HostEnvironment &environment,
                                                const SettingsStore &settings);
// The doctors' users database Utenti, in the host's data folder.
std::shared_ptr<dao::Database> openUsersDatabase(dao::DBEngine &engine, const HostEnvironment &environment);

} // namespace clivara
