// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/FormRegistry.h"

namespace clivara {

// The forms of all sections, in the order of the host's menus.
FormRegistry allForms();

} // namespace clivara
