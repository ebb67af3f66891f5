// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordConflict.h"
#include "chart/SectionForm.h"

#include <QHash>
#include <memory>

namespace Ui {
class Ricoveri_Gestione;
}

namespace clivara {

class ReportTableModel;
struct WorkingState;

// The hospital stays of the patient, oldest first. On closing it asks the host to refresh its diary.
class Ricoveri_Gestione final : public SectionForm {
    Q_OBJECT

public:
    explicit Ricoveri_Gestione(WorkingState &state);
    ~Ricoveri_Gestione() override;

protected:
    void load() override;
    void unloading() override;

private:
    // Fills the list and selects the stay with the key, or what stands in the other row when it is not there. The
    // focus goes to the list.
    void fill(qint32 selected, int otherwise);
    void showLength();
    void newStay();
    void editSelected();
    void deleteSelected();
    // Opens the dialog for a stay, 0 for a new one.
    qint32 selectedStay() const; // 0 when none is selected

    std::unique_ptr<Ui::Ricoveri_Gestione> m_ui;
    ReportTableModel *m_stays;
    QHash<qint32, LastWrite> m_written; // of each stay of the list, as it was read
};

} // namespace clivara
