// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"
#include "app/commands/Commands.h"
#include "app/commands/TerminalProgress.h"
#include "app/demo/Demo.h"
#include "app/practice/Practice.h"
#include "support/Clock.h"

namespace orvale {

int runDemo(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("demo P [--patients N] [--years Y] [--seed S]"),
        QStringLiteral(
            "Crea nella cartella P un archivio dimostrativo realistico, con date che finiscono oggi."));
    line.addArgument(
        QStringLiteral("P"),
        QStringLiteral("cartella da creare (inesistente o vuota), o postgresql://server/database"));
    line.addOption(QStringLiteral("patients"), QStringLiteral("N"),
                   QStringLiteral("numero di pazienti (1500)"));
    line.addOption(QStringLiteral("years"), QStringLiteral("Y"),
                   QStringLiteral("anni di storia clinica (12)"));
    line.addOption(QStringLiteral("seed"), QStringLiteral("S"),
                   QStringLiteral("seme del caso: semi uguali, archivi uguali (1)"));
    if (!line.parse(arguments))
        return 0;
    DemoOptions options;
    options.patients = line.number(QStringLiteral("patients"), options.patients, 1, 100000);
    options.years = line.number(QStringLiteral("years"), options.years, 1, 40);
    options.seed = quint64(line.number(QStringLiteral("seed"), 1, 0, 2147483647));
    options.today = clivara::SystemClock().today();
    TerminalProgress bar;
    createDemo(line.argument(0), options, [&](int done, int total) { bar.show({}, done, total); });
    bar.end();
    printLine(QStringLiteral("Creato l'archivio dimostrativo %1: %2 pazienti, %3 anni.")
                  .arg(shownPractice(line.argument(0)))
                  .arg(options.patients)
                  .arg(options.years));
    return 0;
}

} // namespace orvale
