// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Prompts.h"

namespace clivara {

// Asks with message boxes over the active window, with Italian buttons. Esc and the box's close button give
// the answer of Cancel, else No, else Ok.
class WidgetPrompts final : public Prompts {
public:
    PromptButton ask(const Prompt &prompt) override;
};

} // namespace clivara
