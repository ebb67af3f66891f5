// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"
#include "app/commands/Commands.h"
#include "app/practice/Practice.h"
#include "app/practice/PracticeCheck.h"

#include <limits>

namespace orvale {

namespace {

constexpr int shownKeys = 20;

QString lineOf(const Finding &finding)
{
    const bool isCut = finding.count > finding.keys.size();
    return QStringLiteral("%1: %2 [%3%4]")
        .arg(finding.text)
        .arg(finding.count)
        .arg(finding.keys.join(QStringLiteral(", ")), isCut ? QStringLiteral(", …") : QString());
}

} // namespace

int runCheck(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("check P [--all]"),
        QStringLiteral("Legge tutto l'archivio P e dice che cosa è incoerente: quante righe e quali.\n"
                       "Termina con 0 se non trova incoerenze, con 1 se ne trova."));
    line.addArgument(QStringLiteral("P"),
                     QStringLiteral("cartella dell'archivio, o postgresql://server/database"));
    line.addOption(
        QStringLiteral("all"), {},
        QStringLiteral("elenca tutte le righe trovate, non solo le prime %1 di ogni voce").arg(shownKeys));
    if (!line.parse(arguments))
        return 0;
    const auto practice = Practice::open(line.argument(0));
    const QList<Finding> found = checkPractice(
        *practice, line.isSet(QStringLiteral("all")) ? std::numeric_limits<int>::max() : shownKeys);
    int count = 0;
    for (const Finding &finding : found) {
        if (finding.kind == Finding::Kind::WorthKnowing) {
            printLine(QStringLiteral("Da sapere – %1").arg(lineOf(finding)));
            continue;
        }
        count += finding.count;
        printLine(lineOf(finding));
    }
    printLine(count == 0 ? QStringLiteral("Nessuna incoerenza.")
                         : QStringLiteral("Incoerenze: %1.").arg(count));
    return count == 0 ? 0 : 1;
}

} // namespace orvale
