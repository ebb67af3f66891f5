// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QIcon>

namespace clivara {

// What a row of a list is, told by shape as well as by colour.
enum class ReportIcon {
    OpenProblem,
    ClosedProblem,
    ChronicProblem,
    UnspecifiedProblem,
    NoProblem, // the row of what is filed against no problem
    Visit,
    Drug,
    Test,
    InHospital,
    Discharged,
    HomeCare,
    Doubtful // something about the row cannot be right
};

// Sharp in every size; QIcon::Selected is for a row on the highlight colour.
QIcon reportIcon(ReportIcon icon);

} // namespace clivara
