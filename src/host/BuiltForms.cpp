// SPDX-License-Identifier: Apache-2.0
#include "calculators/CalcCockCroft.h"
#include "calculators/CalcFiltGlom.h"
#include "calculators/CalcLDL.h"
#include "host/FormShelf.h"
#include "problems/Problemi.h"
#include "problems/Visite2.h"

namespace clivara {

namespace {

template <typename Form>
std::unique_ptr<ChartForm> create(WorkingState &state)
{
    return std::make_unique<Form>(state);
}

} // namespace

const FormFactories &builtForms()
{
    static const FormFactories forms{
        {QStringLiteral("calcLDL"), create<CalcLDL>},
        {QStringLiteral("calcCockCroft"), create<CalcCockCroft>},
        {QStringLiteral("calcFiltGlom"), create<CalcFiltGlom>},
        {QStringLiteral("Problemi"), create<Problemi>},
        {QStringLiteral("Visite2"), create<Visite2>},
    };
    return forms;
}

} // namespace clivara
