// SPDX-License-Identifier: Apache-2.0
#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/Demo.h"
#include "support/Clock.h"

#include <cstdio>
#include <unistd.h>

namespace orvale {

namespace {

// A bar on the terminal's last line; nothing where standard error is no terminal.
void showProgress(int done, int total)
{
    static const bool terminal = isatty(STDERR_FILENO) == 1;
    if (!terminal)
        return;
    constexpr int width = 40;
    const int filled = int(qint64(done) * width / total);
    std::fprintf(stderr, "\r[%s%s] %3d%%%s", std::string(size_t(filled), '#').c_str(),
                 std::string(size_t(width - filled), '.').c_str(), int(qint64(done) * 100 / total),
                 done == total ? "\n" : "");
    std::fflush(stderr);
}

} // namespace

int runDemo(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("demo P [--patients N] [--years Y] [--seed S]"),
        QStringLiteral(
            "Crea nella cartella P un archivio dimostrativo realistico, con date che finiscono oggi."));
    line.addArgument(QStringLiteral("P"), QStringLiteral("cartella da creare (inesistente o vuota)"));
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
    createDemo(line.argument(0), options, showProgress);
    printLine(QStringLiteral("Creato l'archivio dimostrativo %1: %2 pazienti, %3 anni.")
                  .arg(line.argument(0))
                  .arg(options.patients)
                  .arg(options.years));
    return 0;
}

} // namespace orvale
