// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/ChartServices.h"
#include "data/SharedRows.h"
#include "support/PatientHeader.h"

#include <QVariant>

namespace clivara {

class FormOpener;

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

// Whom the host's window is about: reloaded before every action.
struct PatientAndDoctor {
    PatientHeader header;
    QString medicoP, medicoT;
    QString uidMedicoT, uidMedicoP, uidAuthor; // plain form; the last two are both of medicoP
    GroupSettings group;
    DoctorSettings doctor;
};

struct SelectedProblem {
    qint32 id = 0; // its idProblems, 0 for none or a new one, -1 for "unassociated"
    QString text; // what it is called
};

// What stays from one action to the next, for the host and for sections that do not call each other.
struct SharedChoices {
    qint16 callerMode = 0;
    SelectedProblem selected; // of the patient's problems
    QString visitMode; // "10" new, "11" edit: of the visit that was opened last
    bool networkedPractice = false; // the setting "Mir_Attivo", as of the last saved allergies
    QVariant result; // what the last form hands back to the host; invalid when nothing
};

// What the component holds for as long as the host keeps it loaded, shared by all its forms.
struct WorkingState : ChartServices, PatientAndDoctor, SharedChoices {
    explicit WorkingState(const Services &services)
        : ChartServices(services)
    {
    }

    FormOpener *forms = nullptr; // set by the component before any form is made

    // What writes the shared rows of the current patient; throws as the databases do.
    SharedRows sharedRows();
};

} // namespace clivara
