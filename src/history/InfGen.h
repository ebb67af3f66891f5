// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/ui/ChartForm.h"

#include <QList>
#include <functional>
#include <memory>

class QPushButton;

namespace Ui {
class InfGen;
}

namespace clivara {

struct WorkingState;

// The general information: one button for each section of the chart, named `Apri_` and the section's form. Sections that
// this build does not have are off.
class InfGen final : public ChartForm {
    Q_OBJECT

public:
    // `isBuilt` tells which forms there are, by their names.
    InfGen(WorkingState &state, const std::function<bool(const QString &form)> &isBuilt);
    ~InfGen() override;

protected:
    void load() override;

private:
    void openSection(const QString &form);

    WorkingState &m_state;
    std::unique_ptr<Ui::InfGen> m_ui;
    QList<QPushButton *> m_buttons; // of the sections
};

} // namespace clivara
