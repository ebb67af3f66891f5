// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"
#include "app/commands/Commands.h"
#include "app/commands/SignalNotes.h"
#include "app/commands/TerminalProgress.h"
#include "app/import/Import.h"
#include "app/practice/Practice.h"

namespace orvale {

int runImport(const QStringList &arguments)
{
    CommandLine line(
        QStringLiteral("import SOURCE P [--region NN] [--replace]"),
        QStringLiteral(
            "Porta i file Jet della cartella SOURCE (Orvale.mdb, Tabelle.mdb, Terzo.mdb, Medici.mdb,\n"
            "Locale.mdb, Eventi.mdb) in un nuovo archivio P e prova che c'è tutto. Il rapporto\n"
            "completo è in P.import.tsv (per un server, DATABASE.import.tsv nella cartella corrente). "
            "Termina con 0 se nessuna riga è rifiutata e tutto è uguale."));
    line.addArgument(QStringLiteral("SOURCE"), QStringLiteral("cartella dei file Jet, che non cambiano"));
    line.addArgument(QStringLiteral("P"),
                     QStringLiteral("cartella dell'archivio da creare, o postgresql://server/database"));
    line.addOption(QStringLiteral("region"), QStringLiteral("NN"),
                   QStringLiteral("codice della regione del medico, due cifre"));
    line.addOption(QStringLiteral("replace"), {},
                   QStringLiteral("sostituisce l'archivio P, se c'è e nessuno lo ha aperto"));
    if (!line.parse(arguments))
        return 0;
    ImportOptions options;
    options.source = line.argument(0);
    options.target = line.argument(1);
    options.region = line.value(QStringLiteral("region"));
    options.replace = line.isSet(QStringLiteral("replace"));

    const QString target = shownPractice(options.target);
    const SignalNotes notes;
    TerminalProgress bar;
    ImportReport report;
    try {
        report = importPractice(options, [&](const ImportProgress &progress) {
            notes.check();
            bar.show(progress);
        });
    } catch (const SignalNotes::Interrupted &) {
        bar.end();
        printError(QStringLiteral("Importazione interrotta: l'archivio %1 è come prima.").arg(target));
        return notes.status();
    }
    bar.end();
    const QStringList lines = tableLines(report) + QStringList{QString()} + summaryLines(report);
    for (const QString &text : lines)
        printLine(text);
    if (report.agrees())
        return 0;
    printError(QStringLiteral("L'archivio %1 è al suo posto, ma %2: vedere il rapporto %3.")
                   .arg(target,
                        report.tablesAgree()
                            ? QStringLiteral("con righe rifiutate (%1)").arg(report.refused())
                            : QStringLiteral("la prova non è riuscita"),
                        report.reportFile));
    return 1;
}

} // namespace orvale
