// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/SectionForm.h"
#include "problems/ItemTreeView.h"

#include <memory>

class QMenu;

namespace Ui {
class Visite2;
}

namespace clivara {

struct WorkingState;

// All visits of the patient, whatever their problem. On closing it asks the host to refresh its view.
class Visite2 final : public SectionForm {
    Q_OBJECT

public:
    explicit Visite2(WorkingState &state);
    ~Visite2() override;

protected:
    void load() override;
    void unloading() override;

private:
    void makeMenu();
    void CaricaTab_Visite(ItemTreeView::Place place);
    void addVisit();
    void editSelected();
    void deleteSelected();

    std::unique_ptr<Ui::Visite2> m_ui;
    QMenu *m_menu;
};

} // namespace clivara
