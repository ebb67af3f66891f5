// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "controls/ReportView.h"
#include "problems/ItemTreeModel.h"

#include <optional>

namespace clivara {

// The report of visits, drugs and tests: every row open, so that all texts are readable at a glance.
class ItemTreeView final : public ReportView {
    Q_OBJECT

public:
    explicit ItemTreeView(QWidget *parent = nullptr);

    // Once, before any item is shown.
    void setThirdColumn(ItemTreeModel::Third third);

    enum class Place { FromTheTop, AsBefore };
    // With AsBefore the list stays where it was, and the item that was selected is so again, if it is still there.
    void showItems(QList<ItemRow> items, Place place);
    const ItemTreeModel &items() const { return *m_model; }

    // The item that is selected or has a selected line; null when none is.
    const ItemRow *selectedItem() const;
    // The key of the selected visit; empty when no visit is selected.
    std::optional<qint32> selectedVisit() const;
    // Brings the visit into sight and selects it; false, and nothing happens, when it is not there.
    bool selectVisit(qint32 id);
    // Goes to the first row of a kind.
    void goTo(ItemRow::Kind kind);

protected:
    void focusInEvent(QFocusEvent *event) override;

private:
    ItemTreeModel *m_model = nullptr;
};

} // namespace clivara
