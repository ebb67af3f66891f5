// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/SectionForm.h"
#include "problems/DiagnosisSearch.h"

#include <memory>
#include <optional>

namespace Ui {
class RicercaDiagnosi;
}

namespace clivara {

class DiagnosisModel;
class MatchDelegate;
struct WorkingState;

// Has the doctor pick a diagnosis: the list below the search line follows the typing, the arrow keys move in it while
// the line keeps the focus. The answer is the settings "DIAGNOSI" and "CODICE DIAGNOSI"; without a choice the first
// is "*ABORT*" and the second stays what it was.
class RicercaDiagnosi : public SectionForm {
    Q_OBJECT

public:
    explicit RicercaDiagnosi(WorkingState &state);
    ~RicercaDiagnosi() override;

protected:
    void load() override;
    void unloading() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void search(const QString &text);
    void showCode(const QString &code);
    void choose();

    std::unique_ptr<Ui::RicercaDiagnosi> m_ui;
    DiagnosisModel *m_model;
    MatchDelegate *m_delegate;
    std::optional<DiagnosisSearch> m_diagnoses;
    QString m_currentCode; // that the caller has
    std::optional<Diagnosis> m_chosen;
};

} // namespace clivara
