// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <functional>
#include <map>
#include <memory>

namespace clivara {

class ChartForm;
class FormRegistry;
struct WorkingState;

// One instance of each form, created on first use and kept until the component goes away.
class FormShelf {
public:
    FormShelf(WorkingState &state, const FormRegistry &registry);
    ~FormShelf();

    // Null when the form is not built. `created` runs once, on a new instance. An error of the form's
    // constructor passes on.
    ChartForm *form(const QString &name, const std::function<void(ChartForm &)> &created = {});

private:
    WorkingState &m_state;
    const FormRegistry &m_registry;
    std::map<QString, std::unique_ptr<ChartForm>> m_forms;
};

} // namespace clivara
