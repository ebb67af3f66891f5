// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/SectionForm.h"

#include <QList>
#include <memory>

class QBoxLayout;
class QPushButton;

namespace Ui {
class InfGen;
}

namespace clivara {

struct FormRow;
struct WorkingState;

// The general information: one button for each section of the chart, named `Apri_` and the section's form. Sections that
// this build does not have are off.
class InfGen final : public SectionForm {
    Q_OBJECT

public:
    // Needs WorkingState::forms, whose registry says what there is.
    explicit InfGen(WorkingState &state);
    ~InfGen() override;

protected:
    void load() override;

private:
    void addButton(QBoxLayout *layout, const FormRow &section);
    void openSection(const QString &form);

    std::unique_ptr<Ui::InfGen> m_ui;
    QList<QPushButton *> m_buttons; // of the sections
};

} // namespace clivara
