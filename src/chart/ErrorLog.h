// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Error.h"

#include <QString>

namespace clivara {

struct ChartServices;

// An error that the doctor has been told of already.
class ToldError final : public dao::Error {
public:
    using dao::Error::Error;
};

// The line in the log for an error that ended a routine ("Problemi.CaricaTab_Visite"); an error without a number of the
// engine has the number 0.
void logLine(ChartServices &services, const QString &routine, const std::exception &error);

// The same; a server that cannot be reached is told to the doctor too, as tellUnreachable() does.
void logError(ChartServices &services, const QString &routine, const dao::Error &error);

// Tells the doctor, once until something is written or another section is opened, that the server cannot be reached: an
// empty list would otherwise say that there is nothing.
void tellUnreachable(ChartServices &services);

} // namespace clivara
