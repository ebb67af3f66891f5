// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QString>
#include <functional>
#include <map>
#include <memory>

namespace clivara {

class ChartForm;
struct WorkingState;

using FormFactory = std::function<std::unique_ptr<ChartForm>(WorkingState &)>;
using FormFactories = QHash<QString, FormFactory>; // by the form's own name

// The forms that this build has.
const FormFactories &builtForms();

// One instance of each form, created on first use and kept until the component goes away.
class FormShelf {
public:
    explicit FormShelf(WorkingState &state, const FormFactories &factories = builtForms());
    ~FormShelf();

    // Null when the form is not built. `created` runs once, on a new instance. An error of the form's
    // constructor passes on.
    ChartForm *form(const QString &name, const std::function<void(ChartForm &)> &created = {});

private:
    WorkingState &m_state;
    const FormFactories &m_factories;
    std::map<QString, std::unique_ptr<ChartForm>> m_forms;
};

} // namespace clivara
