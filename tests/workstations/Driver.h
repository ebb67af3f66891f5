// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace workstations {

// One run of several workstations on one practice.
struct Run {
    QString practice; // a folder or a server's address
    QString folder; // for ledgers and traces; must not exist or be empty
    int workstations = 4;
    int saves = 15; // of each
    int workstationKills = 0; // at random moments of saves; the workstation is started again
    int serverKills = 0; // at random moments; by the command in CLIVARA_TEST_SERVER_CONTROL
    // So many at a time open the practice for a moment: they look, check, copy, or are killed.
    int visitors = 0;
    bool comesAndGoes = false; // a workstation opens and closes the practice every few saves
    int limitMs = 0; // longer waits are a fault; 0: none is
    quint32 seed = 1; // of the random moments
};

// Prints what was done and every fault; the exit status, 0 without faults.
int drive(const Run &run);
// One workstation of a run, from the save of that number on; where workstations come and go, only the next
// few saves.
int work(const Run &run, int worker, int from);
// One visit of that number to the run's practice.
int visit(const Run &run, int number);

} // namespace workstations
