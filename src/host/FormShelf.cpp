// SPDX-License-Identifier: Apache-2.0
#include "host/FormShelf.h"

#include "chart/FormRegistry.h"
#include "support/ui/ChartForm.h"

namespace clivara {

FormShelf::FormShelf(WorkingState &state, const FormRegistry &registry)
    : m_state(state)
    , m_registry(registry)
{
}

FormShelf::~FormShelf() = default;

ChartForm *FormShelf::form(const QString &name, const std::function<void(ChartForm &)> &created)
{
    if (const auto kept = m_forms.find(name); kept != m_forms.end())
        return kept->second.get();
    const FormRow *const row = m_registry.find(name);
    if (!row || !row->create)
        return nullptr;
    auto form = row->create(m_state);
    if (created)
        created(*form);
    return m_forms.emplace(name, std::move(form)).first->second.get();
}

} // namespace clivara
