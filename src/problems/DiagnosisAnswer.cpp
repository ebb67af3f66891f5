// SPDX-License-Identifier: Apache-2.0
#include "problems/DiagnosisAnswer.h"

#include "chart/FormOpener.h"
#include "chart/WorkingState.h"

namespace clivara {

namespace {

const auto nameKey = QStringLiteral("DIAGNOSI");
const auto codeKey = QStringLiteral("CODICE DIAGNOSI");
const auto aborted = QStringLiteral("*ABORT*");

} // namespace

void writeDiagnosis(SettingsStore &settings, const DiagnosisAnswer &chosen)
{
    settings.write(nameKey, chosen.name);
    settings.write(codeKey, chosen.code);
}

void writeDiagnosisAborted(SettingsStore &settings, const QString &code)
{
    writeDiagnosis(settings, {code, aborted});
}

DiagnosisAnswer askForDiagnosis(WorkingState &state, const QString &current)
{
    // The picker starts from the code, and leaves it there when it is cancelled or cannot be opened.
    writeDiagnosisAborted(state.settings, current);
    state.forms->showForm(QStringLiteral("RicercaDiagnosi"));
    const QString name = state.settings.text(nameKey);
    return {state.settings.text(codeKey), name == aborted ? QString() : name};
}

} // namespace clivara
