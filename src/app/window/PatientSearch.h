// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/patients/PatientIndex.h"

#include <QDate>
#include <QWidget>
#include <memory>

namespace Ui {
class PatientSearch;
}

namespace orvale {

class PatientListModel;

// The search field and the list of the patients found, which follows the typing. From the field the arrow
// keys and the page keys move in the list, Enter picks the marked patient or the first one, Esc empties the
// field. Only the marked patient is ever highlighted: whoever moves the highlight picks another.
class PatientSearch final : public QWidget {
    Q_OBJECT

public:
    // The index must outlive the widget.
    explicit PatientSearch(const PatientIndex &index, QWidget *parent = nullptr);
    ~PatientSearch() override;

    // Searches again, after the index has changed; `loading` while it is not complete yet.
    void refresh(QDate today, bool loading);
    // Sets the patient whom the list highlights where it shows that patient, and nobody else; -1 for none.
    // Must be called after each `picked`, also when the pick is refused.
    void mark(qint32 code);
    // Into the field, its text selected.
    void focusQuery();

signals:
    void picked(qint32 code);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void search();
    void pick(int row);
    void followHighlight();

    std::unique_ptr<Ui::PatientSearch> m_ui;
    const PatientIndex &m_index;
    PatientListModel *m_model;
    QDate m_today;
    bool m_loading = true;
    qint32 m_marked = -1;
    bool m_marking = false;
    qint32 m_refused = -1; // was picked and did not become the marked one
};

} // namespace orvale
