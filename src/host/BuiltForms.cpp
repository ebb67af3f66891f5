// SPDX-License-Identifier: Apache-2.0
#include "host/FormShelf.h"
#include "support/ui/ChartForm.h"

namespace clivara {

const FormFactories &builtForms()
{
    static const FormFactories forms{};
    return forms;
}

} // namespace clivara
