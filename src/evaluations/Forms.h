// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/FormRegistry.h"

namespace clivara {

std::vector<FormRow> evaluationForms();

} // namespace clivara
