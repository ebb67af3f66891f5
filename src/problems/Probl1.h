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

// Writes one problem: the selected one (WorkingState::problemSelector), or a new one when none is selected. A new
// problem is the selected one once it is saved.
class Probl1 : public RecordDialog, private EditedRecord<ProblemDetail> {
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
