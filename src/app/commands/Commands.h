// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/commands/CommandLine.h"

#include <QStringList>

namespace orvale {

// The commands of the program. `arguments` are those after the command's name. The result is the exit status;
// a UserError thrown by a command becomes one line on standard error and the status 1 (2 for wrong usage).
CommandLine windowCommandLine(); // the options of runWindow
int runWindow(const QStringList &arguments); // orvale [--practice P]
int runDemo(const QStringList &arguments); // orvale demo P [--patients N] [--years Y] [--seed S]
int runImport(const QStringList &arguments); // orvale import SOURCE P [--region NN] [--replace]
int runCopy(const QStringList &arguments); // orvale copy FROM TO
int runRole(const QStringList &arguments); // orvale role [NAME]
int runTour(const QStringList &arguments); // orvale tour FOLDER
int runCheck(const QStringList &arguments); // orvale check P

} // namespace orvale
