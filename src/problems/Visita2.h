// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/EditedRecord.h"
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
class Visita2 : public RecordDialog, public CalledBy<VisitCall>, private EditedRecord<VisitDetail> {
    Q_OBJECT

public:
    explicit Visita2(WorkingState &state);
    ~Visita2() override;

protected:
    void load() override;
    void written() override;

private:
    bool mayWrite() override;
    void becomeNew() override;
    VisitDetail entered() const override;
    void show(const VisitDetail &visit) override;
    SaveResult<VisitDetail> save(VisitDetail &mine, const VisitDetail &read) override;
    std::optional<QString> shownText(QLatin1String column, const VisitDetail &visit) const override;

    std::array<MemoEdit *, visitTexts.size()> texts() const;
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
    void noteValidity();

    std::unique_ptr<Ui::Visita2> m_ui; // Problema shows the problem of m_shown
    SelectedProblem m_callers;
};

} // namespace clivara
