// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordDialog.h"
#include "problems/ProblemRecords.h"

#include <memory>

namespace Ui {
class Probl1;
}

namespace clivara {

class MemoEdit;

// Of the form "Probl1".
struct ProblemCall : FormCall {
    std::optional<qint32> problem; // to be edited; none: a new one
    std::optional<qint32> saved; // the answer: another one when it was deleted meanwhile and saved anew
};

// Opens the dialog of a problem, of a new one without `problem`; the result is the problem that was saved, none when
// none was. Raises nothing.
std::optional<qint32> openProblem(WorkingState &state, std::optional<qint32> problem);

// Writes one problem.
class Probl1 : public RecordDialog, public CalledBy<ProblemCall> {
    Q_OBJECT

public:
    explicit Probl1(WorkingState &state);
    ~Probl1() override;

protected:
    void load() override;
    bool mayWrite() override;
    WriteResult write() override;
    void becomeNew() override;
    QString vanishedQuestion() const override;
    RecordConflict conflict() const override;
    void keepMine() override;
    void written() override;

private:
    std::array<MemoEdit *, 4> texts() const;
    ProblemDetail entered() const;
    bool isDescriptionTooLong() const;
    void noteDescription();
    void show(const ProblemDetail &problem);
    QStringList shownTexts(const ProblemDetail &problem) const;
    void showDiagnosis(const QString &name);
    void chooseDiagnosis();

    std::unique_ptr<Ui::Probl1> m_ui;
    ProblemDetail m_problem; // what the controls were filled from; its code is the one that Problema shows
    ProblemDetail m_read; // as it was read, or as it was when the doctor chose between two versions
    ProblemDetail m_elsewhere; // as another workstation has stored it, when a save found that
};

} // namespace clivara
