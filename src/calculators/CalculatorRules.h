// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace clivara {

// The expected renal function is shown from this age on, in years.
constexpr int expectedFunctionFromAge = 40;

} // namespace clivara
