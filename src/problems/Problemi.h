// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/SectionForm.h"
#include "problems/ItemTreeView.h"
#include "problems/ProblemListModel.h"

#include <QHash>
#include <memory>

class QMenu;

namespace Ui {
class Problemi;
}

namespace clivara {

struct WorkingState;

// The problem-oriented record: the patient's problems above, and below what is filed against the selected one.
// The selected problem is WorkingState::selected, which outlives the form. On closing it asks the host to
// refresh its diary.
class Problemi final : public SectionForm {
    Q_OBJECT

public:
    explicit Problemi(WorkingState &state);
    ~Problemi() override;

protected:
    void load() override;
    void unloading() override;

private:
    enum class ProblemCommand { New, Edit, Delete, Close };
    enum class VisitCommand { New, Edit, Delete };

    void CreaTab_Problemi();
    void makeMenus();
    void connectProblems();
    void connectItems();
    void CaricaTab_Problemi();
    void CaricaTab_Visite(ItemTreeView::Place place = ItemTreeView::Place::AsBefore);
    // Makes the row the shared selected problem and loads its items.
    void showProblem(int row, ItemTreeView::Place place);
    void showCounts();

    void runProblemCommand(ProblemCommand command);
    void newProblem();
    void deleteProblem(const ProblemListModel::Row &problem);
    void closeProblem(const ProblemListModel::Row &problem);
    void tellNotClosed(const ProblemListModel::Row &problem, const ProblemStanding &there);
    void runVisitCommand(VisitCommand command);
    void openProblemIdentifier(int row);
    void openDiabetesChart();

    // The selected row, the one of no problem included; null without one.
    const ProblemListModel::Row *selectedRow() const;
    QString diagnosisName(const QString &code);

    std::unique_ptr<Ui::Problemi> m_ui;
    ProblemListModel *m_problems;
    QMenu *m_problemMenu;
    QMenu *m_visitMenu;
    QHash<QString, QString> m_diagnosisNames; // by code; kept while the form is open
    bool m_filling = false; // the selection is being set by the form
};

} // namespace clivara
