// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QStringList>
#include <functional>
#include <memory>

// What the programs of the host have in common.
namespace orvale {

QStringList programArguments(int argc, char **argv);
bool asksForHelp(const QStringList &arguments);
bool hasDisplay();

// Windows need an application of widgets, everything else starts faster without one. Without a display
// windows are drawn for nobody.
std::unique_ptr<QCoreApplication> makeApplication(int &argc, char **argv, bool draws);

// The exit status of the program. An error becomes one line on standard error and the status 1; 2 for a
// UsageError.
int runGuarded(const std::function<int()> &program);

} // namespace orvale
