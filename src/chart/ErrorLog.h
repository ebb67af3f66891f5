// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Error.h"

#include <QString>

namespace clivara {

struct WorkingState;

// An error that the doctor has been told of already.
class ToldError final : public dao::Error {
public:
    using dao::Error::Error;
};

// The line in the log for an error that ended a routine ("Problemi.CaricaTab_Visite"). A server that cannot be reached
// is told to the doctor too, as tellUnreachable() does.
void logError(WorkingState &state, const QString &routine, const dao::Error &error);

// Tells the doctor, once until something is written or another section is opened, that the server cannot be reached: an
// empty list would otherwise say that there is nothing.
void tellUnreachable(WorkingState &state);

} // namespace clivara
