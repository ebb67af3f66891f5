// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/SectionForm.h"
#include "regional/SheetRecords.h"

#include <memory>

class QButtonGroup;
class QStandardItemModel;

namespace Ui {
class AIR15_Gestione;
}

namespace clivara {

struct WorkingState;

// The regional sheets of the patient: opens and deletes them and begins new ones of a chosen type.
class AIR15_Gestione final : public SectionForm {
    Q_OBJECT

public:
    explicit AIR15_Gestione(WorkingState &state);
    ~AIR15_Gestione() override;

protected:
    void load() override;
    void unloading() override;

private:
    void addTypes();
    void fill();
    void selectRow(int row);
    const StoredSheet *selected() const; // null when no row is selected
    void enableButtons();
    void open(int type, qint32 number);
    void openSelected();
    void createSheet();
    void deleteSelected();
    void leave();

    std::unique_ptr<Ui::AIR15_Gestione> m_ui;
    QStandardItemModel *m_model;
    QButtonGroup *m_types; // of a new sheet; the ids are the types
    QList<StoredSheet> m_sheets; // in the order of the rows
};

} // namespace clivara
