// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace clivara {

class SettingsStore;
struct WorkingState;

// A diagnosis or problem as the pickers hand it over, through the settings "DIAGNOSI" and "CODICE DIAGNOSI".
struct DiagnosisAnswer {
    QString code;
    QString name; // empty when nothing was chosen
};

// What the host and the forms read.
void writeDiagnosis(SettingsStore &settings, const DiagnosisAnswer &chosen);
// "*ABORT*" as the text, and a code.
void writeDiagnosisAborted(SettingsStore &settings, const QString &code);

// Has the doctor pick a diagnosis. Whoever cancels keeps the code that was there, with an empty name.
DiagnosisAnswer askForDiagnosis(WorkingState &state, const QString &current);

} // namespace clivara
