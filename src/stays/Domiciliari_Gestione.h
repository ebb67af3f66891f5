// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/EditedRecord.h"
#include "chart/SectionForm.h"
#include "stays/HomeCareRecords.h"

#include <memory>

namespace Ui {
class Domiciliari_Gestione;
}

namespace clivara {

class ReportTableModel;
struct WorkingState;

// The patient's home care and the other services that the region has a code for. While browsing, the list is active
// and the fields below show the selected entry; while an entry is written it is the other way round. Esc and "Annulla" lead
// back to the list, and from there Esc closes. On closing it asks the host to refresh its views.
class Domiciliari_Gestione final : public SectionForm, private EditedRecord<HomeCareEntry> {
    Q_OBJECT

public:
    explicit Domiciliari_Gestione(WorkingState &state);
    ~Domiciliari_Gestione() override;

protected:
    void load() override;
    void unloading() override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum class Mode { Browse, New, Edit };

    bool mayWrite() override;
    QString typeName(const HomeCareEntry &entry) const;
    void becomeNew() override;
    void show(const HomeCareEntry &entry) override;
    HomeCareEntry entered() const override;
    SaveResult<HomeCareEntry> save(HomeCareEntry &mine, const HomeCareEntry &read) override;
    std::optional<QString> shownText(QLatin1String column, const HomeCareEntry &entry) const override;

    void connectControls();
    void setMode(Mode mode);
    void CaricaListaTipi();
    // Fills the grid and selects the entry with the key, or what stands in the other row when it is not
    // there. The focus goes to the grid.
    void Carica_Domiciliari(qint32 selected, int otherwise = 0);
    void showSelected();
    void chooseType(const HomeCareEntry &entry);
    const HomeCareEntry *selectedEntry() const; // null when none is selected

    void newEntry();
    void editSelected();
    void deleteSelected();
    std::optional<QStringList> readContents(qint32 id);
    void saveEntry();
    void cancel();
    void leave();

    std::unique_ptr<Ui::Domiciliari_Gestione> m_ui;
    ReportTableModel *m_grid;
    Mode m_mode = Mode::Browse;
    QList<HomeCareEntry> m_entries; // as the grid shows them
    QList<ServiceType> m_types;
};

} // namespace clivara
