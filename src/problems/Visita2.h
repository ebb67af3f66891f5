// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordDialog.h"
#include "problems/VisitCommands.h"
#include "problems/VisitRecords.h"

#include <memory>

namespace Ui {
class Visita2;
}

namespace clivara {

class ChoiceBox;
class MemoEdit;

// Writes one visit. While it is open the selected problem is that of the visit; whoever opened it finds the own one
// again.
class Visita2 : public RecordDialog, public CalledBy<VisitCall> {
    Q_OBJECT

public:
    explicit Visita2(WorkingState &state);
    ~Visita2() override;

protected:
    void load() override;
    bool mayWrite() override;
    WriteResult write() override;
    void becomeNew() override;
    QString vanishedQuestion() const override;
    RecordConflict conflict() const override;
    void keepMine() override;

private:
    std::array<MemoEdit *, visitTexts> texts() const;
    VisitDetail entered() const;
    void fillLists();
    // What Problema shows: the problem's text, and what stands there without one.
    struct Filing {
        QString text, note;
    };
    Filing filingOf(const VisitDetail &visit) const;
    void showProblem(const Filing &filing);
    void chooseProblem();
    void removeProblem();
    bool mayKeepProblem();
    void show(const VisitDetail &visit);
    QStringList shownTexts(const VisitDetail &visit) const;
    void noteValidity();

    std::unique_ptr<Ui::Visita2> m_ui;
    VisitDetail m_visit; // what the controls were filled from; its problem is the one that Problema shows
    VisitDetail m_read, m_elsewhere; // as in Probl1
    SelectedProblem m_callers;
};

} // namespace clivara
