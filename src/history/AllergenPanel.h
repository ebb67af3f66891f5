// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "data/AllergyCode.h"
#include "history/GeneralInfoRecords.h"

#include <QScrollArea>
#include <vector>

class QGroupBox;

namespace clivara {

class AllergenBox;

// The check boxes of all allergens in frames by group, as many columns as there is room for. Box i of a group has the name
// of the group's array and i ("grami_0").
class AllergenPanel : public QScrollArea {
    Q_OBJECT

public:
    explicit AllergenPanel(QWidget *parent = nullptr);
    ~AllergenPanel() override;

    // Names the boxes; those that the catalogue does not have stay without caption.
    void setCatalogue(const QList<CatalogueEntry> &entries);

    void setSelection(const AllergenSelection &selection);
    AllergenSelection selection() const;
    QStringList selectedNames() const { return namesOf(selection()); }
    QStringList namesOf(const AllergenSelection &selection) const;

    // Highlights what is found and dims the rest; nothing of both for an empty text. Returns how many are found.
    int search(const QString &typed);
    // Gives the focus to the first box that the search has found.
    void focusFound();

    // Room for the widest arrangement.
    QSize sizeHint() const override;

signals:
    void selectionChanged();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    AllergenBox *firstFound() const;
    void fit();
    void arrange(std::size_t arrangement);

    QWidget *m_page;
    std::vector<QGroupBox *> m_frames; // by group
    std::vector<AllergenBox *> m_boxes; // by the allergen's number
    std::vector<int> m_widths; // of the arrangements, in pixels
    std::size_t m_arrangement = 0;
    QSize m_usual;
};

} // namespace clivara
