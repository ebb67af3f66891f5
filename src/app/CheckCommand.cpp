// SPDX-License-Identifier: Apache-2.0
#include "app/CommandLine.h"
#include "app/Commands.h"
#include "app/Practice.h"
#include "app/PracticeCheck.h"

namespace orvale {

int runCheck(const QStringList &arguments)
{
    CommandLine line(QStringLiteral("check P"),
                     QStringLiteral("Legge tutto l'archivio P e dice che cosa è incoerente.\n"
                                    "Termina con 0 se non trova niente, con 1 se trova qualcosa."));
    line.addArgument(QStringLiteral("P"), QStringLiteral("cartella dell'archivio"));
    if (!line.parse(arguments))
        return 0;
    const auto practice = Practice::open(line.argument(0));
    const QList<Inconsistency> found = checkPractice(*practice);
    int count = 0;
    for (const Inconsistency &inconsistency : found) {
        count += inconsistency.count;
        printLine(
            QStringLiteral("%1: %2 [%3%4]")
                .arg(inconsistency.text)
                .arg(inconsistency.count)
                .arg(inconsistency.keys.join(QStringLiteral(", ")),
                     inconsistency.count > inconsistency.keys.size() ? QStringLiteral(", …") : QString()));
    }
    printLine(count == 0 ? QStringLiteral("Nessuna incoerenza.")
                         : QStringLiteral("Incoerenze: %1.").arg(count));
    return count == 0 ? 0 : 1;
}

} // namespace orvale
