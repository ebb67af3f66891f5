// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordConflict.h"
#include "chart/SectionForm.h"

#include <memory>

class QGridLayout;

namespace Ui {
class Conflitto;
}

namespace clivara {

class VersionPane;
struct WorkingState;

// Shows a conflict: who saved the record first and when, and both versions side by side where they differ.
// The doctor's choice is the answer; whoever only closes the form goes back to editing.
class Conflitto final : public SectionForm, public CalledBy<ConflictCall> {
    Q_OBJECT

public:
    explicit Conflitto(WorkingState &state);
    ~Conflitto() override;

protected:
    void load() override;

private:
    void showFields(const RecordConflict &conflict);
    void addField(QGridLayout *grid, const ConflictField &field, bool mergesFields);
    void fit();
    void showNext();
    void choose(ConflictChoice choice);

    std::unique_ptr<Ui::Conflitto> m_ui;
    struct Difference { // one place in a field
        VersionPane *mine;
        VersionPane *theirs;
        qsizetype part;
    };
    QList<Difference> m_differences;
    qsizetype m_shown = -1; // the difference that is set off
};

} // namespace clivara
