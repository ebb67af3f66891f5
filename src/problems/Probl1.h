// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/EditedRecord.h"
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
class Probl1 : public RecordDialog, public CalledBy<ProblemCall>, private EditedRecord<ProblemDetail> {
    Q_OBJECT

public:
    explicit Probl1(WorkingState &state);
    ~Probl1() override;

protected:
    void load() override;
    void written() override;

private:
    bool mayWrite() override;
    void becomeNew() override;
    ProblemDetail entered() const override;
    void show(const ProblemDetail &problem) override;
    SaveResult<ProblemDetail> save(ProblemDetail &mine, const ProblemDetail &read) override;
    std::optional<QString> shownText(QLatin1String column, const ProblemDetail &problem) const override;

    std::array<MemoEdit *, problemTexts.size()> texts() const;
    QString descriptionFault() const; // empty when the description is not too long
    void noteDescription();
    void showDiagnosis(const QString &name);
    void chooseDiagnosis();

    std::unique_ptr<Ui::Probl1> m_ui; // Problema shows the code of m_shown
};

} // namespace clivara
