// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "data/ChangeJournal.h"
#include "data/HostEnvironment.h"
#include "data/RecordsetOperations.h"
#include "data/SharedRows.h"
#include "support/Clock.h"
#include "support/Log.h"
#include "support/PatientHeader.h"
#include "support/Prompts.h"
#include "support/Seams.h"
#include "support/SettingsStore.h"

#include <QVariant>

namespace clivara {

class FormOpener;

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

// Group and print settings of the host, reloaded before every action.
struct GroupSettings {
    QString heading; // SET_INTESTA
    QString title; // SET_TITOL
    QString group; // NGRUPPO
    QString server; // LSERVER
    QString stamp1, stamp2; // lines of the doctor's stamp: stamp_1, stamp_2
    QString address1, address2; // vass_1, vass_2
};

// The current doctor's settings, reloaded before every action.
struct DoctorSettings {
    QString code; // setting "medico_corrente", else medicoP
    QString surname, name;
    QStringList specials; // special_1 to special_7
    QString region; // two digits, from "CODICE REGIONE"; empty when unknown
    QString regionName; // REGIONE
};

struct SelectedProblem {
    qint32 id = 0; // its idProblems, 0 for none or a new one, -1 for "unassociated"
    QString text; // what it is called
};

// What the component holds for as long as the host keeps it loaded, shared by all its forms.
struct WorkingState {
    explicit WorkingState(const Services &services)
        : settings(services.settings)
        , clock(services.clock)
        , prompts(services.prompts)
        , pauses(services.pauses)
        , guids(services.guids)
        , middleware(services.middleware)
        , connector(services.connector ? *services.connector : m_absentConnector)
        , log(services.clock)
        , operations(log, services.pauses)
    {
    }

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
    QString medicoP, medicoT;
    QString uidMedicoT, uidMedicoP, uidAuthor; // plain form; the last two are both of medicoP
    qint16 callerMode = 0;
    FormOpener *forms = nullptr; // set by the component before any form is made
    SelectedProblem selected; // of the patient's problems
    QString visitMode; // "10" new, "11" edit: of the visit that was opened last
    bool networkedPractice = false; // the setting "Mir_Attivo", as of the last saved allergies
    bool unreachableTold = false; // the doctor knows that the server cannot be reached
    GroupSettings group;
    DoctorSettings doctor;
    PatientHeader header;
    QVariant result; // what the last form hands back to the host; invalid when nothing

    // The host's databases; dao::Error (InvalidOperation) when the host has not handed them over.
    dao::Database &clinical() const { return database(&HostEnvironment::clinical); }
    dao::Database &codes() const { return database(&HostEnvironment::codes); }
    dao::Database &doctors() const { return database(&HostEnvironment::doctors); }
    dao::Database &local() const { return database(&HostEnvironment::local); }
    dao::Database &events() const { return database(&HostEnvironment::events); }

    // What writes the shared rows of the current patient, and what tells the host of a change. Both throw as
    // the databases do.
    SharedRows sharedRows();
    ChangeJournal changeJournal();

private:
    AbsentConnector m_absentConnector;

    dao::Database &database(std::shared_ptr<dao::Database> HostEnvironment::*member) const;
};

} // namespace clivara
