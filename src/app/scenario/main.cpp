// SPDX-License-Identifier: Apache-2.0
#include "app/commands/Program.h"
#include "app/scenario/PlayCommand.h"

int main(int argc, char **argv)
{
    return orvale::runGuarded([&] {
        const QStringList arguments = orvale::programArguments(argc, argv);
        const auto application = orvale::makeApplication(argc, argv, !orvale::asksForHelp(arguments));
        return orvale::runPlay(arguments);
    });
}
