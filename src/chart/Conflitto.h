// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/ui/ChartForm.h"

#include <memory>

class QGridLayout;

namespace Ui {
class Conflitto;
}

namespace clivara {

class VersionPane;
enum class ConflictChoice;
struct ConflictField;
struct RecordConflict;
struct WorkingState;

// Shows WorkingState::conflict: who saved the record first and when, and both versions side by side where they differ.
// The doctor's choice goes back there; whoever only closes the form goes back to editing.
class Conflitto final : public ChartForm {
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

    WorkingState &m_state;
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
