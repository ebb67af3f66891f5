// SPDX-License-Identifier: Apache-2.0
#include "host/FormShelf.h"

#include "support/ui/ChartForm.h"

namespace clivara {

FormShelf::FormShelf(WorkingState &state, const FormFactories &factories)
    : m_state(state)
    , m_factories(factories)
{
}

FormShelf::~FormShelf() = default;

ChartForm *FormShelf::form(const QString &name, const std::function<void(ChartForm &)> &created)
{
    if (const auto kept = m_forms.find(name); kept != m_forms.end())
        return kept->second.get();
    const auto factory = m_factories.constFind(name);
    if (factory == m_factories.constEnd())
        return nullptr;
    auto form = (*factory)(m_state);
    if (created)
        created(*form);
    return m_forms.emplace(name, std::move(form)).first->second.get();
}

} // namespace clivara
